#include "automatch/match_statistics.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <vector>

namespace orlix {
namespace {

using testing::DoubleNear;
using testing::Optional;

struct Row {
    MatchScore score;
    double difference;
    double error95;
    double superiority;
};

// Worked out with another program.
const std::vector<Row> rows{
    {{4, 2, 4}, 0.0, 217.0277, 0.5},
    {{6, 1, 3}, 107.5381, 269.0511, 0.8413447},
    {{55, 30, 15}, 147.1907, 60.4650, 0.9999991},
    {{120, 700, 180}, -20.8712, 11.7705, 0.0002660},
    {{1, 98, 1}, 0.0, 9.6327, 0.5},
    {{500, 0, 300}, 88.7395, 24.9158, 1.0},
};

TEST(MatchStatistics, differenceErrorAndSuperiorityFollowTheLogisticModel) {
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message()
                     << row.score.wins << '-' << row.score.draws << '-' << row.score.losses);
        EXPECT_THAT(eloDifference(row.score), Optional(DoubleNear(row.difference, 1e-4)));
        EXPECT_THAT(eloError95(row.score), Optional(DoubleNear(row.error95, 1e-4)));
        EXPECT_THAT(likelihoodOfSuperiority(row.score), Optional(DoubleNear(row.superiority, 1e-7)));
    }
}

TEST(MatchStatistics, theOtherPlayerSeesTheSameFromTheOtherSide) {
    for (const Row& row : rows) {
        const MatchScore other{row.score.losses, row.score.draws, row.score.wins};
        EXPECT_NEAR(*eloDifference(other), -*eloDifference(row.score), 1e-9);
        EXPECT_NEAR(*eloError95(other), *eloError95(row.score), 1e-9);
        EXPECT_NEAR(*likelihoodOfSuperiority(other), 1 - *likelihoodOfSuperiority(row.score), 1e-12);
    }
}

TEST(MatchStatistics, whatIsNotFiniteIsAbsent) {
    EXPECT_EQ(eloDifference({}), std::nullopt);
    EXPECT_EQ(eloError95({}), std::nullopt);
    EXPECT_EQ(likelihoodOfSuperiority({}), std::nullopt);

    for (const MatchScore oneSided : {MatchScore{5, 0, 0}, MatchScore{0, 0, 5}}) {
        EXPECT_EQ(eloDifference(oneSided), std::nullopt);
        EXPECT_EQ(eloError95(oneSided), std::nullopt);
        EXPECT_NE(likelihoodOfSuperiority(oneSided), std::nullopt);
    }

    // The difference is known, but its interval reaches a score of everything or of nothing.
    for (const MatchScore wide : {MatchScore{1, 0, 1}, MatchScore{9, 1, 0}, MatchScore{0, 1, 9}}) {
        EXPECT_NE(eloDifference(wide), std::nullopt);
        EXPECT_EQ(eloError95(wide), std::nullopt);
    }
}

TEST(MatchStatistics, equalPlayersDifferByNothingWithoutASign) {
    EXPECT_FALSE(std::signbit(*eloDifference({4, 2, 4})));
    EXPECT_FALSE(std::signbit(*eloDifference({0, 1, 0})));
}

TEST(MatchStatistics, drawsAloneMeanEqualStrengthAndNothingAboutSuperiority) {
    const MatchScore drawn{0, 7, 0};
    EXPECT_THAT(eloDifference(drawn), Optional(0.0));
    EXPECT_THAT(eloError95(drawn), Optional(0.0));
    EXPECT_EQ(likelihoodOfSuperiority(drawn), std::nullopt);
}

TEST(MatchStatistics, noScoreGivesInfinityOrNotANumber) {
    const std::vector<qint64> counts{0, 1, 2, 3, 10, 999, 1'000'000, std::numeric_limits<qint64>::max()};
    int present = 0;
    for (const qint64 wins : counts) {
        for (const qint64 draws : counts) {
            for (const qint64 losses : counts) {
                const MatchScore score{wins, draws, losses};
                for (const auto& value :
                     {eloDifference(score), eloError95(score), likelihoodOfSuperiority(score)}) {
                    if (!value) continue;
                    ++present;
                    EXPECT_TRUE(std::isfinite(*value)) << wins << '-' << draws << '-' << losses;
                }
                const auto superiority = likelihoodOfSuperiority(score);
                if (superiority) {
                    EXPECT_TRUE(*superiority >= 0 && *superiority <= 1);
                }
            }
        }
    }
    EXPECT_GT(present, 1000);
}

}  // namespace
}  // namespace orlix
