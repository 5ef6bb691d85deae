// A position reduced to what the rules of movement need: letters instead of pieces with identities, no
// counters, no history. Legality and check are tried out on copies of it, so it stays small. An internal
// value type of the rules; use ChessBoard elsewhere.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "core/castling_rights.h"
#include "core/move.h"
#include "core/piece.h"

namespace orlix {

struct ChessBoard;

/// What stands on a square: 0 for nothing, else the type plus 1, plus 8 for black.
using Cell = std::uint8_t;
inline constexpr Cell emptyCell = 0;

constexpr Cell cellOf(PieceType type, PieceColor color) {
    return static_cast<Cell>(static_cast<unsigned>(type) + 1U + (color == PieceColor::black ? 8U : 0U));
}
/// `cell` must not be empty.
constexpr PieceType typeOf(Cell cell) {
    return static_cast<PieceType>((cell & 7U) - 1U);
}
/// `cell` must not be empty.
constexpr PieceColor colorOf(Cell cell) {
    return static_cast<PieceColor>(cell >> 3U);
}
constexpr bool holds(Cell cell, PieceColor color) {
    return cell != emptyCell && colorOf(cell) == color;
}

/// A move between square indexes. Left uninitialised by default, because lists of them are large and
/// short-lived.
struct TrialMove {
    static constexpr std::uint8_t noPromotion = 0xFF;

    std::int8_t from;
    std::int8_t to;
    std::uint8_t promotion;  ///< a PieceType, or `noPromotion`

    bool isPromotion() const { return promotion != noPromotion; }
    PieceType promotionType() const { return static_cast<PieceType>(promotion); }
    Move move() const;
    /// Writes `move()` where it is to stand. Lists are filled this way: copying a Move just built stalls the
    /// processor, which made up half of the time of a list.
    void writeTo(Move& move) const;
};

/// Moves in generation order.
class TrialMoveList {
  public:
    // Every empty or enemy square can be reached by the first piece in each of eight directions and by eight
    // knights, a last-rank square by three pawns with three further promotions each on either side of the
    // board, and a king castles twice: 64 * 16 + 16 * 9 + 2 moves at most, in whatever position.
    static constexpr std::size_t capacity = 1170;

    void add(int from, int to) { add(from, to, TrialMove::noPromotion); }
    void add(int from, int to, PieceType promotion) { add(from, to, static_cast<std::uint8_t>(promotion)); }
    void resize(std::size_t size) { size_ = size; }

    std::size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }
    TrialMove& operator[](std::size_t i) { return moves_[i]; }
    const TrialMove* begin() const { return moves_.data(); }
    const TrialMove* end() const { return moves_.data() + size_; }

  private:
    void add(int from, int to, std::uint8_t promotion) {
        moves_[size_++] = {static_cast<std::int8_t>(from), static_cast<std::int8_t>(to), promotion};
    }

    std::size_t size_ = 0;
    std::array<TrialMove, capacity> moves_;
};

/// Everything that a move changes besides lifting the moving piece off its origin.
struct MoveEffects {
    static constexpr std::int8_t noSquare = -1;

    Cell placed = emptyCell;  ///< what stands on the target afterwards
    bool isPawnMove = false;
    bool isCapture = false;
    std::int8_t enPassantVictim = noSquare;  ///< the square emptied by an en-passant capture
    std::int8_t rookFrom = noSquare;         ///< castling: what stands here goes to `rookTo`
    std::int8_t rookTo = noSquare;
    std::int8_t enPassantTarget = noSquare;  ///< the target afterwards
    CastlingRights castlingRights;           ///< the rights afterwards
};

struct TrialPosition {
    static constexpr std::int8_t noSquare = MoveEffects::noSquare;

    std::array<Cell, 64> cells{};
    PieceColor turn = PieceColor::white;
    CastlingRights castlingRights;
    std::int8_t enPassantTarget = noSquare;

    explicit TrialPosition(const ChessBoard& board);

    Cell cellAt(int square) const { return cells[static_cast<std::size_t>(square)]; }

    /// What `move` changes here. It trusts the move; the origin must hold a piece.
    MoveEffects effectsOf(TrialMove move) const;
    /// Plays `move`, which is trusted; nothing happens when the origin is empty.
    void apply(TrialMove move);

    /// Fills `moves` with the legal moves of the side to move, in the fixed order.
    void legalMoves(TrialMoveList& moves) const;

    bool isAttacked(int square, PieceColor by) const;
    /// The first square in index order with a king of that colour; `noSquare` without one.
    int findKing(PieceColor color) const;
    bool isKingInCheck(PieceColor color) const;

  private:
    void pseudoLegalMoves(TrialMoveList& moves) const;
    void generatePawnMoves(int from, PieceColor color, TrialMoveList& moves) const;
    void generateKnightMoves(int from, PieceColor color, TrialMoveList& moves) const;
    void generateSlidingMoves(int from, PieceColor color, std::size_t directionsBegin,
                              std::size_t directionsEnd, TrialMoveList& moves) const;
    void generateKingMoves(int from, PieceColor color, TrialMoveList& moves) const;
    std::uint64_t shieldsOf(int king) const;
    bool leavesKingSafe(TrialMove move) const;
};

}  // namespace orlix
