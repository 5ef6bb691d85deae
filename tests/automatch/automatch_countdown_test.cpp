// The countdown between two games of a series, and how pause, resume, stop and clear meet it.
#include <cmath>
#include <limits>

#include "automatch/automatch_fixture.h"

namespace orlix::test {
namespace {

using AutomatchCountdownTest = AutomatchTest;
using AutomatchPauseTest = AutomatchTest;

const QString stopped = QStringLiteral("Automatch gestoppt.");

struct PauseRow {
    double seconds;
    int steps;
};

// Subtracting 0.2 in double: 1 second leaves 5.6e-17 after five steps and takes a sixth; 0.6 seconds end just
// below 0 after three.
const std::vector<PauseRow> pauses{
    {1.5, 8}, {1.0, 6}, {0.2, 1},  {0.1, 1},  {0.3, 2},  {0.4, 2},
    {0.6, 3}, {0.8, 5}, {2.0, 11}, {3.0, 15}, {1e-9, 1}, {10.0, 51},
};

TEST_F(AutomatchCountdownTest, countsStepsOfTwoHundredMillisecondsAsSubtractionCountsThem) {
    for (const PauseRow& row : pauses) {
        SCOPED_TRACE(row.seconds);
        automatch.setPauseBetweenGamesSeconds(row.seconds);
        startSeries();
        answer(whiteMates());
        EXPECT_TRUE(automatch.isCountingDown());
        EXPECT_EQ(automatch.countdownRemaining(), row.seconds);
        double expected = row.seconds;
        for (int step = 1; step < row.steps; ++step) {
            time.advance(199ms);
            EXPECT_EQ(automatch.countdownRemaining(), expected);
            seriesChanges = 0;
            time.advance(1ms);
            expected -= 0.2;
            EXPECT_EQ(automatch.countdownRemaining(), expected);
            EXPECT_EQ(seriesChanges, 1);
            EXPECT_TRUE(automatch.isCountingDown());
            EXPECT_EQ(automatch.currentGameIndex(), 1);
        }
        time.advance(199ms);
        EXPECT_EQ(automatch.currentGameIndex(), 1);
        EXPECT_TRUE(automatch.isCountingDown());
        EXPECT_TRUE(manager.isGameOver());
        seriesChanges = 0;
        time.advance(1ms);
        EXPECT_EQ(seriesChanges, 1);
        EXPECT_FALSE(automatch.isCountingDown());
        EXPECT_EQ(automatch.currentGameIndex(), 2);
        EXPECT_FALSE(manager.isGameOver());
        EXPECT_LE(automatch.countdownRemaining(), 0);
    }
}

TEST_F(AutomatchCountdownTest, withoutAPauseTheNextGameFollowsAtOnceButNotInsideTheCall) {
    for (const double seconds : {0.0, -1.0, std::nan("")}) {
        SCOPED_TRACE(seconds);
        automatch.setPauseBetweenGamesSeconds(seconds);
        startSeries();
        bool hasEnded = false;
        const auto watch = QObject::connect(&manager, &GameManager::changed, &manager, [&] {
            hasEnded = true;
            EXPECT_EQ(automatch.currentGameIndex(), 1);
            EXPECT_TRUE(manager.isGameOver());
        });
        manager.resign(black);
        QObject::disconnect(watch);
        EXPECT_TRUE(hasEnded);
        EXPECT_TRUE(manager.isGameOver());
        EXPECT_EQ(automatch.currentGameIndex(), 1);
        time.runDue();
        EXPECT_FALSE(manager.isGameOver());
        EXPECT_EQ(automatch.currentGameIndex(), 2);
        EXPECT_FALSE(automatch.isCountingDown());
    }
}

TEST_F(AutomatchCountdownTest, anEndlessPauseNeverEndsAndCanBeStopped) {
    automatch.setPauseBetweenGamesSeconds(std::numeric_limits<double>::infinity());
    startSeries();
    answer(whiteMates());
    time.advance(60s);
    EXPECT_TRUE(automatch.isCountingDown());
    automatch.stopAutomatch();
    EXPECT_FALSE(automatch.isCountingDown());
}

TEST_F(AutomatchCountdownTest, aLateStepCountsAsOne) {
    startSeries();
    answer(whiteMates());
    time.stall(60s);
    time.runDue();
    EXPECT_EQ(automatch.countdownRemaining(), 1.5 - 0.2);
    EXPECT_EQ(automatch.currentGameIndex(), 1);
}

TEST_F(AutomatchCountdownTest, aPauseThatIsChangedDuringTheCountdownHoldsForTheNextOne) {
    startSeries();
    answer(whiteMates());
    automatch.setPauseBetweenGamesSeconds(0.2);
    EXPECT_EQ(automatch.countdownRemaining(), 1.5);
    waitForNextGame();
    ASSERT_EQ(automatch.currentGameIndex(), 2);
    answer(whiteMates());
    EXPECT_EQ(automatch.countdownRemaining(), 0.2);
}

TEST_F(AutomatchCountdownTest, anotherEndRestartsTheOneCountdown) {
    startSeries();
    answer(whiteMates());
    time.advance(1000ms);
    const std::size_t timers = time.pendingTimers();
    automatch.handleGameEnd(GameEndReason::timeout(black), manager.board(), {});
    EXPECT_EQ(time.pendingTimers(), timers);
    EXPECT_EQ(automatch.countdownRemaining(), 1.5);
    time.advance(1599ms);
    EXPECT_EQ(automatch.currentGameIndex(), 1);
    time.advance(1ms);
    EXPECT_EQ(automatch.currentGameIndex(), 2);
    time.advance(10s);
    EXPECT_EQ(automatch.currentGameIndex(), 2);
}

TEST_F(AutomatchCountdownTest, aSeriesThatFinishesDuringACountdownEndsIt) {
    startSeries();
    answer(whiteMates());
    automatch.setTotalGames(1);
    automatch.handleGameEnd(GameEndReason::timeout(black), manager.board(), {});
    EXPECT_FALSE(automatch.isAutomatchActive());
    EXPECT_FALSE(automatch.isCountingDown());
    time.advance(10s);
    EXPECT_EQ(automatch.currentGameIndex(), 1);
    EXPECT_TRUE(manager.isGameOver());
}

// Numbers that repeat or are left out

TEST_F(AutomatchCountdownTest, aTimeOutAfterAnotherEndIsASecondRecordWithTheSameNumber) {
    TimeControlConfig noTime;
    noTime.preset = TimeControlPreset::custom;
    noTime.customBaseMinutes = 0;
    noTime.customIncrementSeconds = 0;
    manager.setTimeControlConfig(noTime);
    startSeries();
    QObject::connect(&manager.clock(), &ChessClock::changed, &manager, [&] {
        if (!manager.clock().isRunning()) manager.resign(black);
    });
    time.advance(50ms);
    EXPECT_EQ(history(), QLatin1String("1 1-0, 1 0-1"));
    EXPECT_EQ(score(), QLatin1String("1 : 1, 0 drawn"));
    EXPECT_EQ(automatch.currentGameIndex(), 1);
}

TEST_F(AutomatchCountdownTest, aGameStartedByHandDuringTheCountdownIsRecordedWithTheNumberOfTheLast) {
    startSeries();
    answer(whiteMates());
    time.advance(400ms);
    manager.startNewGame();
    settle();
    answer(blackMates());
    EXPECT_EQ(history(), QLatin1String("1 1-0, 1 0-1"));
    EXPECT_EQ(automatch.countdownRemaining(), 1.5);
    waitForNextGame();
    EXPECT_EQ(automatch.currentGameIndex(), 2);
}

TEST_F(AutomatchCountdownTest, aGameStartedByHandThatOutlastsTheCountdownGivesWayToTheNext) {
    startSeries();
    answer(whiteMates());
    manager.startNewGame();
    settle();
    answer({"e2e4"});
    waitForNextGame();
    EXPECT_EQ(automatch.currentGameIndex(), 2);
    EXPECT_TRUE(manager.board().history.empty());
    EXPECT_EQ(history(), QLatin1String("1 1-0"));
}

TEST_F(AutomatchCountdownTest, anEndWhilePausedLeavesItsNumberOutOfTheHistory) {
    startSeries();
    automatch.pauseAutomatch();
    manager.resign(white);
    automatch.resumeAutomatch();
    EXPECT_EQ(automatch.currentGameIndex(), 2);
    settle();
    answer(whiteMates());
    EXPECT_EQ(history(), QLatin1String("2 1-0"));
    EXPECT_EQ(score(), QLatin1String("0 : 1, 0 drawn"));
}

TEST_F(AutomatchCountdownTest, anEndOfTheLastGameWhilePausedLetsOneMoreGameFollow) {
    startSeries(2);
    answer(whiteMates());
    waitForNextGame();
    automatch.pauseAutomatch();
    manager.resign(white);
    automatch.resumeAutomatch();
    EXPECT_EQ(automatch.currentGameIndex(), 3);
    settle();
    answer(whiteMates());
    EXPECT_EQ(history(), QLatin1String("1 1-0, 3 1-0"));
    EXPECT_EQ(automatch.matchFinishedReason(),
              QStringLiteral("Automatch beendet: 2 Partien gespielt. Alpha gewinnt das Match (2.0 : 0.0)!"));
}

TEST_F(AutomatchCountdownTest, aReplayThatIsShownDuringAGameLeavesItsNumberOutAfterPauseAndResume) {
    startSeries();
    manager.replayGame({QStringLiteral("e2e4")}, std::nullopt);
    time.advance(600s);
    EXPECT_EQ(history(), QString());
    automatch.pauseAutomatch();
    automatch.resumeAutomatch();
    EXPECT_EQ(automatch.currentGameIndex(), 2);
}

// Pause and resume

TEST_F(AutomatchPauseTest, pausingPausesTheSeriesAndTheGame) {
    startSeries();
    forget();
    automatch.pauseAutomatch();
    EXPECT_TRUE(automatch.isAutomatchActive());
    EXPECT_TRUE(automatch.isAutomatchPaused());
    EXPECT_TRUE(manager.isPaused());
    EXPECT_EQ(seriesChanges, 1);
    EXPECT_EQ(changes, 1);
}

TEST_F(AutomatchPauseTest, resumingGoesOnWithTheGame) {
    startSeries();
    answer({"e2e4"});
    automatch.pauseAutomatch();
    seriesChanges = 0;
    automatch.resumeAutomatch();
    EXPECT_FALSE(automatch.isAutomatchPaused());
    EXPECT_FALSE(manager.isPaused());
    EXPECT_EQ(automatch.currentGameIndex(), 1);
    EXPECT_EQ(movesOf(manager.board()), "e2e4");
    EXPECT_EQ(seriesChanges, 1);
}

TEST_F(AutomatchPauseTest, pauseAndResumeDoNothingWithoutASeries) {
    automatch.pauseAutomatch();
    EXPECT_FALSE(automatch.isAutomatchPaused());
    EXPECT_FALSE(manager.isPaused());
    automatch.resumeAutomatch();
    EXPECT_FALSE(manager.isPaused());
    EXPECT_EQ(seriesChanges, 0);
}

TEST_F(AutomatchPauseTest, resumingASeriesThatIsNotPausedDoesNothing) {
    startSeries();
    automatch.resumeAutomatch();
    EXPECT_FALSE(manager.isPaused());
    answer(whiteMates());
    time.advance(400ms);
    seriesChanges = 0;
    automatch.resumeAutomatch();
    EXPECT_TRUE(automatch.isCountingDown());
    EXPECT_EQ(automatch.currentGameIndex(), 1);
    EXPECT_EQ(seriesChanges, 0);
}

TEST_F(AutomatchPauseTest, pausingTwiceTogglesTheGamesOwnPauseTwice) {
    startSeries();
    automatch.pauseAutomatch();
    automatch.pauseAutomatch();
    EXPECT_TRUE(automatch.isAutomatchPaused());
    EXPECT_FALSE(manager.isPaused());
}

TEST_F(AutomatchPauseTest, theGamesOwnPauseIsToggledWhateverItIs) {
    startSeries();
    manager.togglePause();
    automatch.pauseAutomatch();
    EXPECT_FALSE(manager.isPaused());
    automatch.resumeAutomatch();
    EXPECT_TRUE(manager.isPaused());
}

TEST_F(AutomatchPauseTest, pausingBetweenGamesEndsTheCountdownAndMarksTheFinishedGame) {
    startSeries();
    answer(whiteMates());
    time.advance(400ms);
    ASSERT_FALSE(manager.isPaused());
    automatch.pauseAutomatch();
    EXPECT_FALSE(automatch.isCountingDown());
    EXPECT_TRUE(manager.isPaused());
    EXPECT_TRUE(manager.isGameOver());
    time.advance(60s);
    EXPECT_EQ(automatch.currentGameIndex(), 1);
    EXPECT_TRUE(automatch.isAutomatchPaused());
}

TEST_F(AutomatchPauseTest, resumingBetweenGamesStartsTheNextAtOnce) {
    startSeries();
    answer(whiteMates());
    time.advance(400ms);
    automatch.pauseAutomatch();
    seriesChanges = 0;
    automatch.resumeAutomatch();
    EXPECT_EQ(automatch.currentGameIndex(), 2);
    EXPECT_FALSE(automatch.currentWhiteIsEngine1());
    EXPECT_FALSE(manager.isGameOver());
    EXPECT_FALSE(manager.isPaused());
    EXPECT_FALSE(automatch.isCountingDown());
    EXPECT_EQ(seriesChanges, 1);
    time.advance(10s);
    EXPECT_EQ(automatch.currentGameIndex(), 2);
}

TEST_F(AutomatchPauseTest, pausingBeforeAnImmediateNextGameHoldsItBack) {
    automatch.setPauseBetweenGamesSeconds(0);
    startSeries();
    manager.resign(black);
    automatch.pauseAutomatch();
    time.advance(10s);
    EXPECT_EQ(automatch.currentGameIndex(), 1);
    automatch.resumeAutomatch();
    EXPECT_EQ(automatch.currentGameIndex(), 2);
}

// Stop

TEST_F(AutomatchPauseTest, stoppingEndsTheSeriesAndLeavesTheGameScoreAndHistory) {
    startSeries();
    answer(whiteMates());
    waitForNextGame();
    answer({"e2e4"});
    seriesChanges = 0;
    automatch.stopAutomatch();
    EXPECT_EQ(seriesChanges, 1);
    EXPECT_FALSE(automatch.isAutomatchActive());
    EXPECT_FALSE(automatch.isAutomatchPaused());
    EXPECT_EQ(automatch.matchFinishedReason(), stopped);
    EXPECT_EQ(history(), QLatin1String("1 1-0"));
    EXPECT_EQ(score(), QLatin1String("1 : 0, 0 drawn"));
    EXPECT_EQ(automatch.currentGameIndex(), 2);
    EXPECT_EQ(movesOf(manager.board()), "e2e4");
    EXPECT_FALSE(manager.isGameOver());
    EXPECT_TRUE(manager.clock().isRunning());
    manager.resign(white);
    EXPECT_EQ(history(), QLatin1String("1 1-0"));
}

TEST_F(AutomatchPauseTest, stoppingDuringTheCountdownCancelsIt) {
    startSeries();
    answer(whiteMates());
    time.advance(400ms);
    automatch.stopAutomatch();
    EXPECT_FALSE(automatch.isCountingDown());
    const qsizetype launched = launcher.engines.size();
    time.advance(60s);
    EXPECT_EQ(automatch.currentGameIndex(), 1);
    EXPECT_EQ(launcher.engines.size(), launched);
}

TEST_F(AutomatchPauseTest, stoppingWhilePausedLeavesTheGamePaused) {
    startSeries();
    automatch.pauseAutomatch();
    automatch.stopAutomatch();
    EXPECT_FALSE(automatch.isAutomatchPaused());
    EXPECT_TRUE(manager.isPaused());
    automatch.resumeAutomatch();
    EXPECT_TRUE(manager.isPaused());
}

TEST_F(AutomatchPauseTest, stoppingAFinishedSeriesReplacesItsClosingWords) {
    startSeries(1);
    answer(whiteMates());
    automatch.stopAutomatch();
    EXPECT_EQ(automatch.matchFinishedReason(), stopped);
}

// Clear

TEST_F(AutomatchPauseTest, clearingARunningSeriesStopsItFirst) {
    startSeries();
    answer(whiteMates());
    time.advance(400ms);
    seriesChanges = 0;
    QObject::connect(&automatch, &AutomatchManager::changed, &automatch, [this] {
        EXPECT_FALSE(automatch.isAutomatchActive());
        EXPECT_TRUE(automatch.history().isEmpty());
    });
    automatch.clearHistory();
    EXPECT_EQ(seriesChanges, 1);
    EXPECT_EQ(automatch.matchFinishedReason(), stopped);
    EXPECT_TRUE(automatch.history().isEmpty());
    EXPECT_EQ(score(), QLatin1String("0 : 0, 0 drawn"));
    EXPECT_FALSE(automatch.isCountingDown());
    time.advance(10s);
    EXPECT_EQ(automatch.currentGameIndex(), 1);
}

TEST_F(AutomatchPauseTest, clearingAfterASeriesKeepsItsClosingWords) {
    startSeries(1);
    answer(whiteMates());
    const auto words = automatch.matchFinishedReason();
    automatch.clearHistory();
    EXPECT_EQ(automatch.matchFinishedReason(), words);
    EXPECT_TRUE(automatch.history().isEmpty());
    EXPECT_EQ(score(), QLatin1String("0 : 0, 0 drawn"));
}

TEST_F(AutomatchPauseTest, clearingBeforeAnySeriesSaysNothing) {
    automatch.clearHistory();
    EXPECT_EQ(automatch.matchFinishedReason(), std::nullopt);
}

}  // namespace
}  // namespace orlix::test
