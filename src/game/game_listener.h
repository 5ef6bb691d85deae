// Whoever runs a series of games over the one game manager and wants to hear of each end.
#pragma once

#include <QString>

#include "core/chess_board.h"
#include "core/game_end_reason.h"

namespace orlix {

class GameListener {
  public:
    virtual ~GameListener() = default;
    /// True while a series is running; only then `handleGameEnd` is called.
    virtual bool isAutomatchActive() const = 0;
    virtual void handleGameEnd(const GameEndReason& reason, const ChessBoard& board, const QString& pgn) = 0;
};

}  // namespace orlix
