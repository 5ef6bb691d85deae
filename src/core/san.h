// Standard Algebraic Notation of one move. Internal to the rules: ChessBoard::play records it.
#pragma once

#include <string>

#include "core/trial_position.h"

namespace orlix {

/// The SAN of `move` with its check or mate suffix. `position` is the one before the move, and `legalMoves`
/// are its legal moves, over which the move is told apart. From an empty origin: the move's UCI text.
std::string standardAlgebraicNotation(const TrialPosition& position, TrialMove move,
                                      const TrialMoveList& legalMoves);

}  // namespace orlix
