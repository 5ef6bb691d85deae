// Positions from a FEN, browsing the past, replays and records.
#include <QRegularExpression>

#include "game_fixture.h"
#include "records/pgn_game.h"

namespace orlix::test {
namespace {

using GameRecordsTest = GameTest;

TimeControlConfig customTimes(qint64 minutes, qint64 increment) {
    return {TimeControlPreset::custom, minutes, increment, GameClock{}};
}

// Positions

TEST_F(GameRecordsTest, aLoadedPositionReplacesTheGame) {
    selectEngines();
    startGame(GameMode::humanVsEngine);
    play({"e2e4"});
    say(engine(0), "info depth 5 score cp 12");
    say(engine(0), "bestmove e7e5");
    click("g1");
    manager.inspectMove(0);
    manager.resign(white);
    forget();
    const QString fen = QStringLiteral("4k3/8/8/8/8/8/4P3/4K3 b - - 5 40");
    manager.loadFEN(fen);
    EXPECT_EQ(manager.exportFEN(), fen);
    EXPECT_TRUE(manager.board().history.empty());
    EXPECT_EQ(manager.inspectingMoveIndex(), std::nullopt);
    EXPECT_EQ(manager.lastMove(), std::nullopt);
    EXPECT_EQ(manager.selectedSquare(), std::nullopt);
    EXPECT_TRUE(manager.legalDestinationSquares().empty());
    EXPECT_FALSE(manager.isGameOver());
    EXPECT_EQ(manager.gameEndReason(), std::nullopt);
    EXPECT_EQ(manager.liveEvaluation(), EngineEvaluation());
    EXPECT_EQ(manager.clock().whiteRemainingMs(), 300'000);
    EXPECT_EQ(manager.clock().blackRemainingMs(), 300'000);
    EXPECT_EQ(manager.clock().activeColor(), black);
    EXPECT_TRUE(manager.clock().isRunning());
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(clockChanges, 1);
    EXPECT_EQ(evaluationChanges, 1);
    EXPECT_EQ(engineChanges, 0);
    EXPECT_EQ(launcher.engines.size(), 1);
    EXPECT_EQ(manager.gameMode(), GameMode::humanVsEngine);
}

TEST_F(GameRecordsTest, aLoadedPositionTakesTheNewTimes) {
    startGame(GameMode::humanVsHuman);
    manager.setTimeControlConfig(customTimes(2, 1));
    manager.loadFEN(QStringLiteral("4k3/8/8/8/8/8/4P3/4K3 w - - 0 1"));
    EXPECT_EQ(manager.clock().whiteRemainingMs(), 120'000);
    EXPECT_EQ(manager.clock().incrementMs(), 1'000);
}

TEST_F(GameRecordsTest, aLoadedPositionKeepsPausePromotionAndOrientation) {
    startGame(GameMode::humanVsHuman);
    manager.flipBoard();
    manager.loadFEN(QStringLiteral("4k3/P7/8/8/8/8/8/4K3 w - - 0 1"));
    click("a7");
    click("a8");
    manager.togglePause();
    manager.loadFEN(QStringLiteral("4k3/P7/8/8/8/8/7P/4K3 w - - 0 1"));
    EXPECT_TRUE(manager.isPaused());
    EXPECT_TRUE(manager.isFlipped());
    EXPECT_EQ(manager.pendingPromotion(), (GameManager::PendingPromotion{sq("a7"), sq("a8")}));
    EXPECT_TRUE(manager.clock().isRunning());
}

TEST_F(GameRecordsTest, anInvalidFenIsReportedAndLeavesTheGameAsItWas) {
    startGame(GameMode::humanVsHuman);
    play({"e2e4"});
    click("e7");
    time.advance(100ms);
    forget();
    const ChessBoard before = manager.board();
    for (const char* text : {"", "not a fen", "8/8/8 w - - 0 1"}) {
        EXPECT_THROW(manager.loadFEN(QString::fromLatin1(text)), FenError) << text;
        EXPECT_EQ(manager.board(), before);
        EXPECT_EQ(manager.selectedSquare(), sq("e7"));
        EXPECT_EQ(manager.lastMove(), mv("e2e4"));
        EXPECT_EQ(manager.clock().blackRemainingMs(), 299'900);
        EXPECT_EQ(changes, 0);
        EXPECT_EQ(clockChanges, 0);
    }
}

TEST_F(GameRecordsTest, aFinishedLoadedPositionEndsOnlyWithTheNextMove) {
    startGame(GameMode::humanVsHuman);
    manager.loadFEN(QStringLiteral("R5k1/5ppp/8/8/8/8/8/4K3 b - - 0 1"));
    EXPECT_FALSE(manager.isGameOver());
}

TEST_F(GameRecordsTest, everyPositionThatLoadsCanBePlayedShownAndWritten) {
    const char* const fens[] = {
        "8/8/8/8/8/8/8/8 w - - 0 1",
        "8/8/8/8/8/8/4P3/8 w - - -7 -3",
        "PPPPPPPP/pppppppp/8/8/8/8/PPPPPPPP/pppppppp b KQkq a1 0 0",
        "KKKKKKKK/8/8/8/8/8/8/kkkkkkkk w KQkq e4 99 1",
        "8/P6P/8/8/8/8/p6p/8 b - - 9223372036854775807 9223372036854775807",
        "4K3/4P3/8/8/8/8/4p3/4k3 w KQkq d8 0 1",
        "QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/qqqqqqqq/qqqqqqqq w - - 0 1",
    };
    for (const char* fen : fens) {
        SCOPED_TRACE(fen);
        startGame(GameMode::humanVsHuman);
        manager.loadFEN(QString::fromLatin1(fen));
        ASSERT_EQ(manager.exportFEN(), QLatin1String(fen));
        for (const Move& legal : manager.board().generateLegalMoves()) {
            // Whatever the move ended is forgotten again.
            manager.loadFEN(QString::fromLatin1(fen));
            click(legal.from.algebraic().c_str());
            click(legal.to.algebraic().c_str());
            if (manager.pendingPromotion())
                manager.confirmPromotion(legal.promotion.value_or(PieceType::queen));
            ASSERT_EQ(manager.board().history.size(), 1U) << legal.uciString();
            EXPECT_EQ(manager.lastMove()->from, legal.from);
            EXPECT_FALSE(manager.exportPGN().isEmpty());
            manager.inspectMove(0);
            EXPECT_LE(manager.displayedBoard().history.size(), 1U);
            EXPECT_EQ(manager.isGameOver(), manager.board().isGameOver());
        }
    }
}

// Browsing

TEST_F(GameRecordsTest, browsingShowsThePositionAfterEachMove) {
    startGame(GameMode::humanVsHuman);
    play({"e2e4", "d7d5", "e4d5"});
    ChessBoard expected;
    for (qint64 index = 0; index < 3; ++index) {
        expected.play(manager.board().history[static_cast<std::size_t>(index)].move);
        manager.inspectMove(index);
        EXPECT_EQ(manager.displayedBoard().fen(), expected.fen()) << index;
        EXPECT_EQ(manager.isInspectingPast(), index != 2) << index;
    }
    manager.inspectMove(std::nullopt);
    EXPECT_EQ(&manager.displayedBoard(), &manager.board());
    EXPECT_FALSE(manager.isInspectingPast());
}

TEST_F(GameRecordsTest, anIndexOutsideTheHistoryShowsTheLiveBoard) {
    startGame(GameMode::humanVsHuman);
    play({"e2e4"});
    for (const qint64 index : {qint64{-1}, qint64{1}, qint64{77}, std::numeric_limits<qint64>::min()}) {
        manager.inspectMove(index);
        EXPECT_EQ(manager.inspectingMoveIndex(), index);
        EXPECT_EQ(&manager.displayedBoard(), &manager.board()) << index;
        EXPECT_TRUE(manager.isInspectingPast()) << index;
    }
    manager.startNewGame();
    manager.inspectMove(-1);
    EXPECT_FALSE(manager.isInspectingPast());
    manager.inspectMove(0);
    EXPECT_TRUE(manager.isInspectingPast());
}

TEST_F(GameRecordsTest, aStateThatIsAskedForTwiceIsComputedOnce) {
    startGame(GameMode::humanVsHuman);
    play({"e2e4", "d7d5", "e4d5"});
    manager.inspectMove(1);
    const ChessBoard first = manager.displayedBoard();
    manager.flipBoard();
    time.advance(1000ms);
    manager.inspectMove(std::nullopt);
    manager.inspectMove(1);
    // Computed again, the pieces would have new identities.
    EXPECT_EQ(manager.displayedBoard(), first);
    EXPECT_NE(ChessBoard(), ChessBoard());
}

TEST_F(GameRecordsTest, browsingFollowsUndoNewMovesAndReplays) {
    startGame(GameMode::humanVsHuman);
    play({"e2e4", "e7e5", "g1f3"});
    manager.inspectMove(0);
    EXPECT_TRUE(manager.displayedBoard()[sq("e4")]);
    manager.undoMove();
    manager.undoMove();
    manager.undoMove();
    play({"d2d4", "d7d5"});
    manager.inspectMove(0);
    EXPECT_TRUE(manager.displayedBoard()[sq("d4")]);
    EXPECT_FALSE(manager.displayedBoard()[sq("e4")]);
    manager.replayGame({QStringLiteral("c2c4"), QStringLiteral("c7c5")}, std::nullopt);
    manager.inspectMove(0);
    EXPECT_TRUE(manager.displayedBoard()[sq("c4")]);
}

TEST_F(GameRecordsTest, theHistoryOfALoadedPositionIsShownFromTheStandardStart) {
    startGame(GameMode::humanVsHuman);
    manager.loadFEN(QStringLiteral("4k3/8/8/8/8/8/4P3/4K2R w - - 0 1"));
    play({"e2e4", "e8d8"});
    manager.inspectMove(0);
    ChessBoard expected;
    expected.play(mv("e2e4"));
    EXPECT_EQ(manager.displayedBoard().fen(), expected.fen());
    manager.inspectMove(1);
    // Black's king move is not possible there and is left out.
    EXPECT_EQ(manager.displayedBoard().fen(), expected.fen());
}

TEST_F(GameRecordsTest, browsingAnnouncesOnlyChanges) {
    startGame(GameMode::humanVsHuman);
    play({"e2e4"});
    forget();
    manager.inspectMove(0);
    manager.inspectMove(0);
    manager.inspectMove(std::nullopt);
    EXPECT_EQ(changes, 2);
}

// Replays

TEST_F(GameRecordsTest, aReplayShowsTheFinishedGame) {
    startGame(GameMode::humanVsHuman);
    play({"d2d4"});
    click("d7");
    manager.inspectMove(0);
    forget();
    manager.replayGame({QStringLiteral("e2e4"), QStringLiteral("e7e5")}, QStringLiteral("any reason"));
    EXPECT_EQ(movesOf(manager.board()), "e2e4 e7e5");
    EXPECT_EQ(manager.lastMove(), mv("e7e5"));
    EXPECT_EQ(manager.inspectingMoveIndex(), std::nullopt);
    EXPECT_TRUE(manager.isGameOver());
    EXPECT_EQ(manager.gameEndReason(), std::nullopt);
    EXPECT_EQ(manager.selectedSquare(), std::nullopt);
    EXPECT_TRUE(manager.legalDestinationSquares().empty());
    EXPECT_FALSE(manager.clock().isRunning());
    EXPECT_EQ(manager.clock().activeColor(), std::nullopt);
    EXPECT_EQ(changes, 1);
    EXPECT_TRUE(sounds.played.empty());
    EXPECT_TRUE(listener.ends.empty());
}

TEST_F(GameRecordsTest, aReplayKeepsTheReasonOfTheGameBefore) {
    startGame(GameMode::humanVsHuman);
    manager.resign(white);
    manager.replayGame({QStringLiteral("e2e4")}, QStringLiteral("mate"));
    EXPECT_EQ(manager.gameEndReason(), GameEndReason::resignation(black));
}

TEST_F(GameRecordsTest, aReplayKeepsPausePromotionAndOrientation) {
    startGame(GameMode::humanVsHuman);
    manager.loadFEN(QStringLiteral("4k3/P7/8/8/8/8/8/4K3 w - - 0 1"));
    click("a7");
    click("a8");
    manager.flipBoard();
    manager.togglePause();
    manager.replayGame({QStringLiteral("e2e4")}, std::nullopt);
    EXPECT_TRUE(manager.isPaused());
    EXPECT_TRUE(manager.isFlipped());
    EXPECT_EQ(manager.pendingPromotion(), (GameManager::PendingPromotion{sq("a7"), sq("a8")}));
}

TEST_F(GameRecordsTest, aReplayLeavesTheEnginesAlone) {
    selectEngines();
    startGame(GameMode::humanVsEngine);
    play({"e2e4"});
    settle();
    say(engine(0), "info depth 5 score cp 12");
    engine(0).takeLines();
    manager.replayGame({QStringLiteral("e2e4")}, std::nullopt);
    settle();
    EXPECT_EQ(manager.liveEvaluation().scoreCp, 12);
    EXPECT_TRUE(engine(0).takeLines().isEmpty());
    EXPECT_NE(manager.blackEngineProcess(), nullptr);
    EXPECT_EQ(manager.currentlyThinkingColor(), black);
}

TEST_F(GameRecordsTest, aReplaySkipsWhatItCannotReadOrPlayAndGoesOn) {
    struct Row {
        const char* name;
        QStringList moves;
        const char* played;
    };
    const auto list = [](const char* text) { return QString::fromUtf8(text).split(u'|'); };
    const Row rows[] = {
        {"none", {}, ""},
        {"too short", list("e2e|e2e4"), "e2e4"},
        {"too long", list("e2e4qq|e2e4"), "e2e4"},
        {"empty", list("|  |e2e4"), "e2e4"},
        {"unknown square", list("e2e9|i2i4|e2e4"), "e2e4"},
        {"white space and case", list(" E2E4\r\n|\te7E5 "), "e2e4 e7e5"},
        {"illegal move", list("e2e5|e2e4|e2e4|e7e5"), "e2e4 e7e5"},
        {"a promotion letter where none belongs", list("e2e4q|e2e4"), "e2e4"},
        {"an unknown fifth character counts as none", list("e2e4x|e7e5!|d2d4\xe2\x99\x95"), "e2e4 e7e5 d2d4"},
        {"a fifth character beyond the basic plane", list("e2e4\xf0\x9f\x99\x82"), "e2e4"},
        {"a fifth character of two code points", list("e2e4e\xcc\x81"), "e2e4"},
        {"promotion", list("a2a4|b7b5|a4b5|a7a6|b5a6|c8b7|a6b7|h7h6|B7A8N"),
         "a2a4 b7b5 a4b5 a7a6 b5a6 c8b7 a6b7 h7h6 b7a8n"},
        {"a promotion needs its letter", list("a2a4|b7b5|a4b5|a7a6|b5a6|c8b7|a6b7|h7h6|b7a8"),
         "a2a4 b7b5 a4b5 a7a6 b5a6 c8b7 a6b7 h7h6"},
    };
    for (const Row& row : rows) {
        manager.replayGame(row.moves, std::nullopt);
        EXPECT_EQ(movesOf(manager.board()), row.played) << row.name;
        EXPECT_EQ(manager.lastMove().has_value(), !manager.board().history.empty()) << row.name;
        EXPECT_TRUE(manager.isGameOver());
    }
}

// Records

QString tag(const QString& pgn, const char* name) {
    const QRegularExpression pattern(QStringLiteral("^\\[%1 \"(.*)\"\\]$").arg(QLatin1String(name)),
                                     QRegularExpression::MultilineOption);
    const auto match = pattern.match(pgn);
    return match.hasMatch() ? match.captured(1) : QStringLiteral("(no tag)");
}

TEST_F(GameRecordsTest, theRecordOfARunningGameHasAllItsTags) {
    startGame(GameMode::humanVsHuman);
    play({"e2e4", "e7e5", "g1f3"});
    const QString pgn = manager.exportPGN();
    EXPECT_EQ(tag(pgn, "Event"), QLatin1String("Velmorandix Orlix Match"));
    EXPECT_EQ(tag(pgn, "Site"), QLatin1String("Velmorandix Orlix macOS"));
    EXPECT_EQ(tag(pgn, "Date"), QString::fromStdString(PGNGame::currentDateString()));
    EXPECT_EQ(tag(pgn, "Round"), QLatin1String("1"));
    EXPECT_EQ(tag(pgn, "White"), QLatin1String("White Player"));
    EXPECT_EQ(tag(pgn, "Black"), QLatin1String("Black Player"));
    EXPECT_EQ(tag(pgn, "Result"), QLatin1String("*"));
    EXPECT_EQ(tag(pgn, "TimeControl"), QLatin1String("300+3"));
    EXPECT_EQ(tag(pgn, "FEN"), QLatin1String("(no tag)"));
    EXPECT_TRUE(pgn.endsWith(QLatin1String("\n\n1. e4 e5 2. Nf3\n")));
}

TEST_F(GameRecordsTest, theRecordOfALoadedPositionDoesNotNameIt) {
    startGame(GameMode::humanVsHuman);
    manager.loadFEN(QStringLiteral("4k3/8/8/8/8/8/4P3/4K3 b - - 5 40"));
    EXPECT_EQ(tag(manager.exportPGN(), "FEN"), QLatin1String("(no tag)"));
    EXPECT_EQ(tag(manager.exportPGN(), "SetUp"), QLatin1String("(no tag)"));
}

TEST_F(GameRecordsTest, theResultTagFollowsTheReason) {
    struct Row {
        const char* fen;
        const char* lastMove;
        const char* result;
    };
    const Row rows[] = {
        {"6k1/5ppp/8/8/8/8/8/R3K3 w - - 0 1", "a1a8", "1-0"},
        {"r3k3/8/8/8/8/8/5PPP/6K1 b - - 0 1", "a8a1", "0-1"},
        {"k7/8/1K6/8/8/8/8/2Q5 w - - 0 1", "c1c7", "1/2-1/2"},
        {"4k3/8/8/8/8/8/8/R3K3 w - - 99 80", "a1a2", "1/2-1/2"},
        {"4k3/8/8/8/8/8/4p3/4K3 w - - 0 1", "e1e2", "1/2-1/2"},
    };
    for (const Row& row : rows) {
        startGame(GameMode::humanVsHuman);
        manager.loadFEN(QString::fromLatin1(row.fen));
        EXPECT_EQ(tag(manager.exportPGN(), "Result"), QLatin1String("*"));
        play({row.lastMove});
        EXPECT_EQ(tag(manager.exportPGN(), "Result"), QLatin1String(row.result)) << row.fen;
    }
    for (const PieceColor loser : allPieceColors) {
        const QLatin1String expected(loser == black ? "1-0" : "0-1");
        startGame(GameMode::humanVsHuman);
        manager.resign(loser);
        EXPECT_EQ(tag(manager.exportPGN(), "Result"), expected);
        manager.setTimeControlConfig(customTimes(0, 0));
        startGame(GameMode::humanVsHuman);
        if (loser == black) play({"e2e4"});
        time.advance(50ms);
        EXPECT_EQ(manager.gameEndReason(), GameEndReason::timeout(opponent(loser)));
        EXPECT_EQ(tag(manager.exportPGN(), "Result"), expected);
    }
    manager.setTimeControlConfig({});
    startGame(GameMode::humanVsHuman);
    play({"g1f3", "g8f6", "f3g1", "f6g8", "g1f3", "g8f6", "f3g1", "f6g8"});
    EXPECT_EQ(tag(manager.exportPGN(), "Result"), QLatin1String("1/2-1/2"));
}

TEST_F(GameRecordsTest, theTimeControlTagFollowsTheSettings) {
    for (const TimeControlPreset preset : allTimeControlPresets) {
        TimeControlConfig config;
        config.preset = preset;
        manager.setTimeControlConfig(config);
        EXPECT_EQ(tag(manager.exportPGN(), "TimeControl"), config.pgnString());
    }
    manager.setTimeControlConfig(customTimes(7, 0));
    EXPECT_EQ(tag(manager.exportPGN(), "TimeControl"), QLatin1String("420"));
}

TEST_F(GameRecordsTest, theNameTagsFollowModeColourAndSeats) {
    struct Row {
        GameMode mode;
        PlayerColorChoice choice;
        bool hasEngines;
        const char* white;
        const char* black;
    };
    const Row rows[] = {
        {GameMode::humanVsHuman, PlayerColorChoice::white, true, "White Player", "Black Player"},
        {GameMode::engineVsEngine, PlayerColorChoice::white, true, "Alpha", "Beta"},
        {GameMode::engineVsEngine, PlayerColorChoice::white, false, "White Engine", "Black Engine"},
        {GameMode::humanVsEngine, PlayerColorChoice::white, true, "Player", "Beta"},
        {GameMode::humanVsEngine, PlayerColorChoice::white, false, "Player", "UCI Engine"},
        {GameMode::humanVsEngine, PlayerColorChoice::black, true, "Alpha", "Player"},
        {GameMode::humanVsEngine, PlayerColorChoice::black, false, "UCI Engine", "Player"},
    };
    for (const Row& row : rows) {
        engines.setSelectedWhiteEngine(std::nullopt);
        engines.setSelectedBlackEngine(std::nullopt);
        if (row.hasEngines) selectEngines();
        startGame(row.mode, row.choice);
        EXPECT_EQ(tag(manager.exportPGN(), "White"), QLatin1String(row.white));
        EXPECT_EQ(tag(manager.exportPGN(), "Black"), QLatin1String(row.black));
    }
}

}  // namespace
}  // namespace orlix::test
