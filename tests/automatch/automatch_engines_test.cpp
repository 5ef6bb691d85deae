// Series between engines that are real child processes, on the hand-moved clock: two hundred games with every
// end and every misbehaviour, after which the program holds no more than before.
#include <malloc.h>

#include <QFile>
#include <QTemporaryDir>

#include "automatch/automatch_manager.h"
#include "automatch/short_games.h"
#include "game/game_fixture.h"
#include "platform/posix/posix_process_launcher.h"
#include "platform/qt/qt_file_tests.h"
#include "support/built_programs.h"
#include "support/event_pump.h"
#include "support/process_watch.h"

namespace orlix::test {
namespace {

constexpr int patienceMs = 60'000;  // for what takes milliseconds on a machine that is not busy

/// An engine executable whose flags are chosen anew for every game.
class ChangingEngine {
  public:
    explicit ChangingEngine(const QString& fileName) {
        write(path(fileName), "#!/bin/sh\nread -r flags < '" + path(QStringLiteral("flags")).toUtf8() +
                                  "'\nexec '" + scriptedEngineProgram + "' $flags\n");
        QFile(path(fileName)).setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        config = engineNamed(fileName);
        config.executablePath = path(fileName);
    }

    void setFlags(const QByteArray& flags) const { write(path(QStringLiteral("flags")), flags + '\n'); }

    EngineConfiguration config;

  private:
    QString path(const QString& name) const { return folder_.filePath(name); }
    static void write(const QString& path, const QByteArray& text) {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size()) qFatal("cannot write");
    }

    QTemporaryDir folder_;
};

struct Scenario {
    const char* name;
    QByteArrayList moves;  ///< played before the end, or before nothing more comes
    QByteArray white;      ///< flags beyond the moves
    QByteArray black;
    const char* reason;
};

QByteArray movesOfSide(const QByteArrayList& moves, qsizetype first) {
    QByteArrayList own;
    for (qsizetype i = first; i < moves.size(); i += 2)
        own.append(moves[i]);
    return "--moves=" + own.join(',');
}

std::vector<Scenario> scenarios() {
    const QByteArrayList opening{"e2e4", "e7e5", "g1f3"};
    const char* const whiteOnTime = "Zeitüberschreitung (Weiß gewinnt)";
    const char* const blackOnTime = "Zeitüberschreitung (Schwarz gewinnt)";
    return {
        {"White mates", whiteMates(), "", "", "Schachmatt (Weiß gewinnt)"},
        {"Black mates", blackMates(), "", "", "Schachmatt (Schwarz gewinnt)"},
        {"stalemate", stalemate(), "", "", "Remis (Patt)"},
        {"repetition", threefoldRepetition(), "", "", "Remis (Dreifache Wiederholung)"},
        {"fifty moves", fiftyQuietMoves(), "", "", "Remis (50-Züge-Regel)"},
        {"bare kings", bareKings(), "", "", "Remis (Ungenügend Material)"},
        {"White is silent", {}, "--silent", "", blackOnTime},
        {"Black is silent", {"e2e4"}, "", "--silent", whiteOnTime},
        {"an illegal answer", opening, "", "--moves=e7e5,e2e4", whiteOnTime},
        {"no move", opening, "", "", whiteOnTime},
        {"a crash while thinking", {}, "--crash-at=go", "", blackOnTime},
        {"a crash after a move", {"e2e4", "e7e5"}, "--crash-at=answered", "", blackOnTime},
        {"an end at the start", {}, "--exit-at=start", "", blackOnTime},
        {"a crash in the handshake", {"e2e4"}, "", "--crash-at=uci", whiteOnTime},
        {"an engine that reads no more", {"e2e4"}, "", "--deaf-at=go", whiteOnTime},
        {"an engine that stops itself", {}, "--stop-at=isready", "", blackOnTime},
        {"an engine that does not leave", whiteMates(), "--ignore-quit --ignore-term", "",
         "Schachmatt (Weiß gewinnt)"},
    };
}

class AutomatchEnginesTest : public testing::Test {
  protected:
    void playGame(const Scenario& scenario) {
        SCOPED_TRACE(scenario.name);
        const bool whiteIsOne = automatch.currentWhiteIsEngine1();
        ASSERT_EQ(manager.whiteEngineProcess()->config().name, (whiteIsOne ? one : two).config.name);
        const auto expected = static_cast<std::size_t>(scenario.moves.size());
        const ChessBoard& board = manager.board();
        while (board.history.size() < expected) {
            const std::size_t before = board.history.size();
            time.advance(200ms);
            ASSERT_TRUE(pumpUntil([&] { return board.history.size() > before; }, patienceMs))
                << movesOf(board);
        }
        if (!manager.isGameOver()) loseOnTime();
        ASSERT_TRUE(manager.isGameOver()) << movesOf(board);
        const AutomatchGameRecord& record = automatch.history().last();
        EXPECT_EQ(record.reason, QString::fromUtf8(scenario.reason));
        EXPECT_EQ(record.movesCount, scenario.moves.size());
        EXPECT_EQ(record.winnerEngineName.has_value(), record.result != QLatin1String("1/2-1/2"));
    }

    /// The side to move was asked and will not play.
    void loseOnTime() {
        time.advance(200ms);
        QCoreApplication::processEvents();
        time.advance(300s);
    }

    void chooseFlags(const Scenario& scenario, bool whiteIsOne) {
        const ChangingEngine& white = whiteIsOne ? one : two;
        const ChangingEngine& black = whiteIsOne ? two : one;
        white.setFlags(movesOfSide(scenario.moves, 0) + ' ' + scenario.white);
        black.setFlags(movesOfSide(scenario.moves, 1) + ' ' + scenario.black);
    }

    /// Plays the scenarios in turn until the series has finished, and adds up who won.
    void playSeries(const std::vector<Scenario>& all, qint64 games) {
        qint64 wins = 0;
        qint64 losses = 0;
        chooseFlags(all[0], true);
        automatch.startAutomatch(games, one.config, two.config);
        for (qint64 game = 1; game <= games; ++game) {
            const Scenario& scenario = all[static_cast<std::size_t>(game - 1) % all.size()];
            ASSERT_EQ(automatch.currentGameIndex(), game);
            playGame(scenario);
            if (testing::Test::HasFailure()) return;
            ASSERT_EQ(automatch.history().size(), game);
            const auto& winner = automatch.history().last().winnerEngineName;
            if (winner) ++(*winner == one.config.name ? wins : losses);
            if (game == games) break;
            chooseFlags(all[static_cast<std::size_t>(game) % all.size()], game % 2 == 0);
            time.advance(1600ms);
        }
        EXPECT_FALSE(automatch.isAutomatchActive());
        EXPECT_EQ(automatch.engine1Wins(), wins);
        EXPECT_EQ(automatch.engine2Wins(), losses);
        EXPECT_EQ(automatch.draws(), games - wins - losses);
        sounds.played = {};
    }

    /// What the allocator has handed out; nothing where another allocator stands in its place.
    static std::size_t heapBytes() {
        const struct mallinfo2 info = mallinfo2();
        return info.uordblks + info.hblkhd;
    }

    FakeTimeSource time;
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
    AutomatchManager automatch{time, manager, engines, sounds};
    const ChangingEngine one{QStringLiteral("One")};
    const ChangingEngine two{QStringLiteral("Two")};
};

TEST_F(AutomatchEnginesTest, twoHundredGamesOfEveryKindLeaveNothingBehind) {
    manager.setTimeControlConfig({TimeControlPreset::blitz5_0, 0, 0, GameClock{}});
    const std::vector<Scenario> all = scenarios();
    const auto kinds = static_cast<qint64>(all.size());
    // Whole rounds before and after, so that both end with the same game on the board.
    const qint64 games = (200 / kinds + 1) * kinds;

    struct Holdings {
        qint64 descriptors, threads;
        std::size_t bytes;
    };
    const auto holdings = [&] {
        automatch.clearHistory();
        manager.startNewGame();
        // The engines of earlier games are gone; those of this one have not been started yet.
        EXPECT_TRUE(pumpUntil([&] { return launcher.childCount() == 0; }, patienceMs));
        return Holdings{openDescriptorCount(), threadCount(), heapBytes()};
    };

    playSeries(all, kinds);
    ASSERT_FALSE(HasFailure());
    const Holdings before = holdings();
    playSeries(all, games);
    ASSERT_FALSE(HasFailure());
    const Holdings after = holdings();
    EXPECT_EQ(after.descriptors, before.descriptors);
    EXPECT_EQ(after.threads, before.threads);
    EXPECT_LT(static_cast<double>(after.bytes) - static_cast<double>(before.bytes),
              static_cast<double>(games) * 10 * 1024);
    RecordProperty("heap_growth", static_cast<int>(after.bytes) - static_cast<int>(before.bytes));
}

}  // namespace
}  // namespace orlix::test
