#include "core/reference_rules.h"

#include <cstdlib>

namespace orlix::reference {
namespace {

using Direction = std::pair<int, int>;
using Directions = std::vector<Direction>;

const Directions knightJumps{{-2, -1}, {-2, 1}, {-1, -2}, {-1, 2}, {1, -2}, {1, 2}, {2, -1}, {2, 1}};
const Directions kingSteps{{-1, -1}, {-1, 0}, {-1, 1}, {0, -1}, {0, 1}, {1, -1}, {1, 0}, {1, 1}};
const Directions diagonals{{1, 1}, {1, -1}, {-1, 1}, {-1, -1}};
const Directions lines{{0, 1}, {0, -1}, {1, 0}, {-1, 0}};
const Directions queenDirections{{1, 1}, {1, -1}, {-1, 1}, {-1, -1}, {0, 1}, {0, -1}, {1, 0}, {-1, 0}};

bool inside(Square square) {
    return square.file >= 0 && square.file <= 7 && square.rank >= 0 && square.rank <= 7;
}

Square shifted(Square square, Direction by) {
    return {square.file + by.first, square.rank + by.second};
}

bool isPiece(const ChessBoard& board, Square square, PieceType type, PieceColor color) {
    return inside(square) && board[square] && board[square]->type == type && board[square]->color == color;
}

bool isColor(const ChessBoard& board, Square square, PieceColor color) {
    return board[square] && board[square]->color == color;
}

void addWithPromotions(std::vector<Move>& moves, Square from, Square to, PieceColor color) {
    if (to.rank == (color == PieceColor::white ? 7 : 0)) {
        moves.push_back({from, to, PieceType::queen});
        moves.push_back({from, to, PieceType::rook});
        moves.push_back({from, to, PieceType::bishop});
        moves.push_back({from, to, PieceType::knight});
    } else {
        moves.push_back({from, to, std::nullopt});
    }
}

void addPawnMoves(const ChessBoard& board, Square from, PieceColor color, std::vector<Move>& moves) {
    const int forward = color == PieceColor::white ? 1 : -1;
    const int startRank = color == PieceColor::white ? 1 : 6;
    const Square ahead = shifted(from, {0, forward});
    if (inside(ahead) && !board[ahead]) {
        addWithPromotions(moves, from, ahead, color);
        const Square twoAhead = shifted(ahead, {0, forward});
        if (from.rank == startRank && !board[twoAhead]) moves.push_back({from, twoAhead, std::nullopt});
    }
    for (const int side : {-1, 1}) {
        const Square target = shifted(from, {side, forward});
        if (!inside(target)) continue;
        if (isColor(board, target, opponent(color))) {
            addWithPromotions(moves, from, target, color);
        } else if (board.enPassantTarget == target) {
            moves.push_back({from, target, std::nullopt});
        }
    }
}

void addSteps(const ChessBoard& board, Square from, PieceColor color, const Directions& steps,
              std::vector<Move>& moves) {
    for (const Direction& step : steps) {
        const Square target = shifted(from, step);
        if (inside(target) && !isColor(board, target, color)) moves.push_back({from, target, std::nullopt});
    }
}

void addSlides(const ChessBoard& board, Square from, PieceColor color, const Directions& directions,
               std::vector<Move>& moves) {
    for (const Direction& direction : directions) {
        for (Square target = shifted(from, direction); inside(target); target = shifted(target, direction)) {
            if (isColor(board, target, color)) break;
            moves.push_back({from, target, std::nullopt});
            if (board[target]) break;
        }
    }
}

void addCastling(const ChessBoard& board, Square from, PieceColor color, std::vector<Move>& moves) {
    const std::int64_t home = color == PieceColor::white ? 0 : 7;
    if (from != Square{4, home} || isAttacked(board, from, opponent(color))) return;
    const auto canPass = [&](std::int64_t file) {
        return !board.at(file, home) && !isAttacked(board, {file, home}, opponent(color));
    };
    const CastlingRights& rights = board.castlingRights;
    const bool kingside = color == PieceColor::white ? rights.whiteKingside : rights.blackKingside;
    const bool queenside = color == PieceColor::white ? rights.whiteQueenside : rights.blackQueenside;
    if (kingside && canPass(5) && canPass(6)) moves.push_back({from, {6, home}, std::nullopt});
    if (queenside && canPass(3) && canPass(2) && !board.at(1, home)) {
        moves.push_back({from, {2, home}, std::nullopt});
    }
}

std::vector<Move> candidates(const ChessBoard& board) {
    std::vector<Move> moves;
    for (const Square from : Square::allSquares()) {
        if (!isColor(board, from, board.turn)) continue;
        switch (board[from]->type) {
            case PieceType::pawn: addPawnMoves(board, from, board.turn, moves); break;
            case PieceType::knight: addSteps(board, from, board.turn, knightJumps, moves); break;
            case PieceType::bishop: addSlides(board, from, board.turn, diagonals, moves); break;
            case PieceType::rook: addSlides(board, from, board.turn, lines, moves); break;
            case PieceType::queen: addSlides(board, from, board.turn, queenDirections, moves); break;
            case PieceType::king:
                addSteps(board, from, board.turn, kingSteps, moves);
                addCastling(board, from, board.turn, moves);
                break;
        }
    }
    return moves;
}

std::optional<Square> findKing(const ChessBoard& board, PieceColor color) {
    for (const Square square : Square::allSquares()) {
        if (isPiece(board, square, PieceType::king, color)) return square;
    }
    return std::nullopt;
}

bool isInCheck(const ChessBoard& board, PieceColor color) {
    const auto king = findKing(board, color);
    return king && isAttacked(board, *king, opponent(color));
}

void clearCorner(CastlingRights& rights, Square corner) {
    if (corner == Square{0, 0}) rights.whiteQueenside = false;
    if (corner == Square{7, 0}) rights.whiteKingside = false;
    if (corner == Square{0, 7}) rights.blackQueenside = false;
    if (corner == Square{7, 7}) rights.blackKingside = false;
}

}  // namespace

std::vector<Move> legalMoves(const ChessBoard& board) {
    std::vector<Move> legal;
    for (const Move& move : candidates(board)) {
        ChessBoard copy = board;
        apply(copy, move);
        if (!isInCheck(copy, board.turn)) legal.push_back(move);
    }
    return legal;
}

bool isAttacked(const ChessBoard& board, Square square, PieceColor by) {
    const int behind = by == PieceColor::white ? -1 : 1;
    for (const int side : {-1, 1}) {
        if (isPiece(board, shifted(square, {side, behind}), PieceType::pawn, by)) return true;
    }
    for (const Direction& jump : knightJumps) {
        if (isPiece(board, shifted(square, jump), PieceType::knight, by)) return true;
    }
    for (const Direction& step : kingSteps) {
        if (isPiece(board, shifted(square, step), PieceType::king, by)) return true;
    }
    const auto sliderOn = [&](const Directions& directions, PieceType slider) {
        for (const Direction& direction : directions) {
            Square from = shifted(square, direction);
            while (inside(from) && !board[from])
                from = shifted(from, direction);
            if (isPiece(board, from, slider, by) || isPiece(board, from, PieceType::queen, by)) return true;
        }
        return false;
    };
    return sliderOn(lines, PieceType::rook) || sliderOn(diagonals, PieceType::bishop);
}

void apply(ChessBoard& board, const Move& move) {
    if (!board[move.from]) return;
    const Piece piece = *board[move.from];
    board[move.from].reset();

    bool isCapture = board[move.to].has_value();
    if (piece.type == PieceType::pawn && move.from.file != move.to.file && !isCapture) {
        board.at(move.to.file, move.from.rank).reset();
        isCapture = true;
    }

    std::optional<Square> target;
    if (piece.type == PieceType::king && std::abs(move.to.file - move.from.file) == 2) {
        const std::int64_t rank = move.from.rank;
        const std::int64_t corner = move.to.file == 2 ? 0 : 7;
        const std::int64_t besideKing = move.to.file == 2 ? 3 : 5;
        board.at(besideKing, rank) = board.at(corner, rank);
        board.at(corner, rank).reset();
    } else if (piece.type == PieceType::pawn && std::abs(move.to.rank - move.from.rank) == 2) {
        target = Square{move.from.file, (move.from.rank + move.to.rank) / 2};
    }
    board.enPassantTarget = target;
    board[move.to] = move.promotion ? Piece::make(*move.promotion, piece.color) : piece;

    if (piece.type == PieceType::rook) clearCorner(board.castlingRights, move.from);
    if (piece.type == PieceType::king && piece.color == PieceColor::white) {
        board.castlingRights.whiteKingside = board.castlingRights.whiteQueenside = false;
    }
    if (piece.type == PieceType::king && piece.color == PieceColor::black) {
        board.castlingRights.blackKingside = board.castlingRights.blackQueenside = false;
    }
    clearCorner(board.castlingRights, move.to);

    board.halfmoveClock = piece.type == PieceType::pawn || isCapture ? 0 : board.halfmoveClock + 1;
    if (board.turn == PieceColor::black) ++board.fullmoveNumber;
    board.turn = opponent(board.turn);
}

std::optional<Piece> capturedPiece(const ChessBoard& board, const Move& move) {
    if (board[move.to]) return board[move.to];
    const bool isPawn = board[move.from]->type == PieceType::pawn;
    if (isPawn && move.from.file != move.to.file && move.to == board.enPassantTarget) {
        return board.at(move.to.file, move.from.rank);
    }
    return std::nullopt;
}

std::string san(const ChessBoard& board, const Move& move) {
    const Piece piece = *board[move.from];
    std::string text;
    if (piece.type == PieceType::king && std::abs(move.to.file - move.from.file) == 2) {
        text = move.to.file == 6 ? "O-O" : "O-O-O";
    } else if (piece.type == PieceType::pawn) {
        if (move.from.file != move.to.file) text = std::string(1, move.from.fileChar()) + "x";
        text += move.to.algebraic();
        if (move.promotion) text += "=" + std::string(sanLetter(*move.promotion));
    } else {
        std::vector<Square> rivals;
        for (const Move& other : legalMoves(board)) {
            if (other.to == move.to && other.from != move.from && board[other.from]->type == piece.type) {
                rivals.push_back(other.from);
            }
        }
        std::size_t onRank = 0;
        std::size_t onFile = 0;
        for (const Square rival : rivals) {
            if (rival.rank == move.from.rank) ++onRank;
            if (rival.file == move.from.file) ++onFile;
        }
        text = sanLetter(piece.type);
        if (onRank > 0) {
            text += onFile == 0 ? std::string(1, move.from.fileChar()) : move.from.algebraic();
        } else if (onFile > 0) {
            text += move.from.rankChar();
        } else if (!rivals.empty()) {
            text += move.from.fileChar();
        }
        if (board[move.to]) text += "x";
        text += move.to.algebraic();
    }
    ChessBoard after = board;
    apply(after, move);
    if (isInCheck(after, after.turn)) text += legalMoves(after).empty() ? "#" : "+";
    return text;
}

void undo(ChessBoard& board) {
    const MoveRecord record = board.history.back();
    board.history.pop_back();
    const std::string key = board.positionHashKey();
    if (board.positionHistory.count(key) != 0 && --board.positionHistory[key] <= 0)
        board.positionHistory.erase(key);

    const Square from = record.move.from;
    const Square to = record.move.to;
    const Piece moved = *board[to];
    board[from] = record.move.promotion ? Piece::make(PieceType::pawn, moved.color) : moved;
    board[to].reset();
    if (record.capturedPiece) {
        const bool beside = moved.type == PieceType::pawn && to == record.previousEnPassant;
        board[beside ? Square{to.file, from.rank} : to] = record.capturedPiece;
    }
    if (moved.type == PieceType::king && std::abs(to.file - from.file) == 2) {
        const std::int64_t corner = to.file == 2 ? 0 : 7;
        const std::int64_t besideKing = to.file == 2 ? 3 : 5;
        board.at(corner, from.rank) = board.at(besideKing, from.rank);
        board.at(besideKing, from.rank).reset();
    }
    board.castlingRights = record.previousCastling;
    board.enPassantTarget = record.previousEnPassant;
    board.halfmoveClock = record.previousHalfmove;
    board.turn = opponent(board.turn);
    if (board.turn == PieceColor::black) --board.fullmoveNumber;
}

std::optional<GameEndReason> gameEndReason(const ChessBoard& board) {
    if (legalMoves(board).empty()) {
        if (isInCheck(board, board.turn)) return GameEndReason::checkmate(opponent(board.turn));
        return GameEndReason::stalemate();
    }
    if (board.halfmoveClock >= 100) return GameEndReason::fiftyMoveRule();
    const auto count = board.positionHistory.find(board.positionHashKey());
    if (count != board.positionHistory.end() && count->second >= 3)
        return GameEndReason::threefoldRepetition();
    std::vector<Square> occupied;
    for (const Square square : Square::allSquares()) {
        if (board[square]) occupied.push_back(square);
    }
    std::vector<Square> bishops;
    std::size_t minors = 0;
    for (const Square square : occupied) {
        if (board[square]->type == PieceType::bishop) bishops.push_back(square);
        if (board[square]->type == PieceType::bishop || board[square]->type == PieceType::knight) ++minors;
    }
    const bool bareKings = occupied.size() == 2;
    const bool oneMinor = occupied.size() == 3 && minors == 1;
    const bool sameShadeBishops = occupied.size() == 4 && bishops.size() == 2 &&
                                  board[bishops[0]]->color != board[bishops[1]]->color &&
                                  bishops[0].isLight() == bishops[1].isLight();
    if (bareKings || oneMinor || sameShadeBishops) return GameEndReason::insufficientMaterial();
    return std::nullopt;
}

}  // namespace orlix::reference
