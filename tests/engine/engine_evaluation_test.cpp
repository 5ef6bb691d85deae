#include "engine/engine_evaluation.h"

#include <gtest/gtest.h>

#include <QLocale>
#include <clocale>
#include <cmath>
#include <limits>

namespace orlix {
namespace {

constexpr qint64 smallest = std::numeric_limits<qint64>::min();
constexpr qint64 largest = std::numeric_limits<qint64>::max();

EngineEvaluation withMate(qint64 mateIn) {
    EngineEvaluation evaluation;
    evaluation.mateIn = mateIn;
    return evaluation;
}

EngineEvaluation withScore(qint64 scoreCp) {
    EngineEvaluation evaluation;
    evaluation.scoreCp = scoreCp;
    return evaluation;
}

TEST(EngineEvaluation, beginsEmpty) {
    const EngineEvaluation evaluation;
    EXPECT_EQ(evaluation.depth, 0);
    EXPECT_FALSE(evaluation.scoreCp || evaluation.mateIn || evaluation.nodes || evaluation.nps ||
                 evaluation.timeMs);
    EXPECT_TRUE(evaluation.pv.isEmpty());
}

TEST(EngineEvaluation, differsInEveryField) {
    const EngineEvaluation empty;
    EXPECT_EQ(empty, EngineEvaluation());
    EXPECT_NE(empty, withScore(0));
    EXPECT_NE(empty, withMate(0));
    for (auto field : {&EngineEvaluation::nodes, &EngineEvaluation::nps, &EngineEvaluation::timeMs}) {
        EngineEvaluation other;
        other.*field = 0;
        EXPECT_NE(empty, other);
    }
    EngineEvaluation deeper;
    deeper.depth = 1;
    EXPECT_NE(empty, deeper);
    EngineEvaluation longer;
    longer.pv.append(QStringLiteral("e2e4"));
    EXPECT_NE(empty, longer);
}

TEST(EngineEvaluation, formatsItsScore) {
    const struct {
        const char* name;
        EngineEvaluation evaluation;
        const char* text;
    } cases[] = {
        {"no score", {}, "0.00"},
        {"zero centipawns", withScore(0), "+0.00"},
        {"a small plus", withScore(35), "+0.35"},
        {"a minus", withScore(-120), "-1.20"},
        {"one centipawn", withScore(1), "+0.01"},
        {"minus one centipawn", withScore(-1), "-0.01"},
        {"thousands without a separator", withScore(1234567), "+12345.67"},
        {"the most centipawns", withScore(largest), "+92233720368547760.00"},
        {"the fewest centipawns", withScore(smallest), "-92233720368547760.00"},
        {"mate in two", withMate(2), "+M2"},
        {"mate in one", withMate(1), "+M1"},
        {"mated already", withMate(0), "-M0"},
        {"mated in three", withMate(-3), "-M3"},
        {"the longest mate", withMate(largest), "+M9223372036854775807"},
        {"the longest way to be mated", withMate(smallest), "-M9223372036854775808"},
    };
    for (const auto& [name, evaluation, text] : cases)
        EXPECT_EQ(evaluation.formattedScore().toStdString(), text) << name;
}

TEST(EngineEvaluation, prefersTheMateWhenBothAreSet) {
    EngineEvaluation evaluation = withScore(50);
    evaluation.mateIn = -1;
    EXPECT_EQ(evaluation.formattedScore(), QStringLiteral("-M1"));
    EXPECT_EQ(evaluation.evalBarFraction(PieceColor::white), 0.05);
}

TEST(EngineEvaluation, writesAPointWhateverTheLocale) {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German));
    const std::string numericBefore = setlocale(LC_NUMERIC, nullptr);
    setlocale(LC_NUMERIC, "de_DE.UTF-8");
    EXPECT_EQ(withScore(123456).formattedScore(), QStringLiteral("+1234.56"));
    setlocale(LC_NUMERIC, numericBefore.c_str());
    QLocale::setDefault(before);
}

TEST(EngineEvaluation, givesWhitesShareOfTheBar) {
    const auto curve = [](double centipawns) { return 1.0 / (1.0 + std::exp(centipawns / -400.0)); };
    const struct {
        const char* name;
        EngineEvaluation evaluation;
        double forWhite;
        double forBlack;
    } cases[] = {
        {"no score", {}, 0.5, 0.5},
        {"equal", withScore(0), 0.5, 0.5},
        {"ahead", withScore(100), curve(100), curve(-100)},
        {"behind", withScore(-250), curve(-250), curve(250)},
        {"just inside the clamp", withScore(1177), curve(1177), curve(-1177)},
        {"far ahead", withScore(1179), 0.95, 0.05},
        {"mating", withMate(1), 0.95, 0.05},
        {"mated", withMate(-1), 0.05, 0.95},
        {"mate in none weighs nothing", withMate(0), 0.5, 0.5},
        {"the largest score", withScore(largest), 0.95, 0.05},
        {"the smallest score", withScore(smallest), 0.05, 0.95},
        {"the longest mate", withMate(largest), 0.95, 0.05},
        {"the longest way to be mated", withMate(smallest), 0.05, 0.95},
    };
    for (const auto& [name, evaluation, forWhite, forBlack] : cases) {
        EXPECT_DOUBLE_EQ(evaluation.evalBarFraction(PieceColor::white), forWhite) << name;
        EXPECT_DOUBLE_EQ(evaluation.evalBarFraction(PieceColor::black), forBlack) << name;
    }
}

}  // namespace
}  // namespace orlix
