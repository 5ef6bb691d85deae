#include "ui/player_info.h"

#include "engine/uci_engine_process.h"
#include "game/game_manager.h"

namespace orlix {
namespace {

const UCIEngineProcess* engineOf(PieceColor color, const GameManager& game) {
    return color == PieceColor::white ? game.whiteEngineProcess() : game.blackEngineProcess();
}

bool isEngineSeat(PieceColor color, GameMode mode, PieceColor humanColor) {
    switch (mode) {
        case GameMode::humanVsHuman: return false;
        case GameMode::engineVsEngine: return true;
        case GameMode::humanVsEngine: return color != humanColor;
    }
    Q_UNREACHABLE();
}

}  // namespace

PlayerInfo playerInfo(PieceColor color, GameMode mode, PieceColor humanColor,
                      const std::optional<QString>& engineName) {
    const bool isWhite = color == PieceColor::white;
    switch (mode) {
        case GameMode::humanVsHuman:
            return {isWhite ? QStringLiteral("Player 1") : QStringLiteral("Player 2"), false};
        case GameMode::engineVsEngine:
            return {engineName.value_or(isWhite ? QStringLiteral("White Engine")
                                                : QStringLiteral("Black Engine")),
                    true};
        case GameMode::humanVsEngine:
            if (color == humanColor) return {QStringLiteral("Player"), false};
            return {engineName.value_or(QStringLiteral("UCI Engine")), true};
    }
    Q_UNREACHABLE();
}

PlayerInfo playerInfo(PieceColor color, const GameManager& game) {
    const UCIEngineProcess* engine = engineOf(color, game);
    return playerInfo(color, game.gameMode(), game.humanColor(),
                      engine != nullptr ? std::optional(engine->config().name) : std::nullopt);
}

std::vector<PieceColor> emptyEngineSeats(const GameManager& game) {
    std::vector<PieceColor> seats;
    for (const PieceColor color : allPieceColors) {
        if (isEngineSeat(color, game.gameMode(), game.humanColor()) && engineOf(color, game) == nullptr) {
            seats.push_back(color);
        }
    }
    return seats;
}

}  // namespace orlix
