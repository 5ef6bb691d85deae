#include "ui/panel/automatch_formats.h"

#include <gtest/gtest.h>

namespace orlix {
namespace {

TEST(AutomatchFormats, gamesPlayedStandBehindAWord) {
    EXPECT_EQ(gamesText(3, 10), QStringLiteral(" 3 / 10"));
    EXPECT_EQ(gamesText(0, 1), QStringLiteral(" 0 / 1"));
    EXPECT_EQ(gamesText(1000, 9999), QStringLiteral(" 1000 / 9999"));
}

TEST(AutomatchFormats, aStrengthIsWrittenWithItsUnitOrAsTheMost) {
    EXPECT_EQ(eloCapText(true, 1800), QStringLiteral("1800 ELO"));
    EXPECT_EQ(eloCapText(false, 1800), QStringLiteral("Max ELO"));
}

TEST(AutomatchFormats, secondsAndPointsHaveOneDecimal) {
    EXPECT_EQ(secondsText(1.5), QStringLiteral("1.5 s"));
    EXPECT_EQ(secondsText(0), QStringLiteral("0.0 s"));
    EXPECT_EQ(secondsText(41.26), QStringLiteral("41.3 s"));
    EXPECT_EQ(pointsText(2, 1), QStringLiteral("2.5"));
    EXPECT_EQ(pointsText(0, 0), QStringLiteral("0.0"));
    EXPECT_EQ(pointsText(3, 0), QStringLiteral("3.0"));
}

TEST(AutomatchFormats, gamesAreNumberedInGerman) {
    EXPECT_EQ(automatchGameTitle(3), QStringLiteral("Partie #3"));
}

TEST(AutomatchFormats, whatTheScoreSaysIsNeverWrittenAsSomethingInfinite) {
    const struct {
        MatchScore score;
        QString text;
    } cases[] = {
        {{0, 0, 0}, QStringLiteral("Elo – · LOS –")},
        {{0, 5, 0}, QStringLiteral("Elo 0 ± 0 · LOS –")},
        {{3, 0, 0}, QStringLiteral("Elo – · LOS 96\u00A0%")},
        {{0, 0, 3}, QStringLiteral("Elo – · LOS 4\u00A0%")},
        {{1, 0, 1}, QStringLiteral("Elo 0 ± – · LOS 50\u00A0%")},
        {{12, 0, 8}, QStringLiteral("Elo +70 ± 169 · LOS 81\u00A0%")},
        {{8, 0, 12}, QStringLiteral("Elo \u221270 ± 169 · LOS 19\u00A0%")},
    };
    for (const auto& one : cases)
        EXPECT_EQ(strengthText(one.score).toStdString(), one.text.toStdString());
    for (qint64 wins = 0; wins < 6; ++wins) {
        for (qint64 draws = 0; draws < 6; ++draws) {
            for (qint64 losses = 0; losses < 6; ++losses) {
                const QString text = strengthText({wins, draws, losses});
                EXPECT_FALSE(text.contains(QStringLiteral("nan"), Qt::CaseInsensitive)) << text.toStdString();
                EXPECT_FALSE(text.contains(QStringLiteral("inf"), Qt::CaseInsensitive)) << text.toStdString();
            }
        }
    }
}

}  // namespace
}  // namespace orlix
