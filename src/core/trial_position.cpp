#include "core/trial_position.h"

#include <cstdlib>
#include <cstring>

#include "core/board_geometry.h"
#include "core/chess_board.h"

namespace orlix {

static_assert(sizeof(TrialPosition) <= 72, "a trial is a copy: it has to stay small");

namespace {

constexpr int fileA = 0;
constexpr int fileC = 2;
constexpr int fileD = 3;
constexpr int fileE = 4;
constexpr int fileF = 5;
constexpr int fileG = 6;
constexpr int fileH = 7;

constexpr std::array promotionOrder{PieceType::queen, PieceType::rook, PieceType::bishop, PieceType::knight};

constexpr int forwardOf(PieceColor color) {
    return color == PieceColor::white ? +1 : -1;
}
constexpr int homeRankOf(PieceColor color) {
    return color == PieceColor::white ? 0 : 7;
}
constexpr int pawnStartRankOf(PieceColor color) {
    return color == PieceColor::white ? 1 : 6;
}
constexpr int lastRankOf(PieceColor color) {
    return color == PieceColor::white ? 7 : 0;
}
constexpr int squareAt(int file, int rank) {
    return file + rank * 8;
}

// The flag that belongs to a corner, whatever stands there.
void clearRightOfCorner(CastlingRights& rights, int square) {
    switch (square) {
        case squareAt(fileA, 0): rights.whiteQueenside = false; break;
        case squareAt(fileH, 0): rights.whiteKingside = false; break;
        case squareAt(fileA, 7): rights.blackQueenside = false; break;
        case squareAt(fileH, 7): rights.blackKingside = false; break;
        default: break;
    }
}

void updateCastlingRights(CastlingRights& rights, TrialMove move, Cell moving) {
    if (typeOf(moving) == PieceType::rook) clearRightOfCorner(rights, move.from);
    if (typeOf(moving) == PieceType::king) {
        if (colorOf(moving) == PieceColor::white) {
            rights.whiteKingside = rights.whiteQueenside = false;
        } else {
            rights.blackKingside = rights.blackQueenside = false;
        }
    }
    clearRightOfCorner(rights, move.to);
}

void addPawnMoves(int from, int to, PieceColor color, TrialMoveList& moves) {
    if (geometry::rankOf(to) != lastRankOf(color)) {
        moves.add(from, to);
        return;
    }
    for (const PieceType type : promotionOrder) {
        moves.add(from, to, type);
    }
}

}  // namespace

void TrialMove::writeTo(Move& move) const {
    move.from = {geometry::fileOf(from), geometry::rankOf(from)};
    move.to = {geometry::fileOf(to), geometry::rankOf(to)};
    move.promotion.reset();
    if (isPromotion()) move.promotion = promotionType();
}

Move TrialMove::move() const {
    Move result;
    writeTo(result);
    return result;
}

TrialPosition::TrialPosition(const ChessBoard& board)
    : turn(board.turn), castlingRights(board.castlingRights) {
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const auto& piece = board.squares[i];
        if (piece) cells[i] = cellOf(piece->type, piece->color);
    }
    if (board.enPassantTarget) enPassantTarget = static_cast<std::int8_t>(board.enPassantTarget->index());
}

MoveEffects TrialPosition::effectsOf(TrialMove move) const {
    const Cell moving = cellAt(move.from);
    const PieceColor color = colorOf(moving);
    const int fromFile = geometry::fileOf(move.from);
    const int toFile = geometry::fileOf(move.to);
    const int fromRank = geometry::rankOf(move.from);
    const int toRank = geometry::rankOf(move.to);

    MoveEffects effects;
    effects.placed = move.isPromotion() ? cellOf(move.promotionType(), color) : moving;
    effects.isCapture = cellAt(move.to) != emptyCell;
    effects.castlingRights = castlingRights;
    updateCastlingRights(effects.castlingRights, move, moving);

    if (typeOf(moving) == PieceType::pawn) {
        effects.isPawnMove = true;
        // Any pawn that changes file onto an empty square takes en passant; the target is not consulted.
        if (fromFile != toFile && !effects.isCapture) {
            effects.isCapture = true;
            effects.enPassantVictim = static_cast<std::int8_t>(squareAt(toFile, fromRank));
        }
        // The target is set whether or not an enemy pawn stands ready: repetition depends on it.
        if (std::abs(toRank - fromRank) == 2) {
            effects.enPassantTarget = static_cast<std::int8_t>(squareAt(fromFile, (fromRank + toRank) / 2));
        }
    } else if (typeOf(moving) == PieceType::king && std::abs(toFile - fromFile) == 2) {
        if (toFile == fileC) {
            effects.rookFrom = static_cast<std::int8_t>(squareAt(fileA, fromRank));
            effects.rookTo = static_cast<std::int8_t>(squareAt(fileD, fromRank));
        } else if (toFile == fileG) {
            effects.rookFrom = static_cast<std::int8_t>(squareAt(fileH, fromRank));
            effects.rookTo = static_cast<std::int8_t>(squareAt(fileF, fromRank));
        }
    }
    return effects;
}

void TrialPosition::apply(TrialMove move) {
    if (cellAt(move.from) == emptyCell) return;
    const MoveEffects effects = effectsOf(move);
    const auto put = [this](int square, Cell cell) { cells[static_cast<std::size_t>(square)] = cell; };
    put(move.from, emptyCell);
    if (effects.enPassantVictim != noSquare) put(effects.enPassantVictim, emptyCell);
    if (effects.rookFrom != noSquare) {
        put(effects.rookTo, cellAt(effects.rookFrom));
        put(effects.rookFrom, emptyCell);
    }
    put(move.to, effects.placed);
    castlingRights = effects.castlingRights;
    enPassantTarget = effects.enPassantTarget;
    turn = opponent(turn);
}

void TrialPosition::legalMoves(TrialMoveList& moves) const {
    pseudoLegalMoves(moves);
    const int king = findKing(turn);
    if (king == noSquare) return;

    // A move can expose the king only when it is the king's own, takes en passant (a second piece leaves the
    // board), starts between the king and a slider, or fails to answer a check. All others need no trial.
    const bool inCheck = isAttacked(king, opponent(turn));
    const std::uint64_t shields = shieldsOf(king);
    std::size_t kept = 0;
    for (const TrialMove move : moves) {
        const PieceType type = typeOf(cellAt(move.from));
        const bool needsTrial = inCheck || type == PieceType::king || ((shields >> move.from) & 1U) != 0 ||
                                (type == PieceType::pawn && move.to == enPassantTarget);
        if (!needsTrial || leavesKingSafe(move)) moves[kept++] = move;
    }
    moves.resize(kept);
}

bool TrialPosition::isAttacked(int square, PieceColor by) const {
    const int file = geometry::fileOf(square);
    const int pawnRank = geometry::rankOf(square) - forwardOf(by);
    const Cell pawn = cellOf(PieceType::pawn, by);
    for (const int pawnFile : {file - 1, file + 1}) {
        if (geometry::isOnBoard(pawnFile, pawnRank) && cellAt(squareAt(pawnFile, pawnRank)) == pawn)
            return true;
    }

    const auto index = static_cast<std::size_t>(square);
    const Cell knight = cellOf(PieceType::knight, by);
    for (const int target : geometry::knightTargets[index]) {
        if (cellAt(target) == knight) return true;
    }

    const Cell king = cellOf(PieceType::king, by);
    const Cell queen = cellOf(PieceType::queen, by);
    for (std::size_t direction = 0; direction < geometry::directions.size(); ++direction) {
        const bool isDiagonal = direction < geometry::bishopDirectionsEnd;
        const Cell slider = cellOf(isDiagonal ? PieceType::bishop : PieceType::rook, by);
        const geometry::Ray ray = geometry::rays[index][direction];
        int from = square;
        for (int distance = 1; distance <= ray.count; ++distance) {
            from += ray.step;
            const Cell cell = cellAt(from);
            if (cell == emptyCell) continue;
            if (cell == slider || cell == queen || (cell == king && distance == 1)) return true;
            break;
        }
    }
    return false;
}

int TrialPosition::findKing(PieceColor color) const {
    const void* const king = std::memchr(cells.data(), cellOf(PieceType::king, color), cells.size());
    return king == nullptr ? noSquare : static_cast<int>(static_cast<const Cell*>(king) - cells.data());
}

bool TrialPosition::isKingInCheck(PieceColor color) const {
    const int king = findKing(color);
    return king != noSquare && isAttacked(king, opponent(color));
}

// The squares of the pieces that alone stand between `king` and an enemy slider, as bits.
std::uint64_t TrialPosition::shieldsOf(int king) const {
    const PieceColor enemy = opponent(turn);
    const Cell queen = cellOf(PieceType::queen, enemy);
    std::uint64_t shields = 0;
    for (std::size_t direction = 0; direction < geometry::directions.size(); ++direction) {
        const bool isDiagonal = direction < geometry::bishopDirectionsEnd;
        const Cell slider = cellOf(isDiagonal ? PieceType::bishop : PieceType::rook, enemy);
        const geometry::Ray ray = geometry::rays[static_cast<std::size_t>(king)][direction];
        int square = king;
        int shield = noSquare;
        for (int distance = 1; distance <= ray.count; ++distance) {
            square += ray.step;
            const Cell cell = cellAt(square);
            if (cell == emptyCell) continue;
            if (shield == noSquare) {
                shield = square;
                continue;
            }
            if (cell == slider || cell == queen) shields |= std::uint64_t{1} << shield;
            break;
        }
    }
    return shields;
}

bool TrialPosition::leavesKingSafe(TrialMove move) const {
    TrialPosition after = *this;
    after.apply(move);
    return !after.isKingInCheck(turn);
}

void TrialPosition::pseudoLegalMoves(TrialMoveList& moves) const {
    using namespace geometry;
    for (int from = 0; from < 64; ++from) {
        const Cell cell = cellAt(from);
        if (!holds(cell, turn)) continue;
        switch (typeOf(cell)) {
            case PieceType::pawn: generatePawnMoves(from, turn, moves); break;
            case PieceType::knight: generateKnightMoves(from, turn, moves); break;
            case PieceType::bishop:
                generateSlidingMoves(from, turn, bishopDirectionsBegin, bishopDirectionsEnd, moves);
                break;
            case PieceType::rook:
                generateSlidingMoves(from, turn, rookDirectionsBegin, rookDirectionsEnd, moves);
                break;
            case PieceType::queen:
                generateSlidingMoves(from, turn, bishopDirectionsBegin, rookDirectionsEnd, moves);
                break;
            case PieceType::king: generateKingMoves(from, turn, moves); break;
        }
    }
}

void TrialPosition::generatePawnMoves(int from, PieceColor color, TrialMoveList& moves) const {
    const int forward = forwardOf(color);
    const int file = geometry::fileOf(from);
    const int rank = geometry::rankOf(from);
    const int nextRank = rank + forward;
    if (!geometry::isOnBoard(file, nextRank)) return;

    const int ahead = squareAt(file, nextRank);
    if (cellAt(ahead) == emptyCell) {
        addPawnMoves(from, ahead, color, moves);
        const int twoAhead = ahead + 8 * forward;
        if (rank == pawnStartRankOf(color) && cellAt(twoAhead) == emptyCell) moves.add(from, twoAhead);
    }
    for (const int targetFile : {file - 1, file + 1}) {
        if (!geometry::isOnBoard(targetFile, nextRank)) continue;
        const int target = squareAt(targetFile, nextRank);
        if (holds(cellAt(target), opponent(color))) {
            addPawnMoves(from, target, color, moves);
        } else if (target == enPassantTarget) {
            // Never a promotion, and even onto an own piece: a target from a FEN is taken as written.
            moves.add(from, target);
        }
    }
}

void TrialPosition::generateKnightMoves(int from, PieceColor color, TrialMoveList& moves) const {
    for (const int target : geometry::knightTargets[static_cast<std::size_t>(from)]) {
        if (!holds(cellAt(target), color)) moves.add(from, target);
    }
}

void TrialPosition::generateSlidingMoves(int from, PieceColor color, std::size_t directionsBegin,
                                         std::size_t directionsEnd, TrialMoveList& moves) const {
    for (std::size_t direction = directionsBegin; direction < directionsEnd; ++direction) {
        const geometry::Ray ray = geometry::rays[static_cast<std::size_t>(from)][direction];
        int target = from;
        for (int distance = 1; distance <= ray.count; ++distance) {
            target += ray.step;
            const Cell cell = cellAt(target);
            if (holds(cell, color)) break;
            moves.add(from, target);
            if (cell != emptyCell) break;
        }
    }
}

void TrialPosition::generateKingMoves(int from, PieceColor color, TrialMoveList& moves) const {
    for (const int target : geometry::kingTargets[static_cast<std::size_t>(from)]) {
        if (!holds(cellAt(target), color)) moves.add(from, target);
    }

    const bool isWhite = color == PieceColor::white;
    const bool kingside = isWhite ? castlingRights.whiteKingside : castlingRights.blackKingside;
    const bool queenside = isWhite ? castlingRights.whiteQueenside : castlingRights.blackQueenside;
    const int home = homeRankOf(color);
    if (from != squareAt(fileE, home) || (!kingside && !queenside)) return;
    const auto isEmptyAt = [&](int file) { return cellAt(squareAt(file, home)) == emptyCell; };
    const auto isSafeAt = [&](int file) { return !isAttacked(squareAt(file, home), opponent(color)); };
    if (!isSafeAt(fileE)) return;
    // The flags are trusted: whether a rook stands in the corner is not looked at.
    if (kingside && isEmptyAt(fileF) && isEmptyAt(fileG) && isSafeAt(fileF) && isSafeAt(fileG)) {
        moves.add(from, squareAt(fileG, home));
    }
    if (queenside && isEmptyAt(fileD) && isEmptyAt(fileC) && isEmptyAt(1) && isSafeAt(fileD) &&
        isSafeAt(fileC)) {
        moves.add(from, squareAt(fileC, home));
    }
}

}  // namespace orlix
