// Undo, pause, the ends of games, and commands from inside signals.
#include "game_fixture.h"

namespace orlix::test {
namespace {

using GameCourseTest = GameTest;
using testing::ElementsAre;

constexpr auto gameEnd = SoundEffect::gameEnd;

TimeControlConfig customTimes(qint64 minutes, qint64 increment) {
    return {TimeControlPreset::custom, minutes, increment, GameClock{}};
}

// Undo

TEST_F(GameCourseTest, undoTakesBackOnePlyBetweenTwoPeople) {
    startGame(GameMode::humanVsHuman);
    play({"e2e4", "e7e5"});
    manager.undoMove();
    EXPECT_EQ(movesOf(manager.board()), "e2e4");
    EXPECT_EQ(manager.lastMove(), mv("e2e4"));
    manager.undoMove();
    EXPECT_EQ(movesOf(manager.board()), "");
    EXPECT_EQ(manager.lastMove(), std::nullopt);
}

TEST_F(GameCourseTest, undoTakesBackTwoPliesOnceTheEngineHasAnswered) {
    selectEngines();
    startGame(GameMode::humanVsEngine);
    play({"e2e4"});
    say(engine(0), "bestmove e7e5");
    ASSERT_EQ(movesOf(manager.board()), "e2e4 e7e5");
    manager.undoMove();
    EXPECT_EQ(movesOf(manager.board()), "");
    EXPECT_EQ(manager.lastMove(), std::nullopt);
}

TEST_F(GameCourseTest, undoTakesBackOnePlyWhileTheEngineIsToMove) {
    selectEngines();
    startGame(GameMode::humanVsEngine);
    play({"e2e4"});
    say(engine(0), "bestmove e7e5");
    play({"g1f3"});
    manager.undoMove();
    EXPECT_EQ(movesOf(manager.board()), "e2e4 e7e5");
    EXPECT_EQ(manager.lastMove(), mv("e7e5"));
}

TEST_F(GameCourseTest, undoTakesBackTwoPliesForAPersonWithBlackToo) {
    selectEngines();
    startGame(GameMode::humanVsEngine, PlayerColorChoice::black);
    say(engine(0), "bestmove e2e4");
    play({"e7e5"});
    say(engine(0), "bestmove g1f3");
    manager.undoMove();
    EXPECT_EQ(movesOf(manager.board()), "e2e4");
    EXPECT_EQ(manager.board().turn, black);
}

TEST_F(GameCourseTest, undoBetweenEnginesTakesBackOnePly) {
    selectEngines();
    startGame(GameMode::engineVsEngine);
    time.advance(200ms);
    say(engine(0), "bestmove e2e4");
    manager.undoMove();
    EXPECT_EQ(movesOf(manager.board()), "");
}

TEST_F(GameCourseTest, undoReturnsToTheLivePositionWithoutSelectionOrEvaluation) {
    selectEngines();
    startGame(GameMode::humanVsEngine);
    play({"e2e4"});
    say(engine(0), "info depth 5 score cp 12");
    say(engine(0), "bestmove e7e5");
    click("g1");
    manager.inspectMove(0);
    forget();
    manager.undoMove();
    EXPECT_EQ(manager.selectedSquare(), std::nullopt);
    EXPECT_TRUE(manager.legalDestinationSquares().empty());
    EXPECT_EQ(manager.inspectingMoveIndex(), std::nullopt);
    EXPECT_EQ(manager.liveEvaluation(), EngineEvaluation());
    EXPECT_EQ(manager.liveEvaluationTurn(), white);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(evaluationChanges, 1);
    EXPECT_EQ(clockChanges, 1);
}

TEST_F(GameCourseTest, undoCreditsTheIncrementToTheRunningSide) {
    startGame(GameMode::humanVsHuman);
    play({"e2e4"});
    time.advance(1000ms);
    manager.undoMove();
    EXPECT_EQ(manager.clock().blackRemainingMs(), 300'000 - 1000 + 3000);
    EXPECT_EQ(manager.clock().whiteRemainingMs(), 303'000);
    EXPECT_EQ(manager.clock().activeColor(), white);
}

TEST_F(GameCourseTest, undoOnAnEmptyHistoryLeavesTheBoardAndTakesItsOtherSteps) {
    startGame(GameMode::humanVsHuman);
    click("e2");
    manager.undoMove();
    EXPECT_EQ(manager.board().fen(), ChessBoard::standardStartingFEN);
    EXPECT_EQ(manager.selectedSquare(), std::nullopt);
    EXPECT_EQ(manager.clock().whiteRemainingMs(), 303'000);
    EXPECT_EQ(manager.clock().activeColor(), white);
}

TEST_F(GameCourseTest, undoIsIgnoredAfterTheGamesEnd) {
    startGame(GameMode::humanVsHuman);
    play({"e2e4"});
    manager.resign(black);
    forget();
    manager.undoMove();
    EXPECT_EQ(movesOf(manager.board()), "e2e4");
    EXPECT_EQ(changes, 0);
}

TEST_F(GameCourseTest, undoKeepsAPendingPromotion) {
    startGame(GameMode::humanVsHuman);
    manager.loadFEN(QStringLiteral("4k3/P7/8/8/8/8/7P/4K3 w - - 0 1"));
    click("a7");
    click("a8");
    manager.undoMove();
    EXPECT_NE(manager.pendingPromotion(), std::nullopt);
    manager.confirmPromotion(PieceType::queen);
    EXPECT_EQ(manager.lastMove(), mv("a7a8q"));
}

TEST_F(GameCourseTest, undoLeavesAThinkingEngineAndItsFieldsAlone) {
    selectEngines();
    startGame(GameMode::humanVsEngine);
    play({"e2e4"});
    settle();
    engine(0).takeLines();
    manager.undoMove();
    settle();
    EXPECT_TRUE(engine(0).takeLines().isEmpty());
    EXPECT_EQ(manager.currentlyThinkingColor(), black);
    EXPECT_EQ(manager.engineStatusText(), QLatin1String("Thinking..."));
}

// Pause

TEST_F(GameCourseTest, pausingStopsTheClockAndResumingGoesOnForTheSameSide) {
    startGame(GameMode::humanVsHuman);
    play({"e2e4"});
    time.advance(500ms);
    forget();
    manager.togglePause();
    EXPECT_TRUE(manager.isPaused());
    EXPECT_FALSE(manager.clock().isRunning());
    EXPECT_EQ(manager.clock().activeColor(), black);
    EXPECT_EQ(changes, 1);
    time.advance(10'000ms);
    manager.togglePause();
    EXPECT_FALSE(manager.isPaused());
    EXPECT_TRUE(manager.clock().isRunning());
    EXPECT_EQ(manager.clock().activeColor(), black);
    time.advance(500ms);
    EXPECT_EQ(manager.clock().blackRemainingMs(), 299'000);
}

TEST_F(GameCourseTest, resumingWithoutAnActiveSideStartsNoClock) {
    startGame(GameMode::humanVsHuman);
    manager.resign(white);
    manager.togglePause();
    manager.togglePause();
    EXPECT_FALSE(manager.clock().isRunning());
    EXPECT_EQ(manager.clock().activeColor(), std::nullopt);
}

TEST_F(GameCourseTest, pausingDoesNotSwitchSidesOrCreditAnybody) {
    startGame(GameMode::humanVsHuman);
    manager.togglePause();
    manager.togglePause();
    EXPECT_EQ(manager.clock().whiteRemainingMs(), 300'000);
    EXPECT_EQ(manager.clock().blackRemainingMs(), 300'000);
    EXPECT_EQ(manager.clock().activeColor(), white);
}

// Orientation

TEST_F(GameCourseTest, flippingTurnsTheBoardAndNothingElse) {
    startGame(GameMode::humanVsHuman);
    play({"e2e4"});
    click("e7");
    manager.inspectMove(0);
    forget();
    manager.flipBoard();
    EXPECT_TRUE(manager.isFlipped());
    EXPECT_EQ(manager.selectedSquare(), sq("e7"));
    EXPECT_EQ(manager.inspectingMoveIndex(), 0);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(clockChanges, 0);
    manager.flipBoard();
    EXPECT_FALSE(manager.isFlipped());
}

// Ends

TEST_F(GameCourseTest, resignationGivesTheGameToTheOtherSide) {
    for (const PieceColor color : allPieceColors) {
        startGame(GameMode::humanVsHuman);
        manager.resign(color);
        EXPECT_TRUE(manager.isGameOver());
        EXPECT_EQ(manager.gameEndReason(), GameEndReason::resignation(opponent(color)));
        EXPECT_FALSE(manager.clock().isRunning());
        EXPECT_EQ(manager.clock().activeColor(), std::nullopt);
        EXPECT_THAT(sounds.played, ElementsAre(gameEnd));
    }
}

TEST_F(GameCourseTest, onlyTheFirstResignationCounts) {
    startGame(GameMode::humanVsHuman);
    manager.resign(white);
    forget();
    manager.resign(black);
    EXPECT_EQ(manager.gameEndReason(), GameEndReason::resignation(black));
    EXPECT_EQ(changes, 0);
    EXPECT_TRUE(sounds.played.empty());
    EXPECT_EQ(listener.ends.size(), 1U);
}

TEST_F(GameCourseTest, everyEndByTheRulesEndsTheGame) {
    struct Row {
        const char* name;
        const char* fen;
        std::initializer_list<const char*> moves;
        GameEndReason reason;
    };
    const char* start = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";
    const Row rows[] = {
        {"mate by Black", start, {"f2f3", "e7e5", "g2g4", "d8h4"}, GameEndReason::checkmate(black)},
        {"mate by White", "6k1/5ppp/8/8/8/8/8/R3K3 w - - 0 1", {"a1a8"}, GameEndReason::checkmate(white)},
        {"stalemate", "k7/8/1K6/8/8/8/8/2Q5 w - - 0 1", {"c1c7"}, GameEndReason::stalemate()},
        {"fifty moves", "4k3/8/8/8/8/8/8/R3K3 w - - 99 80", {"a1a2"}, GameEndReason::fiftyMoveRule()},
        {"threefold",
         start,
         {"g1f3", "g8f6", "f3g1", "f6g8", "g1f3", "g8f6", "f3g1", "f6g8"},
         GameEndReason::threefoldRepetition()},
        {"material", "4k3/8/8/8/8/8/4p3/4K3 w - - 0 1", {"e1e2"}, GameEndReason::insufficientMaterial()},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        startGame(GameMode::humanVsHuman);
        manager.loadFEN(QString::fromLatin1(row.fen));
        EXPECT_FALSE(manager.isGameOver());
        listener.ends.clear();
        play(row.moves);
        EXPECT_TRUE(manager.isGameOver());
        EXPECT_EQ(manager.gameEndReason(), row.reason);
        EXPECT_FALSE(manager.clock().isRunning());
        EXPECT_EQ(manager.clock().activeColor(), std::nullopt);
        EXPECT_EQ(sounds.played.back(), gameEnd);
        EXPECT_EQ(manager.selectedSquare(), std::nullopt);
        ASSERT_EQ(listener.ends.size(), 1U);
        EXPECT_EQ(listener.ends[0].reason, row.reason);
    }
}

TEST_F(GameCourseTest, theLastMoveCreditsNoIncrement) {
    startGame(GameMode::humanVsHuman);
    play({"f2f3", "e7e5", "g2g4"});
    const qint64 before = manager.clock().blackRemainingMs();
    play({"d8h4"});
    EXPECT_EQ(manager.clock().blackRemainingMs(), before);
}

TEST_F(GameCourseTest, aTimeoutArrivesThroughTheEventLoopAndGivesTheGameToTheOtherSide) {
    for (const PieceColor color : allPieceColors) {
        manager.setTimeControlConfig(customTimes(1, 0));
        startGame(GameMode::humanVsHuman);
        if (color == black) play({"e2e4"});
        sounds.played.clear();
        time.stall(60'000ms);
        // Queued by an observer of the tick, and so before the time-out is.
        std::unique_ptr<Timer> queued;
        bool wasOver = true;
        const auto connection = QObject::connect(&manager.clock(), &ChessClock::changed, &manager, [&] {
            if (manager.clock().isRunning() || queued) return;
            queued = time.after(0ms, [&] { wasOver = manager.isGameOver(); });
        });
        time.runDue();
        QObject::disconnect(connection);
        EXPECT_FALSE(wasOver);
        EXPECT_TRUE(manager.isGameOver());
        EXPECT_EQ(manager.gameEndReason(), GameEndReason::timeout(opponent(color)));
        EXPECT_EQ(manager.clock().remainingMs(color), 0);
        EXPECT_THAT(sounds.played, ElementsAre(gameEnd));
    }
}

TEST_F(GameCourseTest, aTimeoutUnderWayOverridesAResignationThatComesBetween) {
    manager.setTimeControlConfig(customTimes(0, 0));
    startGame(GameMode::humanVsHuman);
    QObject::connect(&manager.clock(), &ChessClock::changed, &manager, [&] {
        if (!manager.clock().isRunning()) manager.resign(black);
    });
    time.advance(50ms);
    EXPECT_EQ(manager.gameEndReason(), GameEndReason::timeout(black));
    ASSERT_EQ(listener.ends.size(), 2U);
    EXPECT_EQ(listener.ends[0].reason, GameEndReason::resignation(white));
    EXPECT_EQ(listener.ends[1].reason, GameEndReason::timeout(black));
    EXPECT_THAT(sounds.played, ElementsAre(gameEnd, gameEnd));
}

TEST_F(GameCourseTest, aTimeoutUnderWayEndsEvenTheGameThatComesBetween) {
    manager.setTimeControlConfig(customTimes(0, 0));
    startGame(GameMode::humanVsHuman);
    manager.setTimeControlConfig(customTimes(5, 0));
    // Queued by an observer of the tick: it runs when the time-out is queued, too, and before it.
    std::unique_ptr<Timer> restart;
    bool wasOver = true;
    QObject::connect(&manager.clock(), &ChessClock::changed, &manager, [&] {
        if (manager.clock().isRunning() || restart) return;
        restart = time.after(0ms, [&] {
            manager.startNewGame();
            wasOver = manager.isGameOver();
        });
    });
    time.advance(50ms);
    EXPECT_FALSE(wasOver);
    EXPECT_EQ(manager.clock().whiteRemainingMs(), 300'000);
    EXPECT_EQ(manager.gameEndReason(), GameEndReason::timeout(black));
    EXPECT_FALSE(manager.clock().isRunning());
}

TEST_F(GameCourseTest, aGameWithLessThanNoTimeIsLostAtTheFirstTick) {
    manager.setTimeControlConfig(customTimes(-5, 0));
    startGame(GameMode::humanVsHuman);
    EXPECT_EQ(manager.clock().whiteRemainingMs(), -300'000);
    EXPECT_EQ(manager.clock().formattedTime(white), QLatin1String("0:00.0"));
    EXPECT_FALSE(manager.isGameOver());
    time.advance(50ms);
    EXPECT_EQ(manager.gameEndReason(), GameEndReason::timeout(black));
    EXPECT_EQ(manager.clock().whiteRemainingMs(), 0);
}

TEST_F(GameCourseTest, theListenerHearsOfEveryEndOnceWithReasonBoardAndRecord) {
    startGame(GameMode::humanVsHuman);
    play({"f2f3", "e7e5", "g2g4", "d8h4"});
    ASSERT_EQ(listener.ends.size(), 1U);
    EXPECT_EQ(listener.ends[0].reason, GameEndReason::checkmate(black));
    EXPECT_EQ(listener.ends[0].board, manager.board());
    EXPECT_EQ(listener.ends[0].pgn, manager.exportPGN());
    EXPECT_TRUE(listener.ends[0].pgn.endsWith(QLatin1String("1. f3 e5 2. g4 Qh4# 0-1\n")));
}

TEST_F(GameCourseTest, theListenerHearsNothingWithoutASeries) {
    listener.isActive = false;
    startGame(GameMode::humanVsHuman);
    manager.resign(white);
    EXPECT_TRUE(listener.ends.empty());
    manager.setListener(nullptr);
    startGame(GameMode::humanVsHuman);
    manager.resign(white);
    EXPECT_TRUE(manager.isGameOver());
}

TEST_F(GameCourseTest, theListenerMayStartTheNextGameLater) {
    std::unique_ptr<Timer> next;
    listener.onEnd = [&] { next = time.after(0ms, [&] { manager.startNewGame(); }); };
    startGame(GameMode::humanVsHuman);
    play({"f2f3", "e7e5", "g2g4", "d8h4"});
    EXPECT_TRUE(manager.isGameOver());
    time.runDue();
    EXPECT_FALSE(manager.isGameOver());
    EXPECT_EQ(manager.board().fen(), ChessBoard::standardStartingFEN);
}

// Re-entrancy

TEST_F(GameCourseTest, aSlotMayStartANewGameWhenItHearsOfAnEnd) {
    startGame(GameMode::humanVsHuman);
    QObject::connect(&manager, &GameManager::changed, &manager, [this] {
        if (manager.isGameOver()) manager.startNewGame();
    });
    bool wasOverForTheLaterSlot = false;
    QObject::connect(&manager, &GameManager::changed, &manager,
                     [&] { wasOverForTheLaterSlot |= manager.isGameOver(); });
    play({"f2f3", "e7e5", "g2g4"});
    click("d8");
    click("h4");
    EXPECT_FALSE(manager.isGameOver());
    EXPECT_FALSE(wasOverForTheLaterSlot);
    EXPECT_EQ(manager.board().fen(), ChessBoard::standardStartingFEN);
    EXPECT_TRUE(manager.clock().isRunning());
    EXPECT_EQ(listener.ends.size(), 1U);
}

TEST_F(GameCourseTest, aSlotMayReplaceTheEnginesFromTheirOwnSignals) {
    selectEngines();
    startGame(GameMode::humanVsEngine);
    bool hasRestarted = false;
    QObject::connect(manager.blackEngineProcess(), &UCIEngineProcess::logChanged, &manager, [&] {
        if (std::exchange(hasRestarted, true)) return;
        manager.startNewGame();
    });
    manager.togglePause();
    EXPECT_TRUE(hasRestarted);
    EXPECT_FALSE(manager.isPaused());
    settle();
    ASSERT_EQ(launcher.engines.size(), 2);
    EXPECT_TRUE(engine(0).isTerminated);
    EXPECT_FALSE(engine(1).isTerminated);
}

}  // namespace
}  // namespace orlix::test
