#include "game/game_mode.h"

#include <QRandomGenerator>

namespace orlix {

QLatin1String rawValue(GameMode mode) {
    switch (mode) {
        case GameMode::humanVsEngine: return QLatin1String("human_vs_engine");
        case GameMode::engineVsEngine: return QLatin1String("engine_vs_engine");
        case GameMode::humanVsHuman: return QLatin1String("human_vs_human");
    }
    Q_UNREACHABLE();
}

QLatin1String locKey(GameMode mode) {
    switch (mode) {
        case GameMode::humanVsEngine: return QLatin1String("mode_human_vs_engine");
        case GameMode::engineVsEngine: return QLatin1String("mode_engine_vs_engine");
        case GameMode::humanVsHuman: return QLatin1String("mode_human_vs_human");
    }
    Q_UNREACHABLE();
}

std::optional<GameMode> gameModeFromRawValue(QStringView text) {
    for (const GameMode mode : allGameModes) {
        if (text == rawValue(mode)) return mode;
    }
    return std::nullopt;
}

QLatin1String rawValue(PlayerColorChoice choice) {
    switch (choice) {
        case PlayerColorChoice::white: return QLatin1String("white");
        case PlayerColorChoice::black: return QLatin1String("black");
        case PlayerColorChoice::random: return QLatin1String("random");
    }
    Q_UNREACHABLE();
}

QLatin1String locKey(PlayerColorChoice choice) {
    switch (choice) {
        case PlayerColorChoice::white: return QLatin1String("color_white");
        case PlayerColorChoice::black: return QLatin1String("color_black");
        case PlayerColorChoice::random: return QLatin1String("color_random");
    }
    Q_UNREACHABLE();
}

std::optional<PlayerColorChoice> playerColorChoiceFromRawValue(QStringView text) {
    for (const PlayerColorChoice choice : allPlayerColorChoices) {
        if (text == rawValue(choice)) return choice;
    }
    return std::nullopt;
}

PieceColor resolve(PlayerColorChoice choice) {
    switch (choice) {
        case PlayerColorChoice::white: return PieceColor::white;
        case PlayerColorChoice::black: return PieceColor::black;
        case PlayerColorChoice::random:
            return QRandomGenerator::global()->bounded(2) == 0 ? PieceColor::white : PieceColor::black;
    }
    Q_UNREACHABLE();
}

}  // namespace orlix
