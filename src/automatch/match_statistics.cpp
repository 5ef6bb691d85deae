#include "automatch/match_statistics.h"

#include <cmath>

namespace orlix {
namespace {

constexpr double normalQuantile95 = 1.959963984540054;  // of the two-sided interval

struct Shares {
    double games, win, draw, loss;
    double points() const { return win + draw / 2; }
};

Shares sharesOf(const MatchScore& score) {
    const double wins = static_cast<double>(score.wins);
    const double draws = static_cast<double>(score.draws);
    const double losses = static_cast<double>(score.losses);
    const double games = wins + draws + losses;
    return {games, wins / games, draws / games, losses / games};
}

std::optional<double> differenceAt(double points) {
    if (!(points > 0 && points < 1)) return std::nullopt;
    return 400 * std::log10(points / (1 - points));  // 0 without a sign at one half
}

}  // namespace

std::optional<double> eloDifference(const MatchScore& score) {
    return differenceAt(sharesOf(score).points());
}

std::optional<double> eloError95(const MatchScore& score) {
    const Shares shares = sharesOf(score);
    const double mean = shares.points();
    const double variance = shares.win * (1 - mean) * (1 - mean) + shares.draw * (0.5 - mean) * (0.5 - mean) +
                            shares.loss * mean * mean;
    const double margin = normalQuantile95 * std::sqrt(variance / shares.games);
    const auto low = differenceAt(mean - margin);
    const auto high = differenceAt(mean + margin);
    if (!low || !high) return std::nullopt;
    return (*high - *low) / 2;
}

std::optional<double> likelihoodOfSuperiority(const MatchScore& score) {
    const double wins = static_cast<double>(score.wins);
    const double losses = static_cast<double>(score.losses);
    if (!(wins + losses > 0)) return std::nullopt;
    return (1 + std::erf((wins - losses) / std::sqrt(2 * (wins + losses)))) / 2;
}

}  // namespace orlix
