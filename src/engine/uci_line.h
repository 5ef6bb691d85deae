// One line of an engine's output: what it means, and what an info line says. Pure functions on UTF-8 text
// that has been trimmed already; any thread.
#pragma once

#include <optional>
#include <string_view>

#include "engine/engine_evaluation.h"

namespace orlix {

enum class UciLineKind {
    other,  ///< only logged: id and option lines, a bare bestmove, anything unknown
    uciOk,
    readyOk,
    info,
    bestMove,
};

UciLineKind uciLineKind(std::string_view line);

/// Merges an info line into `evaluation`: what the line does not say, or says unreadably, stays as it was.
void mergeInfoLine(std::string_view line, EngineEvaluation& evaluation);

/// The second token of a best move line, unchanged ("e2e4", "(none)", "0000"); absent without one.
std::optional<std::string_view> bestMoveFromLine(std::string_view line);

}  // namespace orlix
