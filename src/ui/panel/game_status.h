// What the header says about the game: a text's key, the tone of its pill and a symbol.
#pragma once

#include <QString>
#include <optional>

#include "ui/icons.h"
#include "ui/theme.h"

namespace orlix {

class AutomatchManager;
class GameManager;

enum class StatusTone { playing, check, paused, drawn, won };

struct GameStatus {
    QString key;
    StatusTone tone = StatusTone::playing;
    std::optional<Icon> symbol;
    QString secondaryKey;         ///< empty when there is nothing more to say
    QString secondaryCount = {};  ///< written behind it

    bool operator==(const GameStatus&) const = default;
};

/// The end of the game before a pause, a pause before a check, a check before whose turn it is.
GameStatus gameStatus(const GameManager& game);

/// The same while no series runs. A series that is paused comes before everything; one that goes on takes the
/// place of whose turn it is, which changes too often to be read.
GameStatus gameStatus(const GameManager& game, const AutomatchManager& series);

struct StatusColors {
    QColor ground;
    QColor ink;
};
StatusColors statusColors(StatusTone tone, const Theme& theme);

}  // namespace orlix
