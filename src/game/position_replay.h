// Positions of a game's past, replayed from the standard starting position. A value that the game manager
// owns; main thread only.
#pragma once

#include <optional>
#include <vector>

#include "core/chess_board.h"

namespace orlix {

/// Keeps the position that was asked for last: asking again for the same moves computes nothing and gives the
/// same pieces, identities included; asking for a continuation of them plays only what is new.
class PositionReplay {
  public:
    /// The position after the first `plies` moves of `history`, each played if it is legal there and left out
    /// otherwise. `plies` is at most the history's length. The reference holds until the next call.
    const ChessBoard& after(const std::vector<MoveRecord>& history, std::size_t plies);

  private:
    std::optional<ChessBoard> board_;
    std::vector<Move> moves_;  ///< what `board_` was asked to play, from the standard start
};

}  // namespace orlix
