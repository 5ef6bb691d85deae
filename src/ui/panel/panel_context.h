// What every piece of the side panel is built from, handed on as one; and the panel's own state.
#pragma once

#include <QString>
#include <optional>

#include "core/uuid.h"

namespace orlix {

class AssistiveTechnology;
class AutomatchManager;
class EngineManager;
class GameManager;
class LocalizationManager;
class PGNExporter;
class Theme;
class TimeSource;

struct PanelContext {
    GameManager& game;
    EngineManager& engines;
    LocalizationManager& loc;
    AutomatchManager& automatch;
    Theme& theme;
    PGNExporter& exporter;
    TimeSource& time;
    AssistiveTechnology& listener;
};

/// Which way of thinking is chosen, by the position of its segment.
enum class ThinkingModeSelection { gameClock, fixedMoveTime, fixedDepth };

/// The panel's own state: choices that are not in force yet, and what is open. Lives as long as the window.
struct PanelState {
    int selectedTab = 0;
    double customBaseMinutes = 5;
    double customIncrementSeconds = 3;
    double fixedMoveTimeSeconds = 2;
    double fixedSearchDepth = 12;  ///< plies
    ThinkingModeSelection thinkingModeSelection = ThinkingModeSelection::gameClock;
    bool opponentLimitElo = false;
    double opponentElo = 1800;
    bool whiteLimitElo = false;
    double whiteElo = 1800;
    bool blackLimitElo = false;
    double blackElo = 1800;
    std::optional<Uuid> editingEngineEloId;
    QString fenInputText;
    std::optional<QString> toastMessage;
    bool showEngineAddAlert = false;
    std::optional<QString> engineAddError;
};

}  // namespace orlix
