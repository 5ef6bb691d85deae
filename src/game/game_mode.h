// Who plays whom, and which colour the person takes.
#pragma once

#include <QLatin1String>
#include <QStringView>
#include <array>
#include <optional>

#include "core/piece.h"

namespace orlix {

enum class GameMode { humanVsEngine, engineVsEngine, humanVsHuman };
inline constexpr std::array allGameModes{GameMode::humanVsEngine, GameMode::engineVsEngine,
                                         GameMode::humanVsHuman};
QLatin1String rawValue(GameMode mode);
QLatin1String locKey(GameMode mode);
std::optional<GameMode> gameModeFromRawValue(QStringView text);

enum class PlayerColorChoice { white, black, random };
inline constexpr std::array allPlayerColorChoices{PlayerColorChoice::white, PlayerColorChoice::black,
                                                  PlayerColorChoice::random};
QLatin1String rawValue(PlayerColorChoice choice);
QLatin1String locKey(PlayerColorChoice choice);
std::optional<PlayerColorChoice> playerColorChoiceFromRawValue(QStringView text);
/// White, black, or a uniformly random one of them.
PieceColor resolve(PlayerColorChoice choice);

}  // namespace orlix
