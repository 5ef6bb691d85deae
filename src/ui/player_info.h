// What a banner calls the player of one colour, and where an engine's seat has stayed empty.
#pragma once

#include <QString>
#include <optional>
#include <vector>

#include "core/piece.h"
#include "game/game_mode.h"

namespace orlix {

class GameManager;

struct PlayerInfo {
    QString name;
    bool isEngine = false;
    bool operator==(const PlayerInfo&) const = default;
};

/// The on-screen name of `color`. `engineName` is the configured name of the engine process on that side,
/// absent without a process. These names differ on purpose from those in PGN ("White Player").
PlayerInfo playerInfo(PieceColor color, GameMode mode, PieceColor humanColor,
                      const std::optional<QString>& engineName);
PlayerInfo playerInfo(PieceColor color, const GameManager& game);

/// The colours that an engine should play in `game` while no engine process sits there, White first.
std::vector<PieceColor> emptyEngineSeats(const GameManager& game);

}  // namespace orlix
