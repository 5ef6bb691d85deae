// A series of games between two engines through the program's window, and what another program says about its
// record. Main thread.
#pragma once

#include <QString>

#include "e2e/desktop.h"
#include "e2e/played_application.h"

namespace orlix::e2e {

struct SeriesScore {
    int wins = 0;    ///< of engine 1
    int losses = 0;  ///< of engine 1
    int draws = 0;

    bool operator==(const SeriesScore&) const = default;
    QString text() const;
};

struct PlayedSeries {
    QString verdict;    ///< the closing words that the window shows
    SeriesScore shown;  ///< by the scoreboard
    QString pgn;        ///< of all games, from the clipboard
};

/// Plays `games`, one of the presets, at `depth` plies a move between the first two engines of the registry,
/// and copies all games. Throws std::runtime_error when the series does not come to its end.
PlayedSeries playSeries(const Desktop& desktop, AccessibleTree& tree, PlayedApplication& application,
                        const QString& engine1, const QString& engine2, int games, int depth);

/// The same score counted by pgn-extract in a file of games. Throws when a game is not legal throughout, when
/// the number of games is another, or when a decided game does not end with mate.
SeriesScore scoreByPgnExtract(const QString& file, const QString& engine1, int games);

}  // namespace orlix::e2e
