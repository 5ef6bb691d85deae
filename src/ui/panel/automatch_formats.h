// How the automatch tab and widget write numbers. Pure functions; the literals are the same in every
// language.
#pragma once

#include <QString>
#include <optional>

#include "automatch/match_statistics.h"

namespace orlix {

/// What stands where there is no number yet.
QString automatchDash();

/// " 3 / 10": written behind a word, hence the space before it.
QString gamesText(qint64 games, qint64 total);

/// "1800 ELO", or "Max ELO" without a limit.
QString eloCapText(bool limitElo, qint64 elo);

/// "1.5 s".
QString secondsText(double seconds);

/// A side's points with one decimal, a draw being half of one: "2.5".
QString pointsText(qint64 wins, qint64 draws);

/// "Elo +120 ± 390 · LOS 72 %", with a dash for each number that is not finite.
QString strengthText(const MatchScore& score);

/// "Partie #3".
QString automatchGameTitle(qint64 gameNumber);

}  // namespace orlix
