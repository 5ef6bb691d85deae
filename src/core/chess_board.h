// A complete position with its history: a value, copied freely.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/castling_rights.h"
#include "core/game_end_reason.h"
#include "core/move.h"
#include "core/move_record.h"
#include "core/piece.h"
#include "core/square.h"

namespace orlix {

/// Why a FEN text was refused; `what()` is the English message.
class FenError : public std::runtime_error {
  public:
    FenError(int code, const std::string& message) : std::runtime_error(message), code_(code) {}
    static constexpr std::string_view domain = "Velmorandix";
    int code() const { return code_; }

  private:
    int code_;
};

struct ChessBoard {
    static constexpr std::string_view standardStartingFEN =
        "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";

    std::array<std::optional<Piece>, 64> squares{};  ///< by `Square::index`
    PieceColor turn = PieceColor::white;
    CastlingRights castlingRights;
    std::optional<Square> enPassantTarget;
    std::int64_t halfmoveClock = 0;  ///< plies since the last pawn move or capture
    std::int64_t fullmoveNumber = 1;
    std::vector<MoveRecord> history;                                ///< oldest first
    std::unordered_map<std::string, std::int64_t> positionHistory;  ///< occurrences of each repetition key

    struct CapturedPieces {
        std::vector<Piece> white;
        std::vector<Piece> black;
    };

    ChessBoard();  ///< the standard starting position
    /// A board loaded with `load`; throws FenError.
    static ChessBoard fromFen(std::string_view fen);
    /// Replaces the whole state; throws FenError and then leaves the board as it was. Only the number of
    /// fields and ranks and a piece beyond the h file are refused: all else is read leniently.
    void load(std::string_view fen);

    bool operator==(const ChessBoard&) const = default;

    /// An index outside 0..63 is a programming error and stops the program, here and in `at`.
    std::optional<Piece>& operator[](Square square);
    const std::optional<Piece>& operator[](Square square) const;
    std::optional<Piece>& at(std::int64_t file, std::int64_t rank);
    const std::optional<Piece>& at(std::int64_t file, std::int64_t rank) const;

    /// The six fields of the current state.
    std::string fen() const;
    /// The first four fields of `fen`: what a repetition is counted by.
    std::string positionHashKey() const;

    /// All legal moves of the side to move. The order is fixed: by origin from a1 to h8, then as each piece
    /// lists its own. Castling flags are trusted without looking for the rook.
    std::vector<Move> generateLegalMoves() const;
    /// The legal moves that start at `from`, in the same order.
    std::vector<Move> legalMoves(Square from) const;
    /// Whether a piece of `by` attacks the square, whatever stands on it.
    bool isSquareAttacked(Square square, PieceColor by) const;
    /// False without a king of that colour.
    bool isKingInCheck(PieceColor color) const;
    /// The first king of that colour from a1 to h8.
    std::optional<Square> findKing(PieceColor color) const;

    /// Plays a legal move and records it; false, with the board untouched, for any other. The promotion must
    /// be given exactly when the move needs one.
    bool play(const Move& move);
    /// Takes back the last move of `history`; false without one. Pieces keep their identity, but a pawn that
    /// comes back from a promotion is a new piece.
    bool undo();
    /// Why the game has ended by the board's own rules: mate or stalemate first, then the fifty-move rule,
    /// the third occurrence, and insufficient material. Absent while it goes on; never timeout or
    /// resignation.
    std::optional<GameEndReason> gameEndReason() const;
    bool isGameOver() const;
    bool hasInsufficientMaterial() const;
    std::int64_t materialScore() const;  ///< from White's side
    /// The material missing from each side's full set, as new pieces; their order means nothing.
    CapturedPieces capturedPieces() const;

  private:
    struct Unloaded {};
    explicit ChessBoard(Unloaded) {}  ///< an empty board with an empty repetition table, for the reader
};

}  // namespace orlix
