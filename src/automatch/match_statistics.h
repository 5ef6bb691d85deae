// What a match says about the strength of two players, from wins, draws and losses. Pure functions; any
// thread. The numbers are those of the first player; a number that would not be finite is absent.
//
// Source: the logistic model of Arpad Elo's rating system, as the Chess Programming Wiki gives it for matches
// between programs ("Match Statistics").
#pragma once

#include <QtGlobal>
#include <optional>

namespace orlix {

struct MatchScore {
    qint64 wins = 0;
    qint64 draws = 0;
    qint64 losses = 0;
    bool operator==(const MatchScore&) const = default;
};

/// Elo points that the player is stronger by: -400 log10(1 / s - 1) for the share s of the points. Absent
/// without a game and while one side has all the points.
std::optional<double> eloDifference(const MatchScore& score);

/// Half the width of the difference's 95 % interval, in Elo points: that of the differences at s ± 1.96
/// standard errors of the mean over the games' results. Absent where the difference is, and while the
/// interval touches a score of nothing or of everything.
std::optional<double> eloError95(const MatchScore& score);

/// Probability, 0 to 1, that the player is the stronger one: (1 + erf((w - l) / sqrt(2 (w + l)))) / 2. Absent
/// until one game is decided.
std::optional<double> likelihoodOfSuperiority(const MatchScore& score);

}  // namespace orlix
