#include "game/game_manager.h"

#include "game_fixture.h"

namespace orlix::test {
namespace {

using GameManagerTest = GameTest;
using testing::ElementsAre;

constexpr auto move = SoundEffect::move;
constexpr auto capture = SoundEffect::capture;
constexpr auto check = SoundEffect::check;
constexpr auto gameEnd = SoundEffect::gameEnd;

TEST_F(GameManagerTest, startsWithItsInitialValues) {
    EXPECT_EQ(manager.board().fen(), ChessBoard::standardStartingFEN);
    EXPECT_EQ(manager.clock().whiteRemainingMs(), 300'000);
    EXPECT_EQ(manager.clock().blackRemainingMs(), 300'000);
    EXPECT_EQ(manager.clock().incrementMs(), 3'000);
    EXPECT_FALSE(manager.clock().isRunning());
    EXPECT_EQ(manager.gameMode(), GameMode::humanVsEngine);
    EXPECT_EQ(manager.colorChoice(), PlayerColorChoice::white);
    EXPECT_EQ(manager.humanColor(), white);
    EXPECT_EQ(manager.timeControlConfig(), TimeControlConfig());
    EXPECT_FALSE(manager.isFlipped());
    EXPECT_EQ(manager.selectedSquare(), std::nullopt);
    EXPECT_TRUE(manager.legalDestinationSquares().empty());
    EXPECT_EQ(manager.lastMove(), std::nullopt);
    EXPECT_EQ(manager.pendingPromotion(), std::nullopt);
    EXPECT_FALSE(manager.isGameOver());
    EXPECT_EQ(manager.gameEndReason(), std::nullopt);
    EXPECT_FALSE(manager.isPaused());
    EXPECT_EQ(manager.inspectingMoveIndex(), std::nullopt);
    EXPECT_EQ(manager.liveEvaluation(), EngineEvaluation());
    EXPECT_EQ(manager.whiteEngineProcess(), nullptr);
    EXPECT_EQ(manager.blackEngineProcess(), nullptr);
    EXPECT_EQ(manager.currentlyThinkingColor(), std::nullopt);
    EXPECT_EQ(manager.currentlyThinkingEngine(), std::nullopt);
    EXPECT_EQ(manager.engineStatusText(), QLatin1String("Ready"));
    EXPECT_FALSE(manager.whiteEngineLimitElo());
    EXPECT_EQ(manager.whiteEngineElo(), 1800);
    EXPECT_FALSE(manager.blackEngineLimitElo());
    EXPECT_EQ(manager.blackEngineElo(), 1800);
    EXPECT_FALSE(manager.isInspectingPast());
}

TEST_F(GameManagerTest, settingsAnnounceThemselvesOnlyWhenTheyChange) {
    TimeControlConfig config;
    config.preset = TimeControlPreset::rapid10_0;
    const auto announcements = [this](auto set) {
        forget();
        set();
        set();
        return changes;
    };
    EXPECT_EQ(announcements([&] { manager.setGameMode(GameMode::humanVsHuman); }), 1);
    EXPECT_EQ(announcements([&] { manager.setColorChoice(PlayerColorChoice::black); }), 1);
    EXPECT_EQ(announcements([&] { manager.setTimeControlConfig(config); }), 1);
    EXPECT_EQ(announcements([&] { manager.setWhiteEngineLimit(true, 1500); }), 1);
    EXPECT_EQ(announcements([&] { manager.setBlackEngineLimit(true, 1600); }), 1);
    EXPECT_EQ(manager.gameMode(), GameMode::humanVsHuman);
    EXPECT_EQ(manager.colorChoice(), PlayerColorChoice::black);
    EXPECT_EQ(manager.timeControlConfig(), config);
    EXPECT_TRUE(manager.whiteEngineLimitElo());
    EXPECT_EQ(manager.whiteEngineElo(), 1500);
    EXPECT_TRUE(manager.blackEngineLimitElo());
    EXPECT_EQ(manager.blackEngineElo(), 1600);
    EXPECT_EQ(manager.humanColor(), white);
    EXPECT_EQ(manager.clock().whiteRemainingMs(), 300'000);
}

TEST_F(GameManagerTest, sharedIsWhatWasRegistered) {
    GameManager::registerShared(&manager);
    EXPECT_EQ(&GameManager::shared(), &manager);
    GameManager::registerShared(nullptr);
}

// New game

TEST_F(GameManagerTest, aNewGameClearsEverythingOfTheOldOne) {
    selectEngines();
    startGame(GameMode::humanVsEngine);
    play({"e2e4"});
    say(engine(0), "info depth 9 score cp 20");
    say(engine(0), "bestmove e7e5");
    click("g1");
    manager.inspectMove(0);
    manager.togglePause();
    manager.resign(white);
    ASSERT_NE(manager.liveEvaluation(), EngineEvaluation());
    TimeControlConfig config;
    config.preset = TimeControlPreset::bullet2_1;
    manager.setTimeControlConfig(config);

    manager.startNewGame();
    EXPECT_EQ(manager.board().fen(), ChessBoard::standardStartingFEN);
    EXPECT_TRUE(manager.board().history.empty());
    EXPECT_EQ(manager.clock().whiteRemainingMs(), 120'000);
    EXPECT_EQ(manager.clock().incrementMs(), 1'000);
    EXPECT_TRUE(manager.clock().isRunning());
    EXPECT_EQ(manager.clock().activeColor(), white);
    EXPECT_EQ(manager.selectedSquare(), std::nullopt);
    EXPECT_TRUE(manager.legalDestinationSquares().empty());
    EXPECT_EQ(manager.lastMove(), std::nullopt);
    EXPECT_FALSE(manager.isGameOver());
    EXPECT_EQ(manager.gameEndReason(), std::nullopt);
    EXPECT_FALSE(manager.isPaused());
    EXPECT_EQ(manager.inspectingMoveIndex(), std::nullopt);
    EXPECT_EQ(manager.liveEvaluation(), EngineEvaluation());
    EXPECT_EQ(manager.currentlyThinkingColor(), std::nullopt);
    EXPECT_EQ(manager.currentlyThinkingEngine(), std::nullopt);
}

TEST_F(GameManagerTest, aNewGameClearsAPendingPromotion) {
    startGame(GameMode::humanVsHuman);
    manager.loadFEN(QStringLiteral("4k3/P7/8/8/8/8/8/4K3 w - - 0 1"));
    click("a7");
    click("a8");
    ASSERT_NE(manager.pendingPromotion(), std::nullopt);
    manager.startNewGame();
    EXPECT_EQ(manager.pendingPromotion(), std::nullopt);
}

TEST_F(GameManagerTest, aNewGamePlaysTheGameEndSoundAndAnnouncesItselfOnce) {
    selectEngines();
    forget();
    manager.startNewGame();
    EXPECT_THAT(sounds.played, ElementsAre(gameEnd));
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(clockChanges, 1);
    EXPECT_EQ(evaluationChanges, 1);
    EXPECT_EQ(engineChanges, 1);
}

TEST_F(GameManagerTest, onlyAPersonWithBlackAgainstAnEngineTurnsTheBoard) {
    struct Row {
        GameMode mode;
        PlayerColorChoice choice;
        bool isFlipped;
    };
    const Row rows[] = {
        {GameMode::humanVsEngine, PlayerColorChoice::white, false},
        {GameMode::humanVsEngine, PlayerColorChoice::black, true},
        {GameMode::engineVsEngine, PlayerColorChoice::white, false},
        {GameMode::engineVsEngine, PlayerColorChoice::black, false},
        {GameMode::humanVsHuman, PlayerColorChoice::white, false},
        {GameMode::humanVsHuman, PlayerColorChoice::black, false},
    };
    for (const Row& row : rows) {
        startGame(row.mode, row.choice);
        EXPECT_EQ(manager.isFlipped(), row.isFlipped) << rawValue(row.mode).data();
        EXPECT_EQ(manager.humanColor(), resolve(row.choice));
        manager.flipBoard();
        manager.startNewGame();
        EXPECT_EQ(manager.isFlipped(), row.isFlipped) << rawValue(row.mode).data();
    }
}

TEST_F(GameManagerTest, aRandomColourIsDrawnAnewByEveryNewGameAndTurnsTheBoardWithIt) {
    manager.setColorChoice(PlayerColorChoice::random);
    bool wasWhite = false;
    bool wasBlack = false;
    for (int game = 0; game < 200; ++game) {
        manager.startNewGame();
        (manager.humanColor() == white ? wasWhite : wasBlack) = true;
        EXPECT_EQ(manager.isFlipped(), manager.humanColor() == black);
    }
    EXPECT_TRUE(wasWhite && wasBlack);
}

// Clicks

TEST_F(GameManagerTest, aClickOnAnEmptyOrEnemySquareWithNothingSelectedDoesNothing) {
    startGame(GameMode::humanVsHuman);
    forget();
    click("e4");
    click("e7");
    EXPECT_EQ(manager.selectedSquare(), std::nullopt);
    EXPECT_EQ(changes, 0);
    EXPECT_TRUE(sounds.played.empty());
}

TEST_F(GameManagerTest, aClickOnAnOwnPieceSelectsItWithItsTargetsInGenerationOrder) {
    startGame(GameMode::humanVsHuman);
    forget();
    click("g1");
    EXPECT_EQ(manager.selectedSquare(), sq("g1"));
    std::vector<Square> targets;
    for (const Move& legal : manager.board().legalMoves(sq("g1"))) {
        targets.push_back(legal.to);
    }
    EXPECT_EQ(names(manager.legalDestinationSquares()), names(targets));
    EXPECT_EQ(targets.size(), 2U);
    EXPECT_EQ(changes, 1);
}

TEST_F(GameManagerTest, aPieceWithoutMovesCanBeSelected) {
    startGame(GameMode::humanVsHuman);
    click("a1");
    EXPECT_EQ(manager.selectedSquare(), sq("a1"));
    EXPECT_TRUE(manager.legalDestinationSquares().empty());
}

TEST_F(GameManagerTest, aPromotingPawnListsItsTargetOnceAPieceType) {
    startGame(GameMode::humanVsHuman);
    manager.loadFEN(QStringLiteral("1r2k3/P7/8/8/8/8/8/4K3 w - - 0 1"));
    click("a7");
    EXPECT_EQ(names(manager.legalDestinationSquares()).count(QStringLiteral("a8")), 4);
    EXPECT_EQ(names(manager.legalDestinationSquares()).count(QStringLiteral("b8")), 4);
}

TEST_F(GameManagerTest, aClickOnTheSelectedSquareDeselectsIt) {
    startGame(GameMode::humanVsHuman);
    click("e2");
    click("e2");
    EXPECT_EQ(manager.selectedSquare(), std::nullopt);
    EXPECT_TRUE(manager.legalDestinationSquares().empty());
}

TEST_F(GameManagerTest, aClickOnAnotherOwnPieceSwitchesTheSelection) {
    startGame(GameMode::humanVsHuman);
    click("e2");
    click("b1");
    EXPECT_EQ(manager.selectedSquare(), sq("b1"));
    EXPECT_THAT(names(manager.legalDestinationSquares()),
                testing::UnorderedElementsAre(QStringLiteral("a3"), QStringLiteral("c3")));
}

TEST_F(GameManagerTest, aClickOnASquareThatThePieceCannotReachClearsTheSelection) {
    startGame(GameMode::humanVsHuman);
    for (const char* target : {"e5", "e7"}) {
        click("e2");
        click(target);
        EXPECT_EQ(manager.selectedSquare(), std::nullopt) << target;
        EXPECT_TRUE(manager.legalDestinationSquares().empty()) << target;
        EXPECT_TRUE(manager.board().history.empty()) << target;
    }
    EXPECT_TRUE(sounds.played.empty());
}

TEST_F(GameManagerTest, aClickOnATargetPlaysTheMoveAndClearsTheSelection) {
    startGame(GameMode::humanVsHuman);
    click("e2");
    forget();
    click("e4");
    EXPECT_EQ(movesOf(manager.board()), "e2e4");
    EXPECT_EQ(manager.lastMove(), mv("e2e4"));
    EXPECT_EQ(manager.selectedSquare(), std::nullopt);
    EXPECT_TRUE(manager.legalDestinationSquares().empty());
    EXPECT_EQ(manager.clock().activeColor(), black);
    EXPECT_EQ(manager.clock().whiteRemainingMs(), 303'000);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(clockChanges, 1);
}

TEST_F(GameManagerTest, aSquareOutsideTheBoardIsIgnored) {
    startGame(GameMode::humanVsHuman);
    click("e2");
    for (const Square outside : {Square{8, 0}, Square{0, 8}, Square{-1, 3}, Square{3, -1}}) {
        manager.handleSquareClick(outside);
    }
    EXPECT_EQ(manager.selectedSquare(), sq("e2"));
}

TEST_F(GameManagerTest, clicksAreIgnoredWheneverItIsNotAPersonsTurnToMove) {
    struct Row {
        const char* name;
        std::function<void()> arrange;
    };
    const Row rows[] = {
        {"game over", [&] { manager.resign(white); }},
        {"paused", [&] { manager.togglePause(); }},
        {"inspecting the past",
         [&] {
             play({"e2e4", "e7e5"}), manager.inspectMove(0);
         }},
        {"engines play", [&] { startGame(GameMode::engineVsEngine); }},
        {"the engine's turn", [&] { startGame(GameMode::humanVsEngine, PlayerColorChoice::black); }},
    };
    for (const Row& row : rows) {
        startGame(GameMode::humanVsHuman);
        row.arrange();
        forget();
        click("d2");
        click("g1");
        EXPECT_EQ(manager.selectedSquare(), std::nullopt) << row.name;
        EXPECT_EQ(changes, 0) << row.name;
    }
}

TEST_F(GameManagerTest, aSelectionSurvivesClicksWhileTheGameIsPaused) {
    startGame(GameMode::humanVsHuman);
    click("e2");
    manager.togglePause();
    click("e4");
    EXPECT_EQ(manager.selectedSquare(), sq("e2"));
    manager.togglePause();
    click("e4");
    EXPECT_EQ(manager.lastMove(), mv("e2e4"));
}

TEST_F(GameManagerTest, clicksWorkWhileTheLastMoveIsInspected) {
    startGame(GameMode::humanVsHuman);
    play({"e2e4"});
    manager.inspectMove(0);
    EXPECT_FALSE(manager.isInspectingPast());
    play({"e7e5"});
    EXPECT_EQ(manager.inspectingMoveIndex(), std::nullopt);
}

// Promotion

class PromotionTest : public GameTest {
  protected:
    void SetUp() override {
        startGame(GameMode::humanVsHuman);
        manager.loadFEN(QStringLiteral("1r2k3/P7/8/8/8/8/7P/4K3 w - - 0 1"));
        click("a7");
        forget();
    }
};

TEST_F(PromotionTest, aPawnReachingTheLastRankWaitsForThePiece) {
    click("a8");
    EXPECT_EQ(manager.pendingPromotion(), (GameManager::PendingPromotion{sq("a7"), sq("a8")}));
    EXPECT_EQ(manager.selectedSquare(), sq("a7"));
    EXPECT_FALSE(manager.legalDestinationSquares().empty());
    EXPECT_TRUE(manager.board().history.empty());
    EXPECT_EQ(changes, 1);
    EXPECT_TRUE(sounds.played.empty());
}

TEST_F(PromotionTest, theConfirmedPieceStandsOnTheLastRank) {
    struct Row {
        PieceType type;
        const char* move;
    };
    const Row rows[] = {{PieceType::queen, "a7b8q"},
                        {PieceType::rook, "a7b8r"},
                        {PieceType::bishop, "a7b8b"},
                        {PieceType::knight, "a7b8n"}};
    for (const Row& row : rows) {
        SetUp();
        click("b8");
        forget();
        manager.confirmPromotion(row.type);
        EXPECT_EQ(manager.lastMove(), mv(row.move));
        EXPECT_EQ(manager.board()[sq("b8")]->type, row.type);
        EXPECT_EQ(manager.pendingPromotion(), std::nullopt);
        EXPECT_EQ(manager.selectedSquare(), std::nullopt);
        EXPECT_TRUE(manager.legalDestinationSquares().empty());
        EXPECT_EQ(manager.clock().activeColor(), black);
        EXPECT_EQ(changes, 1);
    }
}

TEST_F(PromotionTest, aPieceThatAPawnCannotBecomePlaysNothingAndClearsTheQuestion) {
    for (const PieceType type : {PieceType::king, PieceType::pawn}) {
        SetUp();
        click("a8");
        forget();
        manager.confirmPromotion(type);
        EXPECT_TRUE(manager.board().history.empty());
        EXPECT_EQ(manager.lastMove(), std::nullopt);
        EXPECT_EQ(manager.pendingPromotion(), std::nullopt);
        EXPECT_EQ(manager.selectedSquare(), std::nullopt);
        EXPECT_TRUE(sounds.played.empty());
    }
}

TEST_F(PromotionTest, cancellingLeavesThePawnAndClearsTheSelection) {
    click("a8");
    manager.cancelPromotion();
    EXPECT_EQ(manager.pendingPromotion(), std::nullopt);
    EXPECT_EQ(manager.selectedSquare(), std::nullopt);
    EXPECT_TRUE(manager.legalDestinationSquares().empty());
    EXPECT_EQ(manager.board()[sq("a7")]->type, PieceType::pawn);
    EXPECT_TRUE(manager.board().history.empty());
    EXPECT_TRUE(sounds.played.empty());
}

TEST_F(PromotionTest, confirmingWithNothingPendingDoesNothing) {
    manager.confirmPromotion(PieceType::queen);
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(manager.selectedSquare(), sq("a7"));
    EXPECT_TRUE(manager.board().history.empty());
}

TEST_F(PromotionTest, aSecondClickOnAnotherTargetAsksForThatOne) {
    click("a8");
    click("b8");
    EXPECT_EQ(manager.pendingPromotion(), (GameManager::PendingPromotion{sq("a7"), sq("b8")}));
}

TEST_F(PromotionTest, theQuestionStaysThroughOtherClicksUntilItIsAnswered) {
    click("a8");
    click("a7");
    EXPECT_EQ(manager.selectedSquare(), std::nullopt);
    EXPECT_EQ(manager.pendingPromotion(), (GameManager::PendingPromotion{sq("a7"), sq("a8")}));
    play({"h2h4", "e8e7"});
    EXPECT_EQ(manager.pendingPromotion(), (GameManager::PendingPromotion{sq("a7"), sq("a8")}));
    manager.confirmPromotion(PieceType::rook);
    EXPECT_EQ(manager.lastMove(), mv("a7a8r"));
    EXPECT_EQ(manager.pendingPromotion(), std::nullopt);
}

TEST_F(PromotionTest, anAnswerThatComesTooLateForItsPawnPlaysNothing) {
    click("a8");
    play({"h2h4"});
    forget();
    manager.confirmPromotion(PieceType::queen);
    EXPECT_EQ(manager.lastMove(), mv("h2h4"));
    EXPECT_EQ(manager.pendingPromotion(), std::nullopt);
    EXPECT_TRUE(sounds.played.empty());
    EXPECT_EQ(manager.clock().activeColor(), black);
}

TEST_F(PromotionTest, anAnswerIsPlayedWhilePausedAndWhileThePastIsShown) {
    click("a8");
    manager.togglePause();
    manager.inspectMove(-1);
    manager.confirmPromotion(PieceType::queen);
    EXPECT_EQ(manager.lastMove(), mv("a7a8q"));
    EXPECT_EQ(manager.inspectingMoveIndex(), std::nullopt);
    EXPECT_TRUE(manager.isPaused());
    EXPECT_FALSE(manager.clock().isRunning());
    EXPECT_EQ(manager.clock().activeColor(), black);
}

TEST_F(PromotionTest, anAnswerAfterTheEndIsPlayedButStartsNobodysClock) {
    click("a8");
    manager.resign(white);
    forget();
    listener.ends.clear();
    manager.confirmPromotion(PieceType::queen);
    EXPECT_EQ(manager.lastMove(), mv("a7a8q"));
    EXPECT_EQ(manager.clock().activeColor(), std::nullopt);
    EXPECT_EQ(manager.gameEndReason(), GameEndReason::resignation(black));
    EXPECT_THAT(sounds.played, ElementsAre(move));
    EXPECT_TRUE(listener.ends.empty());
}

// Sounds

TEST_F(GameManagerTest, everyKindOfMoveHasItsSound) {
    struct Row {
        const char* name;
        const char* fen;
        const char* move;
        std::vector<SoundEffect> sounds;
    };
    const Row rows[] = {
        {"quiet", "4k3/8/8/8/8/8/4P3/4K3 w - - 0 1", "e2e4", {move}},
        {"capture", "4k3/8/8/3p4/4P3/8/8/4K2R w - - 0 1", "e4d5", {capture}},
        {"en passant", "4k3/8/8/3pP3/8/8/8/4K2R w - d6 0 1", "e5d6", {capture}},
        {"check", "4k3/8/8/8/8/8/8/R3K2R w - - 0 1", "a1a8", {check}},
        {"capture with check", "n3k3/8/8/8/8/8/8/R3K2R w - - 0 1", "a1a8", {check}},
        {"mate", "6k1/5ppp/8/8/8/8/8/R3K3 w - - 0 1", "a1a8", {check, gameEnd}},
        {"stalemate", "k7/8/1K6/8/8/8/8/2Q5 w - - 0 1", "c1c7", {move, gameEnd}},
        {"insufficient by capture", "4k3/8/8/8/8/8/4p3/4K3 w - - 0 1", "e1e2", {capture, gameEnd}},
    };
    for (const Row& row : rows) {
        startGame(GameMode::humanVsHuman);
        manager.loadFEN(QString::fromLatin1(row.fen));
        forget();
        play({row.move});
        EXPECT_EQ(sounds.played, row.sounds) << row.name;
    }
}

TEST_F(GameManagerTest, undoBrowsingLoadingAndReplayingAreSilent) {
    startGame(GameMode::humanVsHuman);
    play({"e2e4", "e7e5"});
    forget();
    manager.undoMove();
    manager.inspectMove(0);
    manager.flipBoard();
    manager.togglePause();
    manager.togglePause();
    manager.loadFEN(QStringLiteral("4k3/8/8/8/8/8/4P3/4K3 w - - 0 1"));
    manager.replayGame({QStringLiteral("e2e4")}, std::nullopt);
    EXPECT_TRUE(sounds.played.empty());
}

}  // namespace
}  // namespace orlix::test
