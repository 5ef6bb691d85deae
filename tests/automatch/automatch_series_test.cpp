// A series from its start to its closing words: launching, colours, score, records.
#include <limits>

#include "automatch/automatch_fixture.h"

namespace orlix::test {
namespace {

using AutomatchSeriesTest = AutomatchTest;
using testing::ElementsAre;
using testing::Optional;

TEST_F(AutomatchSeriesTest, beginsWithTheDefaultsAndNothingPlayed) {
    EXPECT_EQ(automatch.totalGames(), 10);
    EXPECT_TRUE(automatch.alternateColors());
    EXPECT_EQ(automatch.pauseBetweenGamesSeconds(), 1.5);
    EXPECT_EQ(automatch.engine1(), std::nullopt);
    EXPECT_FALSE(automatch.engine1LimitElo());
    EXPECT_EQ(automatch.engine1Elo(), 1800);
    EXPECT_EQ(automatch.engine2(), std::nullopt);
    EXPECT_FALSE(automatch.engine2LimitElo());
    EXPECT_EQ(automatch.engine2Elo(), 1800);
    EXPECT_FALSE(automatch.isAutomatchActive());
    EXPECT_FALSE(automatch.isAutomatchPaused());
    EXPECT_EQ(automatch.currentGameIndex(), 0);
    EXPECT_TRUE(automatch.currentWhiteIsEngine1());
    EXPECT_FALSE(automatch.isCountingDown());
    EXPECT_EQ(automatch.countdownRemaining(), 0);
    EXPECT_EQ(automatch.engine1Wins(), 0);
    EXPECT_EQ(automatch.engine2Wins(), 0);
    EXPECT_EQ(automatch.draws(), 0);
    EXPECT_TRUE(automatch.history().isEmpty());
    EXPECT_EQ(automatch.matchFinishedReason(), std::nullopt);
    EXPECT_EQ(automatch.averageGameSeconds(), std::nullopt);
    EXPECT_EQ(automatch.exportAllPGN(), QString());
}

TEST_F(AutomatchSeriesTest, theSharedInstanceIsTheRegisteredOne) {
    AutomatchManager::registerShared(&automatch);
    EXPECT_EQ(&AutomatchManager::shared(), &automatch);
    AutomatchManager::registerShared(nullptr);
}

TEST_F(AutomatchSeriesTest, settingsAreAnnouncedWhenTheyChange) {
    automatch.setTotalGames(4);
    automatch.setAlternateColors(false);
    automatch.setPauseBetweenGamesSeconds(2.5);
    automatch.setEngine1(beta);
    automatch.setEngine1Limit(true, 1500);
    automatch.setEngine2(alpha);
    automatch.setEngine2Limit(true, 1600);
    EXPECT_EQ(seriesChanges, 7);
    EXPECT_EQ(automatch.totalGames(), 4);
    EXPECT_FALSE(automatch.alternateColors());
    EXPECT_EQ(automatch.pauseBetweenGamesSeconds(), 2.5);
    EXPECT_EQ(automatch.engine1(), beta);
    EXPECT_TRUE(automatch.engine1LimitElo());
    EXPECT_EQ(automatch.engine1Elo(), 1500);
    EXPECT_EQ(automatch.engine2(), alpha);
    EXPECT_TRUE(automatch.engine2LimitElo());
    EXPECT_EQ(automatch.engine2Elo(), 1600);

    automatch.setTotalGames(4);
    automatch.setAlternateColors(false);
    automatch.setPauseBetweenGamesSeconds(2.5);
    automatch.setEngine1(beta);
    automatch.setEngine1Limit(true, 1500);
    automatch.setEngine2(alpha);
    automatch.setEngine2Limit(true, 1600);
    EXPECT_EQ(seriesChanges, 7);
}

TEST_F(AutomatchSeriesTest, anEmptySlotIsNamedByItsNumber) {
    EXPECT_EQ(automatch.engine1DisplayName(), QLatin1String("Engine 1"));
    EXPECT_EQ(automatch.engine2DisplayName(), QLatin1String("Engine 2"));
    automatch.setEngine1(beta);
    automatch.setEngine2(alpha);
    EXPECT_EQ(automatch.engine1DisplayName(), QLatin1String("Beta"));
    EXPECT_EQ(automatch.engine2DisplayName(), QLatin1String("Alpha"));
}

// Start

TEST_F(AutomatchSeriesTest, startStoresWhatItIsGivenAndKeepsTheRest) {
    automatch.startAutomatch(6, beta, alpha);
    EXPECT_EQ(automatch.totalGames(), 6);
    EXPECT_EQ(automatch.engine1(), beta);
    EXPECT_EQ(automatch.engine2(), alpha);
    automatch.startAutomatch();
    EXPECT_EQ(automatch.totalGames(), 6);
    EXPECT_EQ(automatch.engine1(), beta);
    EXPECT_EQ(automatch.engine2(), alpha);
    automatch.startAutomatch({}, alpha);
    EXPECT_EQ(automatch.engine1(), alpha);
    EXPECT_EQ(automatch.engine2(), alpha);
}

TEST_F(AutomatchSeriesTest, startBeginsAfreshWithGameOneAndEngineOneAsWhite) {
    startSeries(2);
    answer(whiteMates());
    waitForNextGame();
    answer(blackMates());
    ASSERT_NE(automatch.matchFinishedReason(), std::nullopt);
    ASSERT_FALSE(automatch.currentWhiteIsEngine1());
    startSeries();
    EXPECT_TRUE(automatch.isAutomatchActive());
    EXPECT_FALSE(automatch.isAutomatchPaused());
    EXPECT_EQ(automatch.currentGameIndex(), 1);
    EXPECT_TRUE(automatch.currentWhiteIsEngine1());
    EXPECT_FALSE(automatch.isCountingDown());
    EXPECT_EQ(score(), QLatin1String("0 : 0, 0 drawn"));
    EXPECT_TRUE(automatch.history().isEmpty());
    EXPECT_EQ(automatch.matchFinishedReason(), std::nullopt);
    EXPECT_EQ(automatch.averageGameSeconds(), std::nullopt);
    EXPECT_FALSE(manager.isGameOver());
}

TEST_F(AutomatchSeriesTest, startWhileASeriesRunsBeginsAnotherOne) {
    startSeries();
    answer(whiteMates());
    waitForNextGame();
    automatch.startAutomatch(3);
    EXPECT_EQ(automatch.currentGameIndex(), 1);
    EXPECT_EQ(score(), QLatin1String("0 : 0, 0 drawn"));
    EXPECT_TRUE(manager.board().history.empty());
}

TEST_F(AutomatchSeriesTest, startDuringACountdownCancelsIt) {
    startSeries();
    answer(whiteMates());
    time.advance(600ms);
    ASSERT_TRUE(automatch.isCountingDown());
    startSeries();
    EXPECT_FALSE(automatch.isCountingDown());
    time.advance(10s);
    EXPECT_EQ(automatch.currentGameIndex(), 1);
    EXPECT_FALSE(automatch.isCountingDown());
}

TEST_F(AutomatchSeriesTest, startWhilePausedGoesOnUnpaused) {
    startSeries();
    automatch.pauseAutomatch();
    startSeries();
    EXPECT_FALSE(automatch.isAutomatchPaused());
    EXPECT_FALSE(manager.isPaused());
    answer(whiteMates());
    EXPECT_EQ(history(), QLatin1String("1 1-0"));
}

// Engines of empty slots

TEST_F(AutomatchSeriesTest, emptySlotsTakeTheSelectedEngines) {
    engines.setSelectedWhiteEngine(beta);
    engines.setSelectedBlackEngine(alpha);
    automatch.startAutomatch();
    EXPECT_EQ(automatch.engine1(), beta);
    EXPECT_EQ(automatch.engine2(), alpha);
}

TEST_F(AutomatchSeriesTest, withoutASelectionTheSlotsTakeTheFirstTwoRecords) {
    automatch.startAutomatch();
    EXPECT_EQ(automatch.engine1(), alpha);
    EXPECT_EQ(automatch.engine2(), beta);
}

TEST_F(AutomatchSeriesTest, anEmptySecondSlotTakesTheFirstRecordThatIsNotEngineOne) {
    automatch.setEngine1(beta);
    automatch.startAutomatch();
    EXPECT_EQ(automatch.engine1(), beta);
    EXPECT_EQ(automatch.engine2(), alpha);
}

TEST_F(AutomatchSeriesTest, aRecordOfEngineOneThatWasEditedSinceIsStillEngineOne) {
    automatch.setEngine1(alpha);
    engines.updateEngineConfig(alpha.id, true, 1400);
    automatch.startAutomatch();
    EXPECT_EQ(automatch.engine2(), beta);
}

TEST_F(AutomatchSeriesTest, aRegistryOfOneEngineLetsItPlayItself) {
    fillRegistry(defaults, engines, {beta});
    automatch.startAutomatch();
    EXPECT_EQ(automatch.engine1(), beta);
    EXPECT_EQ(automatch.engine2(), beta);
}

TEST_F(AutomatchSeriesTest, slotsThatWereMadeEqualStayEqual) {
    automatch.setEngine1(beta);
    automatch.setEngine2(beta);
    automatch.startAutomatch();
    EXPECT_EQ(automatch.engine1(), beta);
    EXPECT_EQ(automatch.engine2(), beta);
}

TEST_F(AutomatchSeriesTest, aSelectedBlackEngineIsTakenEvenWhenItIsEngineOne) {
    engines.setSelectedBlackEngine(alpha);
    automatch.startAutomatch();
    EXPECT_EQ(automatch.engine1(), alpha);
    EXPECT_EQ(automatch.engine2(), alpha);
}

TEST_F(AutomatchSeriesTest, withAnEmptyRegistryTheSlotsStayEmptyAndTheSeriesWaits) {
    fillRegistry(defaults, engines, {});
    automatch.startAutomatch();
    settle();
    EXPECT_EQ(automatch.engine1(), std::nullopt);
    EXPECT_EQ(automatch.engine2(), std::nullopt);
    EXPECT_TRUE(automatch.isAutomatchActive());
    EXPECT_EQ(manager.gameMode(), GameMode::engineVsEngine);
    EXPECT_EQ(manager.whiteEngineProcess(), nullptr);
    EXPECT_EQ(manager.blackEngineProcess(), nullptr);
    // The clock is the way on.
    time.advance(300s);
    ASSERT_EQ(history(), QLatin1String("1 0-1"));
    EXPECT_EQ(automatch.history()[0].whiteEngineName, QLatin1String("Engine 1"));
    EXPECT_EQ(automatch.history()[0].winnerEngineName, QStringLiteral("Engine 2"));
}

TEST_F(AutomatchSeriesTest, missingEnginesAreFilledBeforeEveryGame) {
    fillRegistry(defaults, engines, {});
    startSeries();
    automatch.setEngine1(std::nullopt);
    automatch.setEngine2(std::nullopt);
    fillRegistry(defaults, engines, {alpha, beta});
    startSeries();
    EXPECT_NE(automatch.engine1(), std::nullopt);
    automatch.setEngine2(std::nullopt);
    engines.setSelectedBlackEngine(std::nullopt);
    answer(whiteMates());
    waitForNextGame();
    EXPECT_EQ(automatch.engine2(), beta);
    EXPECT_EQ(manager.whiteEngineProcess()->config().name, QLatin1String("Beta"));
}

TEST_F(AutomatchSeriesTest, anEngineThatLeftTheRegistryPlaysOn) {
    startSeries();
    engines.removeEngine(alpha);
    answer(whiteMates());
    waitForNextGame();
    EXPECT_EQ(automatch.engine1(), alpha);
    EXPECT_EQ(manager.blackEngineProcess()->config().name, QLatin1String("Alpha"));
}

// Launch

TEST_F(AutomatchSeriesTest, modeEnginesAndStrengthAreSetInThisOrderBeforeTheGameStarts) {
    QStringList steps;
    const auto nameOf = [](const std::optional<EngineConfiguration>& engine) {
        return engine ? engine->name : QStringLiteral("-");
    };
    const auto look = [&] {
        const QString step =
            QStringLiteral("%1 | %2 %3 | %4 %5 %6 %7 | %8")
                .arg(rawValue(manager.gameMode()), nameOf(engines.selectedWhiteEngine()),
                     nameOf(engines.selectedBlackEngine()))
                .arg(manager.whiteEngineLimitElo())
                .arg(manager.whiteEngineElo())
                .arg(manager.blackEngineLimitElo())
                .arg(manager.blackEngineElo())
                .arg(manager.whiteEngineProcess() ? QStringLiteral("seated") : QStringLiteral("empty"));
        if (steps.isEmpty() || steps.last() != step) steps.append(step);
        // Whoever looks in between sees the whole new series.
        EXPECT_TRUE(automatch.isAutomatchActive());
        EXPECT_EQ(automatch.currentGameIndex(), 1);
    };
    QObject::connect(&manager, &GameManager::changed, &manager, look);
    QObject::connect(&engines, &EngineManager::changed, &manager, look);
    automatch.setEngine1Limit(true, 2000);
    automatch.setEngine2Limit(false, 1900);
    seriesChanges = 0;
    automatch.startAutomatch({}, alpha, beta);
    EXPECT_THAT(steps, ElementsAre(QStringLiteral("engine_vs_engine | - - | 0 1800 0 1800 | empty"),
                                   QStringLiteral("engine_vs_engine | Alpha - | 0 1800 0 1800 | empty"),
                                   QStringLiteral("engine_vs_engine | Alpha Beta | 0 1800 0 1800 | empty"),
                                   QStringLiteral("engine_vs_engine | Alpha Beta | 1 2000 0 1800 | empty"),
                                   QStringLiteral("engine_vs_engine | Alpha Beta | 1 2000 0 1900 | empty"),
                                   QStringLiteral("engine_vs_engine | Alpha Beta | 1 2000 0 1900 | seated")));
    EXPECT_EQ(seriesChanges, 1);
    EXPECT_TRUE(manager.whiteEngineProcess()->config().limitElo);
    EXPECT_EQ(manager.whiteEngineProcess()->config().elo, 2000);
    EXPECT_FALSE(manager.blackEngineProcess()->config().limitElo);
    EXPECT_EQ(manager.blackEngineProcess()->config().elo, 1900);
}

TEST_F(AutomatchSeriesTest, enginesSwapColoursWithTheirStrengthAfterEveryGame) {
    automatch.setEngine1Limit(true, 2000);
    automatch.setEngine2Limit(false, 1900);
    startSeries();
    for (const bool engine1IsWhite : {true, false, true, false}) {
        EXPECT_EQ(automatch.currentWhiteIsEngine1(), engine1IsWhite);
        EXPECT_EQ(engines.selectedWhiteEngine(), engine1IsWhite ? alpha : beta);
        EXPECT_EQ(engines.selectedBlackEngine(), engine1IsWhite ? beta : alpha);
        EXPECT_EQ(manager.whiteEngineLimitElo(), engine1IsWhite);
        EXPECT_EQ(manager.whiteEngineElo(), engine1IsWhite ? 2000 : 1900);
        EXPECT_EQ(manager.blackEngineLimitElo(), !engine1IsWhite);
        EXPECT_EQ(manager.blackEngineElo(), engine1IsWhite ? 1900 : 2000);
        answer(whiteMates());
        waitForNextGame();
    }
}

TEST_F(AutomatchSeriesTest, withoutAlternationEngineOneKeepsWhite) {
    automatch.setAlternateColors(false);
    startSeries(3);
    for (int game = 0; game < 3; ++game) {
        EXPECT_TRUE(automatch.currentWhiteIsEngine1());
        EXPECT_EQ(engines.selectedWhiteEngine(), alpha);
        answer(blackMates());
        waitForNextGame();
    }
    EXPECT_EQ(score(), QLatin1String("0 : 3, 0 drawn"));
}

// Game ends

struct EndRow {
    GameEndReason reason;
    const char* result;
    const char* text;
};

TEST_F(AutomatchSeriesTest, everyEndCountsForTheEngineThatHadTheColour) {
    const std::vector<EndRow> rows{
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
    for (const EndRow& row : rows) {
        for (const bool engine1IsWhite : {true, false}) {
            SCOPED_TRACE(testing::Message() << row.text << ", engine 1 is White: " << engine1IsWhite);
            startSeries();
            if (!engine1IsWhite) {
                automatch.handleGameEnd(GameEndReason::stalemate(), manager.board(), {});
                time.advance(1600ms);
            }
            const qint64 drawsBefore = automatch.draws();
            automatch.handleGameEnd(row.reason, manager.board(), QStringLiteral("pgn"));
            const AutomatchGameRecord record = automatch.history().last();
            EXPECT_EQ(record.gameNumber, engine1IsWhite ? 1 : 2);
            EXPECT_EQ(record.whiteIsEngine1, engine1IsWhite);
            EXPECT_EQ(record.whiteEngineName, engine1IsWhite ? alpha.name : beta.name);
            EXPECT_EQ(record.blackEngineName, engine1IsWhite ? beta.name : alpha.name);
            EXPECT_EQ(record.result, QLatin1String(row.result));
            EXPECT_EQ(record.reason, QString::fromUtf8(row.text));
            EXPECT_EQ(record.pgn, QLatin1String("pgn"));
            if (!row.reason.winner) {
                EXPECT_EQ(record.winnerEngineName, std::nullopt);
                EXPECT_EQ(automatch.draws(), drawsBefore + 1);
                EXPECT_EQ(automatch.engine1Wins() + automatch.engine2Wins(), 0);
                continue;
            }
            const bool engine1Wins = (*row.reason.winner == white) == engine1IsWhite;
            EXPECT_EQ(record.winnerEngineName, engine1Wins ? alpha.name : beta.name);
            EXPECT_EQ(automatch.engine1Wins(), engine1Wins ? 1 : 0);
            EXPECT_EQ(automatch.engine2Wins(), engine1Wins ? 0 : 1);
            EXPECT_EQ(automatch.draws(), drawsBefore);
        }
    }
}

TEST_F(AutomatchSeriesTest, aRecordHoldsTheGameAsItEnded) {
    automatch.setEngine1Limit(true, 2000);
    startSeries();
    time.advance(2500ms);
    const auto start = time.now();
    answer(stalemate());
    ASSERT_EQ(automatch.history().size(), 1);
    const AutomatchGameRecord& record = automatch.history()[0];
    QStringList moves;
    const QByteArrayList played = stalemate();
    for (const QByteArray& move : played)
        moves.append(QString::fromLatin1(move));
    EXPECT_EQ(record.movesUCI, moves);
    EXPECT_EQ(record.movesCount, 19);
    EXPECT_EQ(record.result, QLatin1String("1/2-1/2"));
    EXPECT_EQ(record.winnerEngineName, std::nullopt);
    EXPECT_EQ(record.resultBadgeText(), QStringLiteral("½ - ½"));
    EXPECT_EQ(record.reason, QStringLiteral("Remis (Patt)"));
    EXPECT_EQ(record.pgn, manager.exportPGN());
    EXPECT_TRUE(record.pgn.contains(QLatin1String("[Result \"1/2-1/2\"]")));
    EXPECT_EQ(record.whiteEngineElo, 2000);
    EXPECT_EQ(record.blackEngineElo, std::nullopt);
    EXPECT_EQ(record.timestamp.toMSecsSinceEpoch(),
              std::chrono::duration_cast<std::chrono::milliseconds>(start.time_since_epoch()).count());
    EXPECT_EQ(record.timestamp.timeSpec(), Qt::UTC);
}

TEST_F(AutomatchSeriesTest, theEloOfARecordIsOnTheSideThatPlaysWithALimit) {
    automatch.setEngine1Limit(false, 2000);
    automatch.setEngine2Limit(true, 1500);
    startSeries();
    answer(whiteMates());
    waitForNextGame();
    answer(whiteMates());
    ASSERT_EQ(automatch.history().size(), 2);
    EXPECT_EQ(automatch.history()[0].whiteEngineElo, std::nullopt);
    EXPECT_EQ(automatch.history()[0].blackEngineElo, 1500);
    EXPECT_EQ(automatch.history()[1].whiteEngineElo, 1500);
    EXPECT_EQ(automatch.history()[1].blackEngineElo, std::nullopt);
}

TEST_F(AutomatchSeriesTest, movesAreWrittenWithThePromotedPiece) {
    startSeries();
    ChessBoard board;
    for (const char* move : {"a2a4", "b7b5", "a4b5", "a7a6", "b5a6", "b8c6", "a6a7", "a8b8", "a7a8n"})
        ASSERT_TRUE(board.play(mv(move))) << move;
    automatch.handleGameEnd(GameEndReason::resignation(white), board, {});
    EXPECT_EQ(automatch.history()[0].movesUCI.last(), QLatin1String("a7a8n"));
    EXPECT_EQ(automatch.history()[0].movesCount, 9);
}

TEST_F(AutomatchSeriesTest, aGameThatTimesOutBeforeAnyMoveHasNoMoves) {
    startSeries();
    time.advance(300s);
    ASSERT_EQ(history(), QLatin1String("1 0-1"));
    EXPECT_TRUE(automatch.history()[0].movesUCI.isEmpty());
    EXPECT_EQ(automatch.history()[0].movesCount, 0);
    EXPECT_EQ(automatch.history()[0].reason, QStringLiteral("Zeitüberschreitung (Schwarz gewinnt)"));
}

TEST_F(AutomatchSeriesTest, aGameEndIsAnnouncedOnceWithEverythingInIt) {
    startSeries();
    QObject::connect(&automatch, &AutomatchManager::changed, &automatch, [this] {
        EXPECT_EQ(automatch.history().size(), 1);
        EXPECT_EQ(automatch.engine1Wins(), 1);
        EXPECT_TRUE(automatch.isCountingDown());
    });
    manager.resign(black);
    EXPECT_EQ(seriesChanges, 1);
}

TEST_F(AutomatchSeriesTest, aGameEndWithoutASeriesIsDropped) {
    automatch.handleGameEnd(GameEndReason::stalemate(), manager.board(), {});
    EXPECT_TRUE(automatch.history().isEmpty());
    EXPECT_EQ(automatch.draws(), 0);
    EXPECT_FALSE(automatch.isCountingDown());
    EXPECT_EQ(seriesChanges, 0);
}

TEST_F(AutomatchSeriesTest, aGameEndWhilePausedIsDropped) {
    startSeries();
    automatch.pauseAutomatch();
    manager.resign(white);
    EXPECT_TRUE(manager.isGameOver());
    EXPECT_TRUE(automatch.history().isEmpty());
    EXPECT_EQ(score(), QLatin1String("0 : 0, 0 drawn"));
    EXPECT_FALSE(automatch.isCountingDown());
}

TEST_F(AutomatchSeriesTest, theManagerStopsListeningWhenItGoes) {
    {
        AutomatchManager other(time, manager, engines, sounds);
        other.startAutomatch({}, alpha, beta);
        EXPECT_EQ(time.pendingTimers() > 0, true);
        manager.resign(white);
        EXPECT_EQ(other.history().size(), 1);
    }
    manager.startNewGame();
    manager.resign(white);
    time.advance(5s);
    EXPECT_TRUE(manager.isGameOver());
}

// Finish

TEST_F(AutomatchSeriesTest, aSeriesOfOneGameFinishesWithoutACountdown) {
    startSeries(1);
    answer(whiteMates());
    EXPECT_FALSE(automatch.isAutomatchActive());
    EXPECT_FALSE(automatch.isCountingDown());
    EXPECT_EQ(automatch.currentGameIndex(), 1);
    EXPECT_EQ(automatch.matchFinishedReason(),
              QStringLiteral("Automatch beendet: 1 Partien gespielt. Alpha gewinnt das Match (1.0 : 0.0)!"));
    const qsizetype launched = launcher.engines.size();
    time.advance(60s);
    EXPECT_EQ(launcher.engines.size(), launched);
    EXPECT_EQ(automatch.currentGameIndex(), 1);
}

TEST_F(AutomatchSeriesTest, tenGamesWithFourWinsEachAreEven) {
    startSeries();
    int wins1 = 0;
    int wins2 = 0;
    for (int game = 1; game <= 10; ++game) {
        EXPECT_EQ(automatch.currentGameIndex(), game);
        if (game > 8) {
            answer(threefoldRepetition());
        } else {
            // Engine 1 has White in odd games and wins the first four.
            const bool engine1Wins = game <= 4;
            answer((game % 2 == 1) == engine1Wins ? whiteMates() : blackMates());
            ++(engine1Wins ? wins1 : wins2);
        }
        if (game < 10) waitForNextGame();
    }
    EXPECT_EQ(score(), QLatin1String("4 : 4, 2 drawn"));
    EXPECT_EQ(history(), QLatin1String("1 1-0, 2 0-1, 3 1-0, 4 0-1, 5 0-1, 6 1-0, 7 0-1, 8 1-0, 9 1/2-1/2, "
                                       "10 1/2-1/2"));
    EXPECT_EQ(automatch.matchFinishedReason(),
              QStringLiteral("Automatch beendet: 10 Partien gespielt. Match unentschieden (5.0 : 5.0)!"));
}

TEST_F(AutomatchSeriesTest, theWinnersNameAndPointsComeFirstWhicheverSlotItIs) {
    automatch.setPauseBetweenGamesSeconds(0);
    startSeries(2);
    answer(blackMates());
    settle();
    answer(stalemate());
    EXPECT_EQ(automatch.matchFinishedReason(),
              QStringLiteral("Automatch beendet: 2 Partien gespielt. Beta gewinnt das Match (1.5 : 0.5)!"));
}

TEST_F(AutomatchSeriesTest, theEndOfASeriesPlaysTheGameEndSoundOnceMore) {
    startSeries(2);
    manager.resign(white);
    EXPECT_THAT(sounds.played, ElementsAre(SoundEffect::gameEnd));
    waitForNextGame();
    sounds.played.clear();
    manager.resign(white);
    EXPECT_THAT(sounds.played, ElementsAre(SoundEffect::gameEnd, SoundEffect::gameEnd));
}

TEST_F(AutomatchSeriesTest, aTotalThatIsLoweredDuringTheSeriesEndsItWithThatNumberInTheText) {
    startSeries();
    answer(whiteMates());
    waitForNextGame();
    automatch.setTotalGames(2);
    answer(threefoldRepetition());
    EXPECT_EQ(automatch.matchFinishedReason(),
              QStringLiteral("Automatch beendet: 2 Partien gespielt. Alpha gewinnt das Match (1.5 : 0.5)!"));
}

TEST_F(AutomatchSeriesTest, aTotalOfNothingStillPlaysOneGame) {
    startSeries(0);
    EXPECT_EQ(automatch.currentGameIndex(), 1);
    answer(threefoldRepetition());
    EXPECT_EQ(automatch.matchFinishedReason(),
              QStringLiteral("Automatch beendet: 0 Partien gespielt. Match unentschieden (0.5 : 0.5)!"));
}

TEST_F(AutomatchSeriesTest, scoreAndHistoryOutliveTheSeries) {
    startSeries(1);
    answer(whiteMates());
    manager.startNewGame();
    manager.resign(white);
    EXPECT_EQ(history(), QLatin1String("1 1-0"));
    EXPECT_EQ(score(), QLatin1String("1 : 0, 0 drawn"));
}

// What the history says

TEST_F(AutomatchSeriesTest, allGamesAreExportedOldestFirstWithTwoNewlinesBetween) {
    startSeries();
    answer(whiteMates());
    const QString first = manager.exportPGN();
    EXPECT_EQ(automatch.exportAllPGN(), first);
    waitForNextGame();
    answer(blackMates());
    const QString second = manager.exportPGN();
    ASSERT_NE(first, second);
    EXPECT_EQ(automatch.exportAllPGN(), first + QStringLiteral("\n\n") + second);
}

TEST_F(AutomatchSeriesTest, theAverageTimeIsTheMeanFromAGamesStartToItsRecord) {
    startSeries();
    EXPECT_EQ(automatch.averageGameSeconds(), std::nullopt);
    time.advance(3s);
    answer(whiteMates());
    EXPECT_THAT(automatch.averageGameSeconds(), Optional(3.0));
    waitForNextGame();
    time.advance(6500ms);
    answer(blackMates());
    EXPECT_THAT(automatch.averageGameSeconds(), Optional(4.75));
    automatch.stopAutomatch();
    EXPECT_THAT(automatch.averageGameSeconds(), Optional(4.75));
    automatch.clearHistory();
    EXPECT_EQ(automatch.averageGameSeconds(), std::nullopt);
}

TEST_F(AutomatchSeriesTest, aWallClockThatIsSetBackMakesNoGameShorterThanNothing) {
    startSeries();
    time.setNow(time.now() - 3600s);
    answer(whiteMates());
    EXPECT_THAT(automatch.averageGameSeconds(), Optional(0.0));
}

}  // namespace
}  // namespace orlix::test
