// The board as a value: construction and access to squares, and the questions that the trial position
// answers.
#include "core/chess_board.h"

#include <cassert>
#include <cstdlib>

#include "core/trial_position.h"

namespace orlix {
namespace {

// Stops the program also where assertions are off: a wrong index would corrupt memory silently.
std::size_t checkedIndex(std::int64_t index) {
    if (index < 0 || index > 63) std::abort();
    return static_cast<std::size_t>(index);
}

std::vector<Move> movesOf(const TrialMoveList& list) {
    std::vector<Move> moves(list.size());
    auto next = moves.begin();
    for (const TrialMove move : list) {
        move.writeTo(*next++);
    }
    return moves;
}

}  // namespace

ChessBoard::ChessBoard() {
    load(standardStartingFEN);
}

ChessBoard ChessBoard::fromFen(std::string_view fen) {
    ChessBoard board{Unloaded{}};
    board.load(fen);
    return board;
}

std::optional<Piece>& ChessBoard::operator[](Square square) {
    return squares[checkedIndex(square.index())];
}

const std::optional<Piece>& ChessBoard::operator[](Square square) const {
    return squares[checkedIndex(square.index())];
}

std::optional<Piece>& ChessBoard::at(std::int64_t file, std::int64_t rank) {
    return (*this)[Square{file, rank}];
}

const std::optional<Piece>& ChessBoard::at(std::int64_t file, std::int64_t rank) const {
    return (*this)[Square{file, rank}];
}

std::vector<Move> ChessBoard::generateLegalMoves() const {
    TrialMoveList moves;
    TrialPosition(*this).legalMoves(moves);
    return movesOf(moves);
}

std::vector<Move> ChessBoard::legalMoves(Square from) const {
    std::vector<Move> moves = generateLegalMoves();
    std::erase_if(moves, [from](const Move& move) { return move.from != from; });
    return moves;
}

bool ChessBoard::isSquareAttacked(Square square, PieceColor by) const {
    return TrialPosition(*this).isAttacked(static_cast<int>(checkedIndex(square.index())), by);
}

bool ChessBoard::isKingInCheck(PieceColor color) const {
    return TrialPosition(*this).isKingInCheck(color);
}

std::optional<Square> ChessBoard::findKing(PieceColor color) const {
    return Square::fromIndex(TrialPosition(*this).findKing(color));
}

}  // namespace orlix
