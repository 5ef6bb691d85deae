// Seats and requests: what engines are told, over engines that say what the test lets them say.
#include <limits>

#include "game_fixture.h"

namespace orlix::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

using EngineTurnsTest = EngineGameTest;

// Seats

TEST_F(EngineTurnsTest, everyModeSeatsTheEnginesItNeeds) {
    struct Row {
        GameMode mode;
        PlayerColorChoice choice;
        bool hasWhite;
        bool hasBlack;
    };
    const Row rows[] = {
        {GameMode::engineVsEngine, PlayerColorChoice::white, true, true},
        {GameMode::engineVsEngine, PlayerColorChoice::black, true, true},
        {GameMode::humanVsEngine, PlayerColorChoice::white, false, true},
        {GameMode::humanVsEngine, PlayerColorChoice::black, true, false},
        {GameMode::humanVsHuman, PlayerColorChoice::white, false, false},
    };
    for (const Row& row : rows) {
        startGame(row.mode, row.choice);
        EXPECT_EQ(manager.whiteEngineProcess() != nullptr, row.hasWhite);
        EXPECT_EQ(manager.blackEngineProcess() != nullptr, row.hasBlack);
        if (const auto* seated = manager.whiteEngineProcess()) {
            EXPECT_EQ(seated->config().name, text("Alpha"));
        }
        if (const auto* seated = manager.blackEngineProcess()) {
            EXPECT_EQ(seated->config().name, text("Beta"));
        }
    }
}

TEST_F(EngineTurnsTest, aSideWithoutASelectedEngineHasNoProcessAndNeverMoves) {
    engines.setSelectedBlackEngine(std::nullopt);
    startGame(GameMode::engineVsEngine);
    EXPECT_NE(manager.whiteEngineProcess(), nullptr);
    EXPECT_EQ(manager.blackEngineProcess(), nullptr);
    time.advance(200ms);
    say(engine(0), "bestmove e2e4");
    EXPECT_EQ(movesOf(manager.board()), "e2e4");
    EXPECT_EQ(manager.currentlyThinkingColor(), std::nullopt);
    EXPECT_EQ(manager.currentlyThinkingEngine(), std::nullopt);
    EXPECT_EQ(manager.engineStatusText(), text("Ready"));
    time.advance(10'000ms);
    EXPECT_EQ(movesOf(manager.board()), "e2e4");
}

TEST_F(EngineTurnsTest, aSeatedEnginePlaysAtTheStrengthOfItsSide) {
    manager.setWhiteEngineLimit(true, 1400);
    manager.setBlackEngineLimit(false, 2100);
    EngineConfiguration strong = engineNamed(text("Beta"));
    strong.limitElo = true;
    strong.elo = 2700;
    engines.setSelectedBlackEngine(strong);
    startGame(GameMode::engineVsEngine);
    EXPECT_TRUE(manager.whiteEngineProcess()->config().limitElo);
    EXPECT_EQ(manager.whiteEngineProcess()->config().elo, 1400);
    EXPECT_FALSE(manager.blackEngineProcess()->config().limitElo);
    EXPECT_EQ(manager.blackEngineProcess()->config().elo, 2100);
    say(engine(0), "uciok");
    say(engine(1), "uciok");
    EXPECT_THAT(engine(0).lines(), Contains(text("setoption name UCI_LimitStrength value true")));
    EXPECT_THAT(engine(0).lines(), Contains(text("setoption name UCI_Elo value 1400")));
    EXPECT_THAT(engine(1).lines(), Contains(text("setoption name UCI_LimitStrength value false")));
    // The selection itself keeps its own limit.
    EXPECT_EQ(engines.selectedBlackEngine()->elo, 2700);
}

TEST_F(EngineTurnsTest, againstAPersonTheEngineHasTheStrengthOfTheColourItPlays) {
    manager.setWhiteEngineLimit(true, 1400);
    manager.setBlackEngineLimit(true, 1500);
    startGame(GameMode::humanVsEngine, PlayerColorChoice::black);
    EXPECT_EQ(manager.whiteEngineProcess()->config().elo, 1400);
    startGame(GameMode::humanVsEngine, PlayerColorChoice::white);
    EXPECT_EQ(manager.blackEngineProcess()->config().elo, 1500);
}

TEST_F(EngineTurnsTest, enginesAreLaunchedThroughTheEventLoopWhiteFirst) {
    manager.setGameMode(GameMode::engineVsEngine);
    manager.startNewGame();
    EXPECT_TRUE(launcher.engines.isEmpty());
    settle();
    ASSERT_EQ(launcher.engines.size(), 2);
    EXPECT_EQ(engine(0).path, text("/engines/alpha"));
    EXPECT_EQ(engine(1).path, text("/engines/beta"));
    EXPECT_THAT(engine(0).lines(), ElementsAre(text("uci")));
}

TEST_F(EngineTurnsTest, aGameThatIsReplacedBeforeTheEventLoopRunsLaunchesNothing) {
    manager.setGameMode(GameMode::engineVsEngine);
    manager.startNewGame();
    manager.setGameMode(GameMode::humanVsHuman);
    manager.startNewGame();
    settle();
    time.advance(1000ms);
    EXPECT_TRUE(launcher.engines.isEmpty());
}

TEST_F(EngineTurnsTest, aNewGameTerminatesTheOldEnginesAndSeatsNewOnes) {
    startGame(GameMode::engineVsEngine);
    const UCIEngineProcess* const before = manager.whiteEngineProcess();
    forget();
    bool wasAliveAtTheSignal = false;
    QObject::connect(&manager, &GameManager::enginesChanged, &manager,
                     [&] { wasAliveAtTheSignal = !before->isRunning(); });
    manager.startNewGame();
    EXPECT_TRUE(wasAliveAtTheSignal);
    EXPECT_EQ(engineChanges, 1);
    EXPECT_TRUE(engine(0).isTerminated);
    EXPECT_TRUE(engine(1).isTerminated);
    EXPECT_EQ(engine(0).lines().last(), text("quit"));
    EXPECT_EQ(engine(1).lines().last(), text("quit"));
    settle();
    ASSERT_EQ(launcher.engines.size(), 4);
    EXPECT_FALSE(engine(2).isTerminated);
    EXPECT_FALSE(engine(3).isTerminated);
}

TEST_F(EngineTurnsTest, destroyingTheManagerEndsItsEngines) {
    {
        GameManager other(time, engines, sounds, [this](const EngineConfiguration& config) {
            return std::make_unique<UCIEngineProcess>(config, launcher, files);
        });
        other.setGameMode(GameMode::engineVsEngine);
        other.startNewGame();
        settle();
        ASSERT_EQ(launcher.engines.size(), 2);
    }
    EXPECT_TRUE(engine(0).isTerminated);
    EXPECT_TRUE(engine(1).isTerminated);
    EXPECT_EQ(time.pendingTimers(), 0U);
    engine(0).sayLine("bestmove e2e4");
    settle();
}

TEST_F(EngineTurnsTest, anEngineThatCannotBeStartedIsAskedAllTheSame) {
    files.executables.clear();
    startGame(GameMode::humanVsEngine, PlayerColorChoice::black);
    EXPECT_EQ(manager.currentlyThinkingColor(), white);
    EXPECT_EQ(manager.engineStatusText(), text("Thinking..."));
    EXPECT_THAT(manager.whiteEngineProcess()->logLines(), Contains(text("> position startpos")));
    EXPECT_FALSE(manager.whiteEngineProcess()->isRunning());
}

// Requests

TEST_F(EngineTurnsTest, theRequestGoesOutBeforeTheEngineIsReadyAfterItsLaunch) {
    startGame(GameMode::humanVsEngine, PlayerColorChoice::black);
    EXPECT_THAT(engine(0).lines(), ElementsAre(text("uci"), text("position startpos"),
                                               text("go wtime 300000 btime 300000 winc 3000 binc 3000")));
}

TEST_F(EngineTurnsTest, withThePersonAsWhiteNothingIsAskedBeforeTheFirstMove) {
    startGame(GameMode::humanVsEngine, PlayerColorChoice::white);
    time.advance(1000ms);
    EXPECT_THAT(engine(0).takeLines(), ElementsAre(text("uci")));
    EXPECT_EQ(manager.currentlyThinkingColor(), std::nullopt);
    play({"e2e4"});
    EXPECT_EQ(manager.currentlyThinkingColor(), black);
    EXPECT_EQ(manager.currentlyThinkingEngine(), manager.blackEngineProcess()->config());
    EXPECT_EQ(manager.engineStatusText(), text("Thinking..."));
    EXPECT_THAT(engine(0).takeLines(), IsEmpty());
    settle();
    EXPECT_THAT(engine(0).takeLines(), ElementsAre(text("position startpos moves e2e4"),
                                                   text("go wtime 302000 btime 300000 winc 3000 binc 3000")));
}

TEST_F(EngineTurnsTest, thePositionLineHoldsAllMovesWithTheirPromotions) {
    useThinkingMode(FixedDepth{1});
    startAgainstEngine(PlayerColorChoice::white);
    const struct {
        const char* own;
        const char* answer;
    } turns[] = {{"a2a4", "b7b5"}, {"a4b5", "a7a6"}, {"b5a6", "c8b7"}, {"a6b7", "h7h6"}};
    for (const auto& turn : turns) {
        play({turn.own});
        settle();
        say(engine(0), QByteArray("bestmove ") + turn.answer);
    }
    engine(0).takeLines();
    click("b7");
    click("a8");
    manager.confirmPromotion(PieceType::knight);
    settle();
    EXPECT_EQ(engine(0).takeLines().first(),
              text("position startpos moves a2a4 b7b5 a4b5 a7a6 b5a6 c8b7 a6b7 h7h6 b7a8n"));
}

TEST_F(EngineTurnsTest, thePositionLineStartsFromTheStandardStartAlsoAfterALoadedPosition) {
    useThinkingMode(FixedDepth{1});
    startAgainstEngine(PlayerColorChoice::white);
    manager.loadFEN(text("4k3/8/8/8/8/8/4P3/4K3 b - - 5 40"));
    EXPECT_EQ(manager.currentlyThinkingColor(), black);
    settle();
    EXPECT_THAT(engine(0).takeLines(), ElementsAre(text("position startpos"), text("go depth 1")));
}

TEST_F(EngineTurnsTest, theSearchLineFollowsThinkingModeAndClock) {
    struct Row {
        const char* name;
        TimeControlConfig config;
        const char* line;
    };
    const auto with = [](TimeControlPreset preset, EngineThinkingMode mode) {
        TimeControlConfig config;
        config.preset = preset;
        config.engineThinkingMode = mode;
        return config;
    };
    const Row rows[] = {
        {"game clock", with(TimeControlPreset::rapid15_10, GameClock{}),
         "go wtime 900000 btime 900000 winc 10000 binc 10000"},
        {"game clock without increment", with(TimeControlPreset::bullet1_0, GameClock{}),
         "go wtime 60000 btime 60000 winc 0 binc 0"},
        {"no clock", with(TimeControlPreset::unlimited, GameClock{}), "go wtime 0 btime 0 winc 0 binc 0"},
        {"custom",
         {TimeControlPreset::custom, 2, -1, GameClock{}},
         "go wtime 120000 btime 120000 winc -1000 binc -1000"},
        {"fixed time", with(TimeControlPreset::blitz5_3, FixedMoveTime{2.5}), "go movetime 2500"},
        {"fixed time, truncated", with(TimeControlPreset::blitz5_3, FixedMoveTime{0.0019}), "go movetime 1"},
        {"fixed time of nothing", with(TimeControlPreset::blitz5_3, FixedMoveTime{0}), "go movetime 0"},
        {"fixed depth", with(TimeControlPreset::unlimited, FixedDepth{12}), "go depth 12"},
    };
    for (const Row& row : rows) {
        manager.setTimeControlConfig(row.config);
        startGame(GameMode::humanVsEngine, PlayerColorChoice::black);
        EXPECT_EQ(launcher.last().lines().last(), text(row.line)) << row.name;
    }
}

TEST_F(EngineTurnsTest, theGameClockIsReadWhenTheRequestIsSent) {
    startGame(GameMode::engineVsEngine);
    time.advance(200ms);
    // The tick of the same instant was set up first.
    EXPECT_EQ(engine(0).lines().last(), text("go wtime 299800 btime 300000 winc 3000 binc 3000"));
}

TEST_F(EngineTurnsTest, theRequestUsesTheThinkingModeOfItsMoment) {
    startGame(GameMode::engineVsEngine);
    useThinkingMode(FixedDepth{3});
    time.advance(200ms);
    EXPECT_EQ(engine(0).lines().last(), text("go depth 3"));
}

using EngineTurnsDeathTest = EngineTurnsTest;

TEST_F(EngineTurnsDeathTest, aMoveTimeThatIsNoNumberOfMillisecondsEndsTheProgram) {
    for (const double seconds :
         {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN(), 1e16, -1e16}) {
        useThinkingMode(FixedMoveTime{seconds});
        EXPECT_DEATH(startGame(GameMode::humanVsEngine, PlayerColorChoice::black), "out of range");
    }
}

TEST_F(EngineTurnsTest, enginesWaitTwoHundredMillisecondsBetweenTheirMoves) {
    useThinkingMode(FixedDepth{1});
    startGame(GameMode::engineVsEngine);
    EXPECT_EQ(manager.currentlyThinkingColor(), white);
    time.advance(199ms);
    EXPECT_THAT(engine(0).lines(), ElementsAre(text("uci")));
    time.advance(1ms);
    EXPECT_THAT(engine(0).lines(), ElementsAre(text("uci"), text("position startpos"), text("go depth 1")));
    say(engine(0), "bestmove e2e4");
    EXPECT_EQ(manager.currentlyThinkingColor(), black);
    EXPECT_EQ(manager.engineStatusText(), text("Thinking..."));
    time.advance(199ms);
    EXPECT_THAT(engine(1).lines(), ElementsAre(text("uci")));
    time.advance(1ms);
    EXPECT_THAT(engine(1).lines(),
                ElementsAre(text("uci"), text("position startpos moves e2e4"), text("go depth 1")));
}

TEST_F(EngineTurnsTest, aNewGameWithinThePauseSendsNothingForTheOldOne) {
    startGame(GameMode::engineVsEngine);
    time.advance(100ms);
    manager.startNewGame();
    settle();
    time.advance(100ms);
    EXPECT_THAT(engine(0).lines(), ElementsAre(text("uci"), text("quit")));
    EXPECT_THAT(engine(2).lines(), ElementsAre(text("uci")));
    time.advance(100ms);
    EXPECT_THAT(engine(2).lines(), Contains(text("position startpos")));
    EXPECT_THAT(engine(0).lines(), ElementsAre(text("uci"), text("quit")));
}

TEST_F(EngineTurnsTest, aNewRequestCancelsTheOneThatWaits) {
    useThinkingMode(FixedDepth{1});
    startGame(GameMode::engineVsEngine);
    time.advance(100ms);
    manager.togglePause();
    manager.togglePause();
    time.advance(100ms);
    EXPECT_THAT(engine(0).takeLines(), ElementsAre(text("uci"), text("stop")));
    time.advance(100ms);
    EXPECT_THAT(engine(0).takeLines(), ElementsAre(text("position startpos"), text("go depth 1")));
    time.advance(1000ms);
    EXPECT_THAT(engine(0).takeLines(), IsEmpty());
}

TEST_F(EngineTurnsTest, aPauseOrAnEndDoesNotCallBackTheRequestThatWaits) {
    useThinkingMode(FixedDepth{1});
    startGame(GameMode::engineVsEngine);
    manager.togglePause();
    time.advance(200ms);
    EXPECT_EQ(engine(0).lines().last(), text("go depth 1"));
    startGame(GameMode::engineVsEngine);
    manager.resign(white);
    time.advance(200ms);
    EXPECT_EQ(engine(2).lines().last(), text("go depth 1"));
    EXPECT_FALSE(engine(2).isTerminated);
}

TEST_F(EngineTurnsTest, takingBackNeitherCallsBackTheRequestThatWaitsNorAsksAgain) {
    useThinkingMode(FixedDepth{1});
    startGame(GameMode::engineVsEngine);
    time.advance(200ms);
    say(engine(0), "bestmove e2e4");
    engine(0).takeLines();
    engine(1).takeLines();
    time.advance(100ms);
    manager.undoMove();
    EXPECT_EQ(manager.currentlyThinkingColor(), black);
    time.advance(100ms);
    // Black's engine is asked as was decided, about the position of this moment.
    EXPECT_THAT(engine(1).takeLines(), ElementsAre(text("position startpos"), text("go depth 1")));
    time.advance(1000ms);
    EXPECT_THAT(engine(0).takeLines(), IsEmpty());
    EXPECT_THAT(engine(1).takeLines(), IsEmpty());
}

TEST_F(EngineTurnsTest, aLoadedPositionInWhichNoEngineMovesDoesNotCallBackTheRequestThatWaits) {
    useThinkingMode(FixedDepth{1});
    startAgainstEngine(PlayerColorChoice::white);
    play({"e2e4"});
    manager.loadFEN(text("4k3/8/8/8/8/8/4P3/4K3 w - - 0 1"));
    EXPECT_EQ(manager.currentlyThinkingColor(), std::nullopt);
    settle();
    EXPECT_THAT(engine(0).takeLines(), ElementsAre(text("position startpos"), text("go depth 1")));
}

TEST_F(EngineTurnsTest, theEngineOnAPersonsSideIsNotAskedOnceTheModeHasChanged) {
    useThinkingMode(FixedDepth{1});
    startGame(GameMode::engineVsEngine);
    time.advance(200ms);
    engine(0).takeLines();
    manager.setGameMode(GameMode::humanVsEngine);
    manager.loadFEN(text("4k3/8/8/8/8/8/4P3/4K3 w - - 0 1"));
    settle();
    EXPECT_EQ(manager.currentlyThinkingColor(), std::nullopt);
    EXPECT_THAT(engine(0).takeLines(), IsEmpty());
    play({"e2e4"});
    settle();
    EXPECT_EQ(engine(1).lines().last(), text("go depth 1"));
}

TEST_F(EngineTurnsTest, betweenPeopleNoEngineIsAsked) {
    startGame(GameMode::humanVsHuman);
    play({"e2e4", "e7e5"});
    settle();
    EXPECT_TRUE(launcher.engines.isEmpty());
    EXPECT_EQ(manager.currentlyThinkingColor(), std::nullopt);
}

TEST_F(EngineTurnsTest, aTurnWithoutAnEngineClearsTheThinkingFieldsAndKeepsTheStatus) {
    startAgainstEngine(PlayerColorChoice::white);
    play({"e2e4"});
    ASSERT_EQ(manager.engineStatusText(), text("Thinking..."));
    manager.loadFEN(text("4k3/8/8/8/8/8/4P3/4K3 w - - 0 1"));
    EXPECT_EQ(manager.currentlyThinkingColor(), std::nullopt);
    EXPECT_EQ(manager.currentlyThinkingEngine(), std::nullopt);
    EXPECT_EQ(manager.engineStatusText(), text("Thinking..."));
    manager.startNewGame();
    EXPECT_EQ(manager.engineStatusText(), text("Thinking..."));
}

TEST_F(EngineTurnsTest, aPausedGameAsksNobody) {
    startAgainstEngine(PlayerColorChoice::white);
    manager.togglePause();
    engine(0).takeLines();
    manager.loadFEN(text("4k3/8/8/8/8/8/4P3/4K3 b - - 0 1"));
    settle();
    EXPECT_THAT(engine(0).takeLines(), IsEmpty());
    EXPECT_EQ(manager.currentlyThinkingColor(), std::nullopt);
    manager.togglePause();
    settle();
    EXPECT_EQ(manager.currentlyThinkingColor(), black);
    EXPECT_EQ(engine(0).takeLines().first(), text("position startpos"));
}

// Pause

TEST_F(EngineTurnsTest, pausingTellsBothEnginesToStopAndResumingAsksAgain) {
    useThinkingMode(FixedDepth{1});
    startGame(GameMode::engineVsEngine);
    time.advance(200ms);
    engine(0).takeLines();
    engine(1).takeLines();
    manager.togglePause();
    EXPECT_THAT(engine(0).takeLines(), ElementsAre(text("stop")));
    EXPECT_THAT(engine(1).takeLines(), ElementsAre(text("stop")));
    say(engine(0), "bestmove e2e4");
    EXPECT_EQ(movesOf(manager.board()), "");
    EXPECT_EQ(manager.currentlyThinkingColor(), white);
    manager.togglePause();
    time.advance(200ms);
    EXPECT_THAT(engine(0).takeLines(), ElementsAre(text("position startpos"), text("go depth 1")));
    say(engine(0), "bestmove e2e4");
    EXPECT_EQ(movesOf(manager.board()), "e2e4");
}

}  // namespace
}  // namespace orlix::test
