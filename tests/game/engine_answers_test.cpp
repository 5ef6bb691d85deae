// What engines answer: moves, evaluations, and strengths that change meanwhile.
#include "game_fixture.h"

namespace orlix::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

using EngineAnswersTest = EngineGameTest;

// Answers

TEST_F(EngineAnswersTest, anAnswerIsPlayedAndHandsTheTurnBack) {
    startAgainstEngine(PlayerColorChoice::white);
    play({"e2e4"});
    manager.inspectMove(-1);
    settle();
    time.advance(1000ms);
    forget();
    say(engine(0), "bestmove d7d5 ponder e4d5");
    EXPECT_EQ(movesOf(manager.board()), "e2e4 d7d5");
    EXPECT_EQ(manager.lastMove(), mv("d7d5"));
    EXPECT_EQ(manager.inspectingMoveIndex(), std::nullopt);
    EXPECT_EQ(manager.currentlyThinkingColor(), std::nullopt);
    EXPECT_EQ(manager.currentlyThinkingEngine(), std::nullopt);
    EXPECT_EQ(manager.engineStatusText(), text("Ready"));
    EXPECT_EQ(manager.clock().activeColor(), white);
    EXPECT_EQ(manager.clock().blackRemainingMs(), 300'000 - 1000 + 3000);
    EXPECT_THAT(sounds.played, ElementsAre(SoundEffect::move));
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(clockChanges, 1);
}

TEST_F(EngineAnswersTest, anAnswerKeepsThePersonsSelection) {
    startAgainstEngine(PlayerColorChoice::white);
    play({"e2e4"});
    settle();
    say(engine(0), "bestmove e7e5");
    click("g1");
    // A second answer to the same question finds a position in which it cannot be played.
    say(engine(0), "bestmove e7e5");
    EXPECT_EQ(manager.selectedSquare(), sq("g1"));
}

TEST_F(EngineAnswersTest, answersHaveTheSoundsOfMoves) {
    struct Row {
        const char* name;
        const char* fen;
        const char* answer;
        std::vector<SoundEffect> sounds;
    };
    const Row rows[] = {
        {"quiet", "4k3/8/8/8/8/8/4P3/4K3 w - - 0 1", "e2e4", {SoundEffect::move}},
        {"capture", "4k3/8/8/3p4/4P3/8/8/4K2R w - - 0 1", "e4d5", {SoundEffect::capture}},
        {"en passant", "4k3/8/8/3pP3/8/8/8/4K2R w - d6 0 1", "e5d6", {SoundEffect::capture}},
        {"capture with check", "n3k3/8/8/8/8/8/8/R3K2R w - - 0 1", "a1a8", {SoundEffect::check}},
        {"mate", "6k1/5ppp/8/8/8/8/8/R3K3 w - - 0 1", "a1a8", {SoundEffect::check, SoundEffect::gameEnd}},
    };
    startAgainstEngine(PlayerColorChoice::black);
    for (const Row& row : rows) {
        manager.loadFEN(text(row.fen));
        settle();
        forget();
        say(engine(0), QByteArray("bestmove ") + row.answer);
        EXPECT_EQ(sounds.played, row.sounds) << row.name;
    }
}

TEST_F(EngineAnswersTest, whatIsNoMoveOrNoLegalMoveLeavesTheGameWaiting) {
    startAgainstEngine(PlayerColorChoice::white);
    play({"e2e4"});
    settle();
    forget();
    for (const char* answer : {"(none)", "0000", "NULL", "e7", "e7e5e7", "e7e9", "e2e4", "e7e4", "e7e5q"}) {
        say(engine(0), QByteArray("bestmove ") + answer);
        EXPECT_EQ(movesOf(manager.board()), "e2e4") << answer;
        EXPECT_EQ(manager.currentlyThinkingColor(), black) << answer;
        EXPECT_NE(manager.currentlyThinkingEngine(), std::nullopt) << answer;
        EXPECT_EQ(manager.engineStatusText(), text("Thinking...")) << answer;
    }
    EXPECT_EQ(changes, 0);
    EXPECT_TRUE(sounds.played.empty());
    engine(0).takeLines();
    time.advance(1000ms);
    EXPECT_THAT(engine(0).takeLines(), IsEmpty());
    manager.togglePause();
    manager.togglePause();
    settle();
    EXPECT_EQ(engine(0).takeLines().at(1), text("position startpos moves e2e4"));
    say(engine(0), "bestmove e7e5");
    EXPECT_EQ(movesOf(manager.board()), "e2e4 e7e5");
}

TEST_F(EngineAnswersTest, aLegalAnswerIsPlayedWhoeversItIs) {
    startAgainstEngine(PlayerColorChoice::white);
    play({"e2e4"});
    settle();
    manager.undoMove();
    // The engine answers the old position; for White the move is legal now.
    say(engine(0), "bestmove g1f3");
    EXPECT_EQ(movesOf(manager.board()), "g1f3");
    EXPECT_EQ(manager.currentlyThinkingColor(), black);
}

TEST_F(EngineAnswersTest, aStaleAnswerThatIsNotLegalIsDropped) {
    startAgainstEngine(PlayerColorChoice::white);
    play({"e2e4"});
    settle();
    manager.undoMove();
    say(engine(0), "bestmove e7e5");
    EXPECT_EQ(movesOf(manager.board()), "");
    EXPECT_EQ(manager.currentlyThinkingColor(), black);
}

TEST_F(EngineAnswersTest, answersAfterTheEndOrDuringAPauseAreIgnored) {
    startAgainstEngine(PlayerColorChoice::white);
    play({"e2e4"});
    settle();
    manager.togglePause();
    say(engine(0), "bestmove e7e5");
    EXPECT_EQ(movesOf(manager.board()), "e2e4");
    EXPECT_EQ(manager.currentlyThinkingColor(), black);
    manager.togglePause();
    manager.resign(white);
    say(engine(0), "bestmove e7e5");
    EXPECT_EQ(movesOf(manager.board()), "e2e4");
    EXPECT_EQ(manager.currentlyThinkingColor(), black);
    EXPECT_EQ(manager.engineStatusText(), text("Thinking..."));
}

TEST_F(EngineAnswersTest, oneBestMoveLineIsOneAnswer) {
    useThinkingMode(FixedDepth{1});
    startGame(GameMode::engineVsEngine);
    time.advance(200ms);
    forget();
    say(engine(0), "bestmove e2e4");
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(sounds.played.size(), 1U);
    time.advance(200ms);
    say(engine(1), "bestmove e7e5");
    time.advance(200ms);
    forget();
    say(engine(0), "bestmove g1f3");
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(sounds.played.size(), 1U);
    EXPECT_EQ(movesOf(manager.board()), "e2e4 e7e5 g1f3");
}

TEST_F(EngineAnswersTest, aBestMoveThatNobodyAskedForIsAnAnswerToo) {
    startAgainstEngine(PlayerColorChoice::white);
    forget();
    say(engine(0), "bestmove g1f3");
    EXPECT_EQ(movesOf(manager.board()), "g1f3");
    EXPECT_EQ(changes, 1);
}

TEST_F(EngineAnswersTest, whatAReplacedEngineStillSaysIsDropped) {
    startGame(GameMode::engineVsEngine);
    time.advance(200ms);
    engine(0).sayLine("info depth 3 score cp 55");
    engine(0).sayLine("bestmove e2e4");
    manager.startNewGame();
    engine(0).sayLine("info depth 4 score cp 66");
    engine(0).sayLine("bestmove d2d4");
    settle();
    time.advance(200ms);
    EXPECT_EQ(movesOf(manager.board()), "");
    EXPECT_EQ(manager.liveEvaluation(), EngineEvaluation());
    EXPECT_EQ(manager.currentlyThinkingColor(), white);
}

TEST_F(EngineAnswersTest, anEngineThatMatesEndsTheGameAndIsNotStopped) {
    startAgainstEngine(PlayerColorChoice::white);
    play({"f2f3"});
    say(engine(0), "bestmove e7e5");
    play({"g2g4"});
    settle();
    engine(0).takeLines();
    say(engine(0), "bestmove d8h4");
    EXPECT_EQ(manager.gameEndReason(), GameEndReason::checkmate(black));
    EXPECT_EQ(manager.currentlyThinkingColor(), std::nullopt);
    EXPECT_EQ(manager.currentlyThinkingEngine(), std::nullopt);
    EXPECT_EQ(manager.engineStatusText(), text("Ready"));
    settle();
    EXPECT_THAT(engine(0).takeLines(), IsEmpty());
    EXPECT_FALSE(engine(0).isTerminated);
    ASSERT_EQ(listener.ends.size(), 1U);
    EXPECT_EQ(listener.ends[0].board.history.size(), 4U);
}

TEST_F(EngineAnswersTest, aTimeoutLeavesTheSearchingEngineRunning) {
    manager.setTimeControlConfig({TimeControlPreset::custom, 0, 0, GameClock{}});
    startGame(GameMode::humanVsEngine, PlayerColorChoice::black);
    engine(0).takeLines();
    time.advance(50ms);
    settle();
    EXPECT_EQ(manager.gameEndReason(), GameEndReason::timeout(black));
    EXPECT_THAT(engine(0).takeLines(), IsEmpty());
    EXPECT_FALSE(engine(0).isTerminated);
    say(engine(0), "bestmove e2e4");
    EXPECT_EQ(movesOf(manager.board()), "");
}

// Evaluations

TEST_F(EngineAnswersTest, evaluationsArriveUnchangedWithASignalOfTheirOwn) {
    startAgainstEngine(PlayerColorChoice::white);
    play({"e2e4"});
    settle();
    forget();
    engine(0).say("info depth 8 score cp -35 nodes 1000\ninfo depth 9 score mate -3 pv e7e5\n");
    settle();
    EXPECT_EQ(evaluationChanges, 2);
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(manager.liveEvaluation().depth, 9);
    EXPECT_EQ(manager.liveEvaluation().mateIn, -3);
    EXPECT_EQ(manager.liveEvaluation().scoreCp, std::nullopt);
    EXPECT_EQ(manager.liveEvaluation().nodes, 1000);
}

TEST_F(EngineAnswersTest, evaluationsAreShownAlsoDuringAPauseAndAfterTheEnd) {
    startAgainstEngine(PlayerColorChoice::white);
    play({"e2e4"});
    settle();
    manager.togglePause();
    say(engine(0), "info depth 6 score cp 11");
    EXPECT_EQ(manager.liveEvaluation().scoreCp, 11);
    manager.resign(white);
    say(engine(0), "info depth 7 score cp 22");
    EXPECT_EQ(manager.liveEvaluation().scoreCp, 22);
}

TEST_F(EngineAnswersTest, anEvaluationKeepsTheSideToMoveOfThePositionItArrivedIn) {
    startAgainstEngine(PlayerColorChoice::white);
    EXPECT_EQ(manager.liveEvaluationTurn(), white);
    play({"e2e4"});
    settle();
    engine(0).say("info depth 8 score cp -35\nbestmove e7e5\n");
    settle();
    ASSERT_EQ(manager.board().turn, white);
    EXPECT_EQ(manager.liveEvaluationTurn(), black);
    EXPECT_EQ(manager.liveEvaluation().scoreCp, -35);
    play({"g1f3"});
    EXPECT_EQ(manager.liveEvaluationTurn(), black);
    manager.startNewGame();
    EXPECT_EQ(manager.liveEvaluationTurn(), white);
}

// Strength

TEST_F(EngineAnswersTest, changingTheStrengthOfAThinkingEngineTellsItAtOnceAndShows) {
    startGame(GameMode::humanVsEngine, PlayerColorChoice::black);
    engine(0).takeLines();
    forget();
    manager.updateWhiteElo(true, 1350);
    EXPECT_THAT(engine(0).takeLines(), ElementsAre(text("setoption name UCI_LimitStrength value true"),
                                                   text("setoption name UCI_Elo value 1350")));
    EXPECT_TRUE(manager.whiteEngineLimitElo());
    EXPECT_EQ(manager.whiteEngineElo(), 1350);
    EXPECT_EQ(manager.currentlyThinkingEngine(), manager.whiteEngineProcess()->config());
    EXPECT_TRUE(manager.currentlyThinkingEngine()->limitElo);
    EXPECT_EQ(manager.currentlyThinkingEngine()->elo, 1350);
    EXPECT_EQ(changes, 1);
    manager.updateWhiteElo(false, 1900);
    EXPECT_THAT(engine(0).takeLines(), ElementsAre(text("setoption name UCI_LimitStrength value false")));
    EXPECT_FALSE(manager.currentlyThinkingEngine()->limitElo);
    EXPECT_EQ(manager.currentlyThinkingEngine()->elo, 1900);
}

TEST_F(EngineAnswersTest, changingTheOtherSidesStrengthLeavesTheThinkingEngine) {
    startGame(GameMode::engineVsEngine);
    engine(1).takeLines();
    const auto before = manager.currentlyThinkingEngine();
    manager.updateBlackElo(true, 1600);
    EXPECT_EQ(manager.currentlyThinkingEngine(), before);
    EXPECT_THAT(engine(1).takeLines(), Contains(text("setoption name UCI_Elo value 1600")));
    EXPECT_THAT(engine(0).lines(), Not(Contains(text("setoption name UCI_Elo value 1600"))));
    EXPECT_EQ(manager.blackEngineElo(), 1600);
    EXPECT_EQ(manager.whiteEngineElo(), 1800);
}

TEST_F(EngineAnswersTest, changingTheStrengthOfAThinkingBlackEngineShows) {
    startAgainstEngine(PlayerColorChoice::white);
    play({"e2e4"});
    manager.updateBlackElo(true, 1601);
    EXPECT_EQ(manager.currentlyThinkingEngine()->elo, 1601);
    EXPECT_EQ(manager.currentlyThinkingEngine(), manager.blackEngineProcess()->config());
}

TEST_F(EngineAnswersTest, theStrengthOfAnEmptySeatIsKeptForTheNextGame) {
    startGame(GameMode::humanVsHuman);
    manager.updateWhiteElo(true, 1300);
    EXPECT_TRUE(manager.whiteEngineLimitElo());
    startGame(GameMode::engineVsEngine);
    EXPECT_EQ(manager.whiteEngineProcess()->config().elo, 1300);
}

TEST_F(EngineAnswersTest, settingTheStrengthForTheNextGameDoesNotTellTheRunningEngine) {
    startGame(GameMode::humanVsEngine, PlayerColorChoice::black);
    engine(0).takeLines();
    manager.setWhiteEngineLimit(true, 1200);
    EXPECT_THAT(engine(0).takeLines(), IsEmpty());
    EXPECT_NE(manager.whiteEngineProcess()->config().elo, 1200);
}

}  // namespace
}  // namespace orlix::test
