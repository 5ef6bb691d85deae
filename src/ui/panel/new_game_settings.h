// Everything that the next game can be set to, as one value: read from what is in force, edited in the New
// game tab, and handed over as a whole.
#pragma once

#include <optional>

#include "core/uuid.h"
#include "engine/engine_configuration.h"
#include "game/game_mode.h"
#include "game/time_control_config.h"

namespace orlix {

class EngineManager;
class GameManager;

/// One engine's seat: who sits there and how strong it may be.
struct EngineSeat {
    std::optional<Uuid> engine;  ///< none while nothing is registered
    bool limitElo = false;
    double elo = 1800;

    bool operator==(const EngineSeat&) const = default;
};

struct NewGameSettings {
    GameMode mode = GameMode::humanVsEngine;
    PlayerColorChoice color = PlayerColorChoice::white;
    TimeControlConfig time;
    EngineSeat opponent;  ///< the engine in a game of a person against one
    EngineSeat white;     ///< the two engines of a game between them
    EngineSeat black;

    bool operator==(const NewGameSettings&) const = default;

    /// What the next game would be played with now.
    static NewGameSettings inForce(const GameManager& game, const EngineManager& engines);

    /// Hands everything over: against an engine the opponent goes into the seat of the engine's colour, into
    /// both when the colour is drawn; between engines each goes into its own. Starts no game.
    void apply(GameManager& game, EngineManager& engines) const;
};

}  // namespace orlix
