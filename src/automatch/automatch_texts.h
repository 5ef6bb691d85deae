// The words of an automatch series: result, reason and verdict. They are German whatever the interface
// language is: records of one series read alike on every machine. Pure functions; any thread.
#pragma once

#include <QString>

#include "core/game_end_reason.h"

namespace orlix {

/// "1-0", "0-1" or "1/2-1/2".
QString automatchResult(const GameEndReason& reason);

/// "Schachmatt (Weiß gewinnt)", "Remis (Patt)" and so on.
QString automatchReasonText(const GameEndReason& reason);

/// Who has won the match and by how many points, the winner's first: "Stockfish gewinnt das Match (6.5
/// : 3.5)!" or "Match unentschieden (5.0 : 5.0)!".
QString automatchVerdict(const QString& engine1Name, double engine1Points, const QString& engine2Name,
                         double engine2Points);

}  // namespace orlix
