// Playing and taking back moves, the game-end rules and the material counts.
#include <algorithm>
#include <cstdlib>
#include <limits>
#include <utility>

#include "core/chess_board.h"
#include "core/san.h"
#include "core/trial_position.h"

namespace orlix {
namespace {

constexpr std::int64_t fiftyMovesInPlies = 100;
constexpr std::int64_t repetitionsForDraw = 3;

// A FEN may hold any number. Arithmetic past the last one wraps, so that taking back restores what was.
std::int64_t wrappingAdd(std::int64_t number, std::int64_t change) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(number) + static_cast<std::uint64_t>(change));
}

// The clock stays at the last number instead, because it must not fall back below the fifty-move limit.
std::int64_t saturatingIncrement(std::int64_t number) {
    return number == std::numeric_limits<std::int64_t>::max() ? number : number + 1;
}

std::optional<Piece>& cellAt(ChessBoard& board, std::int8_t square) {
    return board.squares[static_cast<std::size_t>(square)];
}

// The internal move applier on a board with identities: no history, no repetition count.
void applyInternal(ChessBoard& board, TrialMove move, const MoveEffects& effects) {
    std::optional<Piece> placed = std::exchange(cellAt(board, move.from), std::nullopt);
    if (effects.enPassantVictim != MoveEffects::noSquare) cellAt(board, effects.enPassantVictim).reset();
    if (effects.rookFrom != MoveEffects::noSquare) {
        cellAt(board, effects.rookTo) = std::exchange(cellAt(board, effects.rookFrom), std::nullopt);
    }
    // The promoted piece is a new one; every other piece keeps its identity.
    if (move.isPromotion()) placed = Piece::make(move.promotionType(), colorOf(effects.placed));
    cellAt(board, move.to) = placed;

    board.castlingRights = effects.castlingRights;
    board.enPassantTarget = Square::fromIndex(effects.enPassantTarget);
    const bool resetsClock = effects.isPawnMove || effects.isCapture;
    board.halfmoveClock = resetsClock ? 0 : saturatingIncrement(board.halfmoveClock);
    if (board.turn == PieceColor::black) board.fullmoveNumber = wrappingAdd(board.fullmoveNumber, 1);
    board.turn = opponent(board.turn);
}

std::optional<Piece> capturedPieceFor(const ChessBoard& board, TrialMove move, const MoveEffects& effects) {
    const std::int8_t square =
        effects.enPassantVictim == MoveEffects::noSquare ? move.to : effects.enPassantVictim;
    return board.squares[static_cast<std::size_t>(square)];
}

}  // namespace

bool ChessBoard::play(const Move& move) {
    const TrialPosition position(*this);
    TrialMoveList legal;
    position.legalMoves(legal);
    const auto* const found = std::find_if(legal.begin(), legal.end(),
                                           [&move](TrialMove candidate) { return candidate.move() == move; });
    if (found == legal.end()) return false;

    const MoveEffects effects = position.effectsOf(*found);
    MoveRecord record{move,
                      standardAlgebraicNotation(position, *found, legal),
                      capturedPieceFor(*this, *found, effects),
                      castlingRights,
                      enPassantTarget,
                      halfmoveClock,
                      {}};
    applyInternal(*this, *found, effects);
    record.fenAfter = fen();
    history.push_back(std::move(record));
    ++positionHistory[positionHashKey()];
    return true;
}

bool ChessBoard::undo() {
    if (history.empty()) return false;
    const MoveRecord record = std::move(history.back());
    history.pop_back();

    const auto occurrences = positionHistory.find(positionHashKey());
    if (occurrences != positionHistory.end()) {
        if (occurrences->second >= 2) {
            --occurrences->second;
        } else {
            positionHistory.erase(occurrences);
        }
    }

    const Move& move = record.move;
    const std::optional<Piece> moved = std::exchange((*this)[move.to], std::nullopt);
    (*this)[move.from] = moved;
    // The pawn that comes back from a promotion is a new piece: the old one ended when it promoted.
    if (move.promotion && moved) (*this)[move.from] = Piece::make(PieceType::pawn, moved->color);

    if (record.capturedPiece) {
        // A target square that equals the en-passant square decides alone, even where a FEN had put a piece
        // onto that square and the pawn took that one.
        const bool wasEnPassant =
            moved && moved->type == PieceType::pawn && move.to == record.previousEnPassant;
        const Square home = wasEnPassant ? Square{move.to.file, move.from.rank} : move.to;
        (*this)[home] = record.capturedPiece;
    }
    if (moved && moved->type == PieceType::king && std::abs(move.to.file - move.from.file) == 2) {
        const std::int64_t rank = move.from.rank;
        if (move.to.file == 2) at(0, rank) = std::exchange(at(3, rank), std::nullopt);
        if (move.to.file == 6) at(7, rank) = std::exchange(at(5, rank), std::nullopt);
    }

    castlingRights = record.previousCastling;
    enPassantTarget = record.previousEnPassant;
    halfmoveClock = record.previousHalfmove;
    turn = opponent(turn);
    if (turn == PieceColor::black) fullmoveNumber = wrappingAdd(fullmoveNumber, -1);
    return true;
}

std::optional<GameEndReason> ChessBoard::gameEndReason() const {
    const TrialPosition position(*this);
    TrialMoveList legal;
    position.legalMoves(legal);
    if (legal.empty()) {
        if (position.isKingInCheck(turn)) return GameEndReason::checkmate(opponent(turn));
        return GameEndReason::stalemate();
    }
    if (halfmoveClock >= fiftyMovesInPlies) return GameEndReason::fiftyMoveRule();
    const auto occurrences = positionHistory.find(positionHashKey());
    if (occurrences != positionHistory.end() && occurrences->second >= repetitionsForDraw) {
        return GameEndReason::threefoldRepetition();
    }
    if (hasInsufficientMaterial()) return GameEndReason::insufficientMaterial();
    return std::nullopt;
}

bool ChessBoard::isGameOver() const {
    return gameEndReason().has_value();
}

bool ChessBoard::hasInsufficientMaterial() const {
    struct Bishop {
        PieceColor color;
        bool standsOnLight;
    };
    std::size_t pieceCount = 0;
    std::size_t knightCount = 0;
    std::vector<Bishop> bishops;
    for (const Square square : Square::allSquares()) {
        const auto& piece = (*this)[square];
        if (!piece) continue;
        ++pieceCount;
        if (piece->type == PieceType::knight) ++knightCount;
        if (piece->type == PieceType::bishop) bishops.push_back({piece->color, square.isLight()});
    }
    // Only these counts are looked at, and what the other pieces are is not: two knights or a knight on each
    // side play on, on purpose.
    if (pieceCount == 2) return true;
    if (pieceCount == 3) return knightCount + bishops.size() == 1;
    if (pieceCount == 4 && bishops.size() == 2) {
        return bishops[0].color != bishops[1].color && bishops[0].standsOnLight == bishops[1].standsOnLight;
    }
    return false;
}

std::int64_t ChessBoard::materialScore() const {
    std::int64_t score = 0;
    for (const auto& piece : squares) {
        if (piece) score += piece->color == PieceColor::white ? value(piece->type) : -value(piece->type);
    }
    return score;
}

ChessBoard::CapturedPieces ChessBoard::capturedPieces() const {
    // The full set of one side by piece type; kings are never missing.
    constexpr std::array<int, allPieceTypes.size()> fullSet{8, 2, 2, 2, 1, 0};
    const auto missing = [&](PieceColor color) {
        std::array<int, allPieceTypes.size()> counts = fullSet;
        for (const auto& piece : squares) {
            if (!piece || piece->color != color) continue;
            int& count = counts[static_cast<std::size_t>(piece->type)];
            count = std::max(0, count - 1);
        }
        std::vector<Piece> pieces;
        for (const PieceType type : allPieceTypes) {
            for (int i = 0; i < counts[static_cast<std::size_t>(type)]; ++i) {
                pieces.push_back(Piece::make(type, color));
            }
        }
        return pieces;
    };
    return {missing(PieceColor::white), missing(PieceColor::black)};
}

}  // namespace orlix
