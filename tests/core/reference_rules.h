// The rules of movement written down a second time, as plainly as possible: every candidate is played on a
// full copy of the board. The tests compare the program's own, faster rules with it, on any position.
#pragma once

#include <string>
#include <vector>

#include "core/chess_board.h"

namespace orlix::reference {

std::vector<Move> legalMoves(const ChessBoard& board);
bool isAttacked(const ChessBoard& board, Square square, PieceColor by);

/// Plays a trusted move on the board: no record and no repetition count.
void apply(ChessBoard& board, const Move& move);
std::optional<Piece> capturedPiece(const ChessBoard& board, const Move& move);
std::string san(const ChessBoard& board, const Move& move);
/// Takes back `record`, the last of the board's moves.
void undo(ChessBoard& board);
std::optional<GameEndReason> gameEndReason(const ChessBoard& board);

}  // namespace orlix::reference
