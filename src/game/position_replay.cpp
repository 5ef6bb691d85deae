#include "game/position_replay.h"

#include <algorithm>

namespace orlix {

const ChessBoard& PositionReplay::after(const std::vector<MoveRecord>& history, std::size_t plies) {
    const bool continues =
        board_ && moves_.size() <= plies &&
        std::equal(moves_.begin(), moves_.end(), history.begin(),
                   [](const Move& played, const MoveRecord& record) { return played == record.move; });
    if (!continues) {
        board_.emplace();
        moves_.clear();
    }
    for (std::size_t ply = moves_.size(); ply < plies; ++ply) {
        board_->play(history[ply].move);
        moves_.push_back(history[ply].move);
    }
    return *board_;
}

}  // namespace orlix
