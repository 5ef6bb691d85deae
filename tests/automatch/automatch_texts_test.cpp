#include "automatch/automatch_texts.h"

#include <gmock/gmock.h>

#include <QLocale>
#include <vector>

namespace orlix {
namespace {

struct Row {
    GameEndReason reason;
    const char* result;
    const char* text;
};

TEST(AutomatchTexts, everyReasonHasItsResultAndItsGermanWords) {
    constexpr auto white = PieceColor::white;
    constexpr auto black = PieceColor::black;
    const std::vector<Row> rows{
        {GameEndReason::checkmate(white), "1-0", "Schachmatt (Weiß gewinnt)"},
        {GameEndReason::checkmate(black), "0-1", "Schachmatt (Schwarz gewinnt)"},
        {GameEndReason::timeout(white), "1-0", "Zeitüberschreitung (Weiß gewinnt)"},
        {GameEndReason::timeout(black), "0-1", "Zeitüberschreitung (Schwarz gewinnt)"},
        {GameEndReason::resignation(white), "1-0", "Aufgabe (Weiß gewinnt)"},
        {GameEndReason::resignation(black), "0-1", "Aufgabe (Schwarz gewinnt)"},
        {GameEndReason::stalemate(), "1/2-1/2", "Remis (Patt)"},
        {GameEndReason::fiftyMoveRule(), "1/2-1/2", "Remis (50-Züge-Regel)"},
        {GameEndReason::threefoldRepetition(), "1/2-1/2", "Remis (Dreifache Wiederholung)"},
        {GameEndReason::insufficientMaterial(), "1/2-1/2", "Remis (Ungenügend Material)"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(automatchResult(row.reason), QLatin1String(row.result));
        EXPECT_EQ(automatchReasonText(row.reason), QString::fromUtf8(row.text));
    }
}

TEST(AutomatchTexts, theVerdictNamesTheWinnerAndHisPointsFirst) {
    const QString one = QStringLiteral("Stockfish");
    const QString two = QStringLiteral("100% Beta");
    EXPECT_EQ(automatchVerdict(one, 6.5, two, 3.5),
              QStringLiteral("Stockfish gewinnt das Match (6.5 : 3.5)!"));
    EXPECT_EQ(automatchVerdict(one, 3, two, 7), QStringLiteral("100% Beta gewinnt das Match (7.0 : 3.0)!"));
    EXPECT_EQ(automatchVerdict(one, 5, two, 5), QStringLiteral("Match unentschieden (5.0 : 5.0)!"));
    EXPECT_EQ(automatchVerdict(one, 0, two, 0.5), QStringLiteral("100% Beta gewinnt das Match (0.5 : 0.0)!"));
}

TEST(AutomatchTexts, pointsDoNotDependOnTheLocale) {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German));
    const QString verdict = automatchVerdict({}, 1.5, {}, 1.5);
    QLocale::setDefault(before);
    EXPECT_EQ(verdict, QStringLiteral("Match unentschieden (1.5 : 1.5)!"));
}

}  // namespace
}  // namespace orlix
