#include "ui/panel/new_game_settings.h"

#include "engine/engine_manager.h"
#include "game/game_manager.h"

namespace orlix {

namespace {

EngineSeat seat(const std::optional<EngineConfiguration>& engine, bool limitElo, qint64 elo) {
    return {engine ? std::optional<Uuid>(engine->id) : std::nullopt, limitElo, static_cast<double>(elo)};
}

std::optional<EngineConfiguration> find(const EngineManager& engines, const std::optional<Uuid>& id) {
    if (!id) return std::nullopt;
    for (const EngineConfiguration& engine : engines.availableEngines()) {
        if (engine.id == *id) return engine;
    }
    return std::nullopt;
}

void applyWhite(const EngineSeat& seat, GameManager& game, EngineManager& engines) {
    if (const auto engine = find(engines, seat.engine)) engines.setSelectedWhiteEngine(engine);
    game.setWhiteEngineLimit(seat.limitElo, qRound64(seat.elo));
}

void applyBlack(const EngineSeat& seat, GameManager& game, EngineManager& engines) {
    if (const auto engine = find(engines, seat.engine)) engines.setSelectedBlackEngine(engine);
    game.setBlackEngineLimit(seat.limitElo, qRound64(seat.elo));
}

}  // namespace

NewGameSettings NewGameSettings::inForce(const GameManager& game, const EngineManager& engines) {
    NewGameSettings settings;
    settings.mode = game.gameMode();
    settings.color = game.colorChoice();
    settings.time = game.timeControlConfig();
    settings.white = seat(engines.selectedWhiteEngine(), game.whiteEngineLimitElo(), game.whiteEngineElo());
    settings.black = seat(engines.selectedBlackEngine(), game.blackEngineLimitElo(), game.blackEngineElo());
    // With a drawn colour both seats were written alike: the one of the running game shows them.
    PieceColor person = game.humanColor();
    if (settings.color == PlayerColorChoice::white) person = PieceColor::white;
    if (settings.color == PlayerColorChoice::black) person = PieceColor::black;
    settings.opponent = person == PieceColor::white ? settings.black : settings.white;
    return settings;
}

void NewGameSettings::apply(GameManager& game, EngineManager& engines) const {
    game.setGameMode(mode);
    game.setColorChoice(color);
    game.setTimeControlConfig(time);
    switch (mode) {
        case GameMode::humanVsEngine:
            if (color != PlayerColorChoice::white) applyWhite(opponent, game, engines);
            if (color != PlayerColorChoice::black) applyBlack(opponent, game, engines);
            break;
        case GameMode::engineVsEngine:
            applyWhite(white, game, engines);
            applyBlack(black, game, engines);
            break;
        case GameMode::humanVsHuman: break;
    }
}

}  // namespace orlix
