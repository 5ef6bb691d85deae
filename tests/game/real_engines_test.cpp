// Games with engines that are real child processes, and without a fake between them and the board.
#include <QFileInfo>

#include "game_fixture.h"
#include "platform/posix/posix_process_launcher.h"
#include "platform/qt/qt_file_tests.h"
#include "platform/qt/qt_time_source.h"
#include "support/event_pump.h"
#include "support/scripted_engine.h"

namespace orlix::test {
namespace {

/// A manager over real processes. `Time` is the real clock, or the fake one where a whole game should not
/// take its 200 ms a move.
template <typename Time>
class Table {
  public:
    explicit Table(const QString& whitePath, const QString& blackPath) {
        const auto chosen = [](const QString& path) {
            EngineConfiguration config = engineNamed(QFileInfo(path).fileName());
            config.executablePath = path;
            return config;
        };
        engines.setSelectedWhiteEngine(chosen(whitePath));
        engines.setSelectedBlackEngine(chosen(blackPath));
    }

    void start(GameMode mode, PlayerColorChoice choice, TimeControlConfig config) {
        manager.setGameMode(mode);
        manager.setColorChoice(choice);
        manager.setTimeControlConfig(config);
        manager.startNewGame();
    }

    bool reaches(std::size_t plies) {
        return pumpUntil([&] { return manager.board().history.size() >= plies || manager.isGameOver(); });
    }

    void play(const char* text) {
        manager.handleSquareClick(mv(text).from);
        manager.handleSquareClick(mv(text).to);
        ASSERT_EQ(manager.lastMove(), mv(text));
    }

    Time time;
    PosixProcessLauncher launcher;
    QtFileTests files;
    FakeDefaultsStore defaults;
    FakeSystemSettings system;
    FakeFileDialogs dialogs;
    EngineManager engines{{defaults, files, system, launcher, dialogs}};
    FakeGameSounds sounds;
    GameManager manager{time, engines, sounds, [this](const EngineConfiguration& config) {
                            return std::make_unique<UCIEngineProcess>(config, launcher, files);
                        }};
};

TimeControlConfig withMode(EngineThinkingMode mode, TimeControlPreset preset = TimeControlPreset::unlimited) {
    TimeControlConfig config;
    config.preset = preset;
    config.engineThinkingMode = mode;
    return config;
}

TEST(RealEngines, aScriptedEngineMatesThePerson) {
    const ScriptedEngine script({QStringLiteral("--moves=e7e5,d8h4")});
    Table<QtTimeSource> table(script.path(), script.path());
    table.start(GameMode::humanVsEngine, PlayerColorChoice::white, withMode(FixedDepth{3}));
    table.play("f2f3");
    ASSERT_TRUE(table.reaches(2));
    table.play("g2g4");
    ASSERT_TRUE(table.reaches(4));
    EXPECT_EQ(table.manager.gameEndReason(), GameEndReason::checkmate(black));
    EXPECT_EQ(movesOf(table.manager.board()), "f2f3 e7e5 g2g4 d8h4");
    QStringList asked = script.receivedLines().filter(QStringLiteral("position"));
    EXPECT_EQ(asked, (QStringList{QStringLiteral("position startpos moves f2f3"),
                                  QStringLiteral("position startpos moves f2f3 e7e5 g2g4")}));
}

TEST(RealEngines, anEngineThatNeverAnswersLosesOnTime) {
    const ScriptedEngine script({QStringLiteral("--silent")});
    Table<FakeTimeSource> table(script.path(), script.path());
    table.start(GameMode::humanVsEngine, PlayerColorChoice::black,
                withMode(GameClock{}, TimeControlPreset::bullet1_0));
    table.time.advance(60'000ms);
    EXPECT_EQ(table.manager.gameEndReason(), GameEndReason::timeout(black));
}

class Stockfish : public testing::Test {
  protected:
    void SetUp() override {
#if defined(__linux__)
        ASSERT_TRUE(QFileInfo(path).isExecutable()) << "scripts/test installs it";
#else
        // A Mac has the engines that its user wants.
        if (!QFileInfo(path).isExecutable()) GTEST_SKIP() << "no engine at " << path.toStdString();
#endif
    }
#if defined(__linux__)
    const QString path = QStringLiteral("/usr/games/stockfish");
#else
    const QString path = QStringLiteral("/opt/homebrew/bin/stockfish");
#endif
};

TEST_F(Stockfish, answersAPersonOnTheGameClock) {
    Table<QtTimeSource> table(path, path);
    table.start(GameMode::humanVsEngine, PlayerColorChoice::black,
                withMode(GameClock{}, TimeControlPreset::bullet1_0));
    ASSERT_TRUE(table.reaches(1));
    EXPECT_EQ(table.manager.board().turn, black);
    EXPECT_TRUE(table.manager.liveEvaluation().scoreCp.has_value());
    EXPECT_EQ(table.manager.liveEvaluationTurn(), white);
    EXPECT_LT(table.manager.clock().whiteRemainingMs(), 60'000);
    EXPECT_EQ(table.manager.engineStatusText(), QLatin1String("Ready"));
}

TEST_F(Stockfish, dropsTheAnswerToAPauseAndIsAskedAgain) {
    Table<QtTimeSource> table(path, path);
    table.start(GameMode::humanVsEngine, PlayerColorChoice::black, withMode(FixedMoveTime{2000}));
    ASSERT_TRUE(pumpUntil([&] { return table.manager.liveEvaluation().depth > 4; }));
    table.manager.togglePause();
    ASSERT_TRUE(pumpUntil([&] { return !table.manager.whiteEngineProcess()->isThinking(); }));
    EXPECT_TRUE(table.manager.board().history.empty());
    table.manager.setTimeControlConfig(withMode(FixedDepth{1}));
    table.manager.togglePause();
    ASSERT_TRUE(table.reaches(1));
    EXPECT_EQ(table.manager.board().history.size(), 1U);
}

TEST_F(Stockfish, playsAWholeGameAgainstItselfByTheRules) {
    Table<FakeTimeSource> table(path, path);
    table.manager.setWhiteEngineLimit(false, 2850);
    table.manager.setBlackEngineLimit(true, 1350);
    int changes = 0;
    QObject::connect(&table.manager, &GameManager::changed, &table.manager, [&] { ++changes; });
    table.start(GameMode::engineVsEngine, PlayerColorChoice::white, withMode(FixedDepth{5}));
    QTimer beat;
    QObject::connect(&beat, &QTimer::timeout, &beat, [&] { table.time.advance(200ms); });
    beat.start(1);
    const bool hasEnded = pumpUntil([&] { return table.manager.isGameOver(); }, 120'000);
    beat.stop();
    ASSERT_TRUE(hasEnded) << movesOf(table.manager.board());
    EXPECT_EQ(table.manager.gameEndReason(), table.manager.board().gameEndReason());
    const std::size_t plies = table.manager.board().history.size();
    EXPECT_GT(plies, 3U);
    // One announcement a move, and those of the settings and the start before them.
    EXPECT_LE(changes, static_cast<int>(plies) + 5);
    EXPECT_GE(changes, static_cast<int>(plies));
    EXPECT_EQ(table.sounds.played.back(), SoundEffect::gameEnd);
}

TEST_F(Stockfish, isGoneWhenAnotherGameReplacesIt) {
    Table<QtTimeSource> table(path, path);
    for (int game = 0; game < 3; ++game) {
        table.start(GameMode::engineVsEngine, PlayerColorChoice::white, withMode(FixedDepth{1}));
        ASSERT_TRUE(table.reaches(1));
    }
    table.start(GameMode::humanVsHuman, PlayerColorChoice::white, {});
    EXPECT_TRUE(pumpUntil([&] { return table.launcher.childCount() == 0; }));
}

}  // namespace
}  // namespace orlix::test
