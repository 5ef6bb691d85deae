#include "engine/uci_engine_process.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QSignalSpy>
#include <QTest>
#include <optional>
#include <vector>

#include "support/event_pump.h"
#include "support/fake_file_tests.h"
#include "support/fake_process_launcher.h"

namespace orlix {
namespace {

const QString enginePath = QStringLiteral("/engines/good one");
const QString standardFen = QStringLiteral("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1");

QStringList texts(std::initializer_list<const char*> lines) {
    QStringList list;
    for (const char* line : lines)
        list.append(QString::fromUtf8(line));
    return list;
}

class UCIEngineProcessTest : public ::testing::Test {
  protected:
    UCIEngineProcessTest() {
        files_.executables.insert(enginePath);
        config_.executablePath = enginePath;
        config_.threads = 1;
        config_.hashMB = 0;
    }

    UCIEngineProcess& make() {
        return *(engine_ = std::make_unique<UCIEngineProcess>(config_, launcher_, files_));
    }

    UCIEngineProcess& makeStarted() {
        make().start([this](bool ready) { ready_ = ready; });
        return *engine_;
    }

    UCIEngineProcess& makeReady() {
        makeStarted();
        hear("uciok\n");
        hear("readyok\n");
        launcher_.last().takeLines();
        return *engine_;
    }

    void hear(const QByteArray& chunk) {
        launcher_.last().say(chunk);
        QCoreApplication::processEvents();
    }

    QStringList sent() { return launcher_.last().takeLines(); }

    FakeProcessLauncher launcher_;
    FakeFileTests files_;
    EngineConfiguration config_;
    std::unique_ptr<UCIEngineProcess> engine_;
    std::optional<bool> ready_;
};

TEST_F(UCIEngineProcessTest, beginsIdleAndSendsNothing) {
    const UCIEngineProcess& engine = make();
    EXPECT_EQ(engine.config(), config_);
    EXPECT_FALSE(engine.isRunning());
    EXPECT_FALSE(engine.isThinking());
    EXPECT_EQ(engine.currentEvaluation(), EngineEvaluation());
    EXPECT_TRUE(engine.logLines().isEmpty());
    EXPECT_TRUE(launcher_.engines.isEmpty());
}

TEST_F(UCIEngineProcessTest, startLaunchesAtOnceAndSendsUci) {
    UCIEngineProcess& engine = make();
    QSignalSpy changed(&engine, &UCIEngineProcess::changed);
    engine.start([this](bool ready) { ready_ = ready; });
    ASSERT_EQ(launcher_.engines.size(), 1);
    EXPECT_EQ(launcher_.last().path, enginePath);
    EXPECT_TRUE(launcher_.last().arguments.isEmpty());
    EXPECT_TRUE(engine.isRunning());
    EXPECT_EQ(changed.size(), 1);
    EXPECT_EQ(launcher_.last().written, "uci\n");
    EXPECT_EQ(engine.logLines(), texts({"Started engine process: /engines/good one", "> uci"}));
    EXPECT_EQ(ready_, std::nullopt);
}

TEST_F(UCIEngineProcessTest, goesThroughTheHandshake) {
    UCIEngineProcess& engine = makeStarted();
    sent();
    hear("id name Good\nid author One\noption name Hash type spin\nuciok\n");
    EXPECT_EQ(sent(), texts({"setoption name UCI_LimitStrength value false", "isready"}));
    EXPECT_EQ(ready_, std::nullopt);
    hear("readyok\n");
    EXPECT_EQ(ready_, true);
    EXPECT_EQ(engine.logLines(),
              texts({"Started engine process: /engines/good one", "> uci", "< id name Good",
                     "< id author One", "< option name Hash type spin", "< uciok",
                     "> setoption name UCI_LimitStrength value false", "> isready", "< readyok"}));
}

TEST_F(UCIEngineProcessTest, sendsEachOptionOnlyUnderItsCondition) {
    const struct {
        const char* name;
        qint64 threads, hashMB, skillLevel;
        bool limitElo;
        qint64 elo;
        QStringList lines;
    } cases[] = {
        {"nothing but the strength", 1, 0, 20, false, 1500,
         texts({"setoption name UCI_LimitStrength value false"})},
        {"the defaults", 2, 64, 20, false, 2000,
         texts({"setoption name Threads value 2", "setoption name Hash value 64",
                "setoption name UCI_LimitStrength value false"})},
        {"everything", 8, 1, 19, true, 1320,
         texts({"setoption name Threads value 8", "setoption name Hash value 1",
                "setoption name Skill Level value 19", "setoption name UCI_LimitStrength value true",
                "setoption name UCI_Elo value 1320"})},
        {"beyond the bounds", -3, -1, 21, true, -7,
         texts({"setoption name UCI_LimitStrength value true", "setoption name UCI_Elo value -7"})},
        {"the lowest skill", 0, 0, -20, false, 0,
         texts({"setoption name Skill Level value -20", "setoption name UCI_LimitStrength value false"})},
    };
    for (const auto& [name, threads, hashMB, skillLevel, limitElo, elo, lines] : cases) {
        config_.threads = threads;
        config_.hashMB = hashMB;
        config_.skillLevel = skillLevel;
        config_.limitElo = limitElo;
        config_.elo = elo;
        makeStarted();
        sent();
        hear("uciok\n");
        EXPECT_EQ(sent(), lines + texts({"isready"})) << name;
    }
}

TEST_F(UCIEngineProcessTest, requestsGoOutBeforeTheEngineIsReadyInTheOrderGiven) {
    UCIEngineProcess& engine = makeStarted();
    engine.sendPosition(std::nullopt, {});
    engine.search({.movetime = 2500}, {});
    hear("uciok\n");
    hear("readyok\n");
    EXPECT_EQ(sent(), texts({"uci", "position startpos", "go movetime 2500",
                             "setoption name UCI_LimitStrength value false", "isready"}));
}

TEST_F(UCIEngineProcessTest, readsALineThatComesInTwoReads) {
    makeStarted();
    sent();
    hear("uci");
    EXPECT_TRUE(sent().isEmpty());
    hear("ok\r\n");
    EXPECT_EQ(sent().size(), 2);
}

TEST_F(UCIEngineProcessTest, onlyTheExactRepliesContinueTheHandshake) {
    UCIEngineProcess& engine = makeStarted();
    sent();
    hear("readyok\nuciok now\n");
    EXPECT_TRUE(sent().isEmpty());
    EXPECT_EQ(ready_, std::nullopt);
    hear("uciok\nuciok\n");
    EXPECT_EQ(sent().size(), 2) << "a second reply has nobody waiting";
    hear("readyok\n");
    EXPECT_EQ(ready_, true);
    ready_.reset();
    hear("readyok\nuciok\n");
    EXPECT_EQ(ready_, std::nullopt);
    EXPECT_TRUE(sent().isEmpty());
    EXPECT_EQ(engine.logLines().last(), QStringLiteral("< uciok"));
}

TEST_F(UCIEngineProcessTest, refusesAFileThatIsMissingOrNotExecutable) {
    for (const char* path : {"/missing", "/plain"}) {
        files_.plainFiles.insert(QStringLiteral("/plain"));
        config_.executablePath = QString::fromLatin1(path);
        ready_.reset();
        const UCIEngineProcess& engine = makeStarted();
        EXPECT_EQ(ready_, false);
        EXPECT_FALSE(engine.isRunning());
        EXPECT_TRUE(launcher_.engines.isEmpty());
        EXPECT_EQ(engine.logLines(),
                  QStringList(QStringLiteral("Error: Executable not found or not executable at: ") +
                              config_.executablePath));
    }
}

TEST_F(UCIEngineProcessTest, reportsALaunchThatFails) {
    launcher_.launchError = QStringLiteral("Exec format error");
    const UCIEngineProcess& engine = makeStarted();
    EXPECT_EQ(ready_, false);
    EXPECT_FALSE(engine.isRunning());
    EXPECT_EQ(engine.logLines(), texts({"Failed to start process: Exec format error"}));
}

TEST_F(UCIEngineProcessTest, requestsToAnEngineThatFailedToStartAreLogged) {
    launcher_.launchError = QStringLiteral("no");
    UCIEngineProcess& engine = makeStarted();
    engine.sendPosition(std::nullopt, {});
    engine.search({.depth = 3}, {});
    EXPECT_EQ(engine.logLines(),
              texts({"Failed to start process: no", "> position startpos", "> go depth 3"}));
    EXPECT_TRUE(engine.isThinking());
}

TEST_F(UCIEngineProcessTest, theBuiltInEngineRunsWithoutAProcess) {
    config_ = EngineConfiguration::builtInMini();
    UCIEngineProcess& engine = makeStarted();
    EXPECT_EQ(ready_, true);
    EXPECT_TRUE(engine.isRunning());
    EXPECT_TRUE(engine.logLines().isEmpty());
    EXPECT_TRUE(launcher_.engines.isEmpty());
    engine.sendNewGame();
    engine.search({}, {});
    EXPECT_EQ(engine.logLines(), texts({"> ucinewgame", "> isready", "> go movetime 1000"}));
    engine.terminate();
    EXPECT_FALSE(engine.isRunning());
    EXPECT_EQ(engine.logLines().last(), QStringLiteral("> quit"));
}

TEST_F(UCIEngineProcessTest, sendWritesOneLineInOneWriteAndLogsIt) {
    UCIEngineProcess& engine = makeReady();
    const qsizetype before = launcher_.last().written.size();
    engine.send(QStringLiteral("position fen ♞"));
    EXPECT_EQ(launcher_.last().written.mid(before), "position fen \xe2\x99\x9e\n");
    EXPECT_EQ(engine.logLines().last(), QStringLiteral("> position fen ♞"));
}

TEST_F(UCIEngineProcessTest, textThatIsNotUnicodeIsNotSentAndNotLogged) {
    UCIEngineProcess& engine = makeReady();
    const QStringList before = engine.logLines();
    engine.send(QStringLiteral("go ") + QChar(0xd800));
    EXPECT_TRUE(sent().isEmpty());
    EXPECT_EQ(engine.logLines(), before);
}

TEST_F(UCIEngineProcessTest, newGameIsTwoLinesAndNobodyWaits) {
    UCIEngineProcess& engine = makeReady();
    ready_.reset();
    engine.sendNewGame();
    EXPECT_EQ(sent(), texts({"ucinewgame", "isready"}));
    hear("readyok\n");
    EXPECT_EQ(ready_, std::nullopt);
}

TEST_F(UCIEngineProcessTest, strengthChangesTheConfigurationAndTellsTheEngineAtOnce) {
    UCIEngineProcess& engine = makeReady();
    engine.search({}, {});
    sent();
    QSignalSpy changed(&engine, &UCIEngineProcess::changed);
    engine.updateElo(true, 1450);
    EXPECT_EQ(sent(),
              texts({"setoption name UCI_LimitStrength value true", "setoption name UCI_Elo value 1450"}));
    EXPECT_TRUE(engine.config().limitElo);
    EXPECT_EQ(engine.config().elo, 1450);
    EXPECT_EQ(changed.size(), 1);
    engine.updateElo(false, 1600);
    EXPECT_EQ(sent(), texts({"setoption name UCI_LimitStrength value false"}));
    EXPECT_FALSE(engine.config().limitElo);
    EXPECT_EQ(engine.config().elo, 1600);
}

TEST_F(UCIEngineProcessTest, writesThePositionLine) {
    const QString other = QStringLiteral("8/8/8/8/8/8/8/K1k5 w - - 0 1");
    const struct {
        const char* name;
        std::optional<QString> fen;
        QStringList moves;
        QString line;
    } cases[] = {
        {"nothing", std::nullopt, {}, QStringLiteral("position startpos")},
        {"moves", std::nullopt, texts({"e2e4", "e7e5"}), QStringLiteral("position startpos moves e2e4 e7e5")},
        {"the standard position", standardFen, texts({"e2e4", "e7e5"}),
         QStringLiteral("position startpos moves e2e4 e7e5")},
        {"another position", other, {}, QStringLiteral("position fen ") + other},
        {"another position and moves", other, texts({"a1a2"}),
         QStringLiteral("position fen ") + other + QStringLiteral(" moves a1a2")},
        {"the standard position written differently",
         standardFen + u' ',
         {},
         QStringLiteral("position fen ") + standardFen + u' '},
        {"an empty text", QString(QLatin1String("")), {}, QStringLiteral("position fen ")},
    };
    UCIEngineProcess& engine = makeReady();
    for (const auto& [name, fen, moves, line] : cases) {
        engine.sendPosition(fen, moves);
        EXPECT_EQ(sent(), QStringList(line)) << name;
    }
}

TEST_F(UCIEngineProcessTest, writesTheGoLineByTheFirstRuleThatApplies) {
    const struct {
        UCIEngineProcess::SearchLimits limits;
        const char* line;
    } cases[] = {
        {{.movetime = 2500}, "go movetime 2500"},
        {{.wtime = 1, .btime = 2, .winc = 3, .binc = 4, .movetime = 5, .depth = 6}, "go movetime 5"},
        {{.depth = 12}, "go depth 12"},
        {{.wtime = 1, .btime = 2, .winc = 3, .binc = 4, .depth = 6}, "go depth 6"},
        {{.wtime = 300000, .btime = 299000, .winc = 2000, .binc = 2000},
         "go wtime 300000 btime 299000 winc 2000 binc 2000"},
        {{.wtime = 0, .btime = 0, .winc = 0, .binc = 0}, "go wtime 0 btime 0 winc 0 binc 0"},
        {{.wtime = 60000}, "go wtime 60000"},
        {{.btime = 60000}, "go btime 60000"},
        {{.btime = 60000, .winc = 1}, "go btime 60000 winc 1"},
        {{.winc = 2000, .binc = 2000}, "go winc 2000 binc 2000 movetime 1000"},
        {{.binc = 2000}, "go binc 2000 movetime 1000"},
        {{}, "go movetime 1000"},
        {{.wtime = -5}, "go wtime -5"},
    };
    UCIEngineProcess& engine = makeReady();
    for (const auto& [limits, line] : cases) {
        engine.search(limits, {});
        EXPECT_EQ(sent(), texts({line}));
    }
}

TEST_F(UCIEngineProcessTest, searchesUntilTheBestMove) {
    UCIEngineProcess& engine = makeReady();
    QSignalSpy changed(&engine, &UCIEngineProcess::changed);
    QStringList moves;
    engine.search({}, [&](const QString& move) {
        EXPECT_FALSE(engine.isThinking());
        moves.append(move);
    });
    EXPECT_TRUE(engine.isThinking());
    EXPECT_EQ(changed.size(), 1);
    hear("bestmove\n");
    EXPECT_TRUE(engine.isThinking());
    hear("bestmove e2e4 ponder e7e5\n");
    EXPECT_FALSE(engine.isThinking());
    EXPECT_EQ(changed.size(), 2);
    hear("bestmove (none)\nbestmove 0000\n");
    EXPECT_EQ(moves, texts({"e2e4", "(none)", "0000"})) << "the handler stays after its call";
    EXPECT_EQ(changed.size(), 2);
    engine.stop();
    EXPECT_EQ(sent().last(), QStringLiteral("stop"));
}

TEST_F(UCIEngineProcessTest, theNextSearchReplacesTheHandler) {
    UCIEngineProcess& engine = makeReady();
    QStringList heard;
    engine.search({}, [&](const QString& move) {
        heard.append(u'1' + move);
        engine.search({}, [&](const QString& next) { heard.append(u'2' + next); });
    });
    hear("bestmove a2a3\nbestmove b2b3\n");
    EXPECT_EQ(heard, texts({"1a2a3", "2b2b3"}));
    EXPECT_FALSE(engine.isThinking());
    engine.search({}, {});
    hear("bestmove c2c3\n");
    EXPECT_FALSE(engine.isThinking());
    EXPECT_EQ(heard.size(), 2);
}

TEST_F(UCIEngineProcessTest, everyInfoLineIsAnUpdateEvenOneThatChangesNothing) {
    UCIEngineProcess& engine = makeReady();
    std::vector<EngineEvaluation> updates;
    engine.setOnEvaluationUpdate([&](const EngineEvaluation& evaluation) {
        EXPECT_EQ(evaluation, engine.currentEvaluation());
        updates.push_back(evaluation);
    });
    QSignalSpy evaluationChanged(&engine, &UCIEngineProcess::evaluationChanged);
    QSignalSpy logChanged(&engine, &UCIEngineProcess::logChanged);
    hear("info depth 1 score cp 20\ninfo string nothing\ninfo\ninfo nodes 5000\n");
    ASSERT_EQ(updates.size(), 3u);
    EXPECT_EQ(updates[0].depth, 1);
    EXPECT_EQ(updates[1], updates[0]);
    EXPECT_EQ(updates[2].nodes, 5000);
    EXPECT_EQ(updates[2].scoreCp, 20);
    EXPECT_EQ(evaluationChanged.size(), 1) << "one repaint a batch";
    EXPECT_EQ(logChanged.size(), 1);
}

TEST_F(UCIEngineProcessTest, theHandlerSeesTheLogAsOfItsLine) {
    UCIEngineProcess& engine = makeReady();
    QStringList lastEntries;
    engine.setOnEvaluationUpdate(
        [&](const EngineEvaluation&) { lastEntries.append(engine.logLines().last()); });
    hear("info depth 1\ninfo depth 2\n");
    EXPECT_EQ(lastEntries, texts({"< info depth 1", "< info depth 2"}));
}

TEST_F(UCIEngineProcessTest, dropsAReadThatIsNotUtf8) {
    UCIEngineProcess& engine = makeReady();
    const QStringList before = engine.logLines();
    hear("info depth 3 \xff\nbestmove e2e4\n");
    EXPECT_EQ(engine.logLines(), before);
    EXPECT_EQ(engine.currentEvaluation(), EngineEvaluation());
}

TEST_F(UCIEngineProcessTest, terminateSendsQuitAndKeepsLogAndEvaluation) {
    UCIEngineProcess& engine = makeReady();
    engine.search({}, {});
    hear("info depth 4\n");
    sent();
    QSignalSpy changed(&engine, &UCIEngineProcess::changed);
    engine.terminate();
    EXPECT_EQ(sent(), texts({"quit"}));
    EXPECT_TRUE(launcher_.last().isTerminated);
    EXPECT_FALSE(engine.isRunning());
    EXPECT_FALSE(engine.isThinking());
    EXPECT_EQ(changed.size(), 1);
    EXPECT_EQ(engine.currentEvaluation().depth, 4);
    EXPECT_EQ(engine.logLines().last(), QStringLiteral("> quit"));
    const QStringList log = engine.logLines();
    engine.terminate();
    EXPECT_EQ(engine.logLines(), log) << "a second time there is nothing to do";
    EXPECT_EQ(changed.size(), 1);
}

TEST_F(UCIEngineProcessTest, terminateDoesNothingUnlessRunning) {
    UCIEngineProcess& engine = make();
    QSignalSpy changed(&engine, &UCIEngineProcess::changed);
    engine.terminate();
    EXPECT_TRUE(engine.logLines().isEmpty());
    EXPECT_EQ(changed.size(), 0);
}

TEST_F(UCIEngineProcessTest, dropsWhatIsUnderWayWhenItIsTerminated) {
    UCIEngineProcess& engine = makeReady();
    QStringList heard;
    engine.search({}, [&](const QString& move) { heard.append(move); });
    launcher_.last().say("info depth 8\nbestmove e2e4\n");
    engine.terminate();
    const QStringList log = engine.logLines();
    hear("bestmove d2d4\n");
    QTest::qWait(5);
    EXPECT_TRUE(heard.isEmpty());
    EXPECT_EQ(engine.logLines(), log);
    EXPECT_EQ(engine.currentEvaluation().depth, 0);
}

TEST_F(UCIEngineProcessTest, aCompletionIsNotCalledAfterTerminate) {
    UCIEngineProcess& engine = makeStarted();
    hear("uciok\n");
    launcher_.last().say("readyok\n");
    engine.terminate();
    QCoreApplication::processEvents();
    EXPECT_EQ(ready_, std::nullopt);
}

TEST_F(UCIEngineProcessTest, destroyingItTerminatesTheEngine) {
    makeReady();
    launcher_.last().say("info depth 8\nbestmove e2e4\n");
    engine_.reset();
    EXPECT_TRUE(launcher_.last().isTerminated);
    EXPECT_EQ(sent(), texts({"quit"}));
    hear("bestmove e2e4\n");
}

TEST_F(UCIEngineProcessTest, aHandlerMayTerminateOrDestroyIt) {
    makeReady().search({}, [this](const QString&) { engine_->terminate(); });
    hear("bestmove e2e4\nbestmove d2d4\ninfo depth 1\n");
    EXPECT_FALSE(engine_->isRunning());
    EXPECT_EQ(engine_->logLines().last(), QStringLiteral("> quit"));
    EXPECT_EQ(engine_->currentEvaluation().depth, 0);

    makeReady().search({}, [this](const QString&) { engine_.reset(); });
    hear("bestmove e2e4\nbestmove d2d4\ninfo depth 1\n");
    EXPECT_EQ(engine_, nullptr);
    EXPECT_TRUE(launcher_.last().isTerminated);

    makeReady().setOnEvaluationUpdate([this](const EngineEvaluation&) { engine_.reset(); });
    hear("info depth 1\ninfo depth 2\n");
    EXPECT_EQ(engine_, nullptr);

    make().start([this](bool) { engine_.reset(); });
    hear("uciok\n");
    hear("readyok\ninfo depth 1\n");
    EXPECT_EQ(engine_, nullptr);
}

TEST_F(UCIEngineProcessTest, aHandlerMayRunAnEventLoopOfItsOwn) {
    UCIEngineProcess& engine = makeReady();
    std::vector<qint64> depths;
    engine.setOnEvaluationUpdate([&](const EngineEvaluation& evaluation) {
        depths.push_back(evaluation.depth);
        if (evaluation.depth == 1) {
            launcher_.last().say("info depth 3\n");
            QTest::qWait(5);
        }
    });
    hear("info depth 1\ninfo depth 2\n");
    QTest::qWait(5);
    EXPECT_EQ(depths, (std::vector<qint64>{1, 2, 3}));
    hear("info depth 4\n");
    EXPECT_EQ(depths.size(), 4u);
}

TEST_F(UCIEngineProcessTest, aHandlersOwnEventLoopDoesNotUseUpTheTurnForGood) {
    UCIEngineProcess& engine = makeReady();
    qint64 updates = 0;
    engine.setOnEvaluationUpdate([&](const EngineEvaluation&) {
        if (++updates > 1) return;
        QTest::qWait(20);  // as long as several turns
        // Together with the present line just as many as end the turn, and none left over.
        for (int i = 0; i < 31; ++i)
            launcher_.last().say("info nodes 1\n");
    });
    QTest::qWait(20);  // the turn of the handshake is over
    hear("info depth 1\n");
    EXPECT_EQ(updates, 32);
    hear("info depth 2\n");
    EXPECT_TRUE(pumpUntil([&] { return updates == 33; }));
}

TEST_F(UCIEngineProcessTest, startingAgainLetsGoOfTheFirstProcess) {
    UCIEngineProcess& engine = makeReady();
    const std::shared_ptr<FakeEngine> first = launcher_.engines.first();
    engine.start();
    EXPECT_TRUE(first->isTerminated);
    EXPECT_EQ(launcher_.engines.size(), 2);
    const QStringList log = engine.logLines();
    first->say("bestmove e2e4\n");
    QCoreApplication::processEvents();
    EXPECT_EQ(engine.logLines(), log);
    EXPECT_TRUE(engine.isRunning());
}

TEST_F(UCIEngineProcessTest, aLongOutputLeavesTheEventLoopItsTurns) {
    UCIEngineProcess& engine = makeReady();
    qint64 updates = 0;
    engine.setOnEvaluationUpdate([&](const EngineEvaluation& evaluation) {
        EXPECT_EQ(evaluation.nodes, ++updates);
        QElapsedTimer busy;
        busy.start();
        while (busy.nsecsElapsed() < 100'000) {
        }
    });
    QByteArray chunk;
    for (int i = 1; i <= 1000; ++i)
        chunk += "info nodes " + QByteArray::number(i) + '\n';
    QElapsedTimer turn;
    turn.start();
    hear(chunk);
    EXPECT_GT(updates, 0);
    EXPECT_LT(updates, 1000) << "100 ms of work in one turn";
    EXPECT_TRUE(pumpUntil([&] { return updates == 1000; }));
    EXPECT_EQ(engine.logLines().last(), QStringLiteral("< info nodes 1000"));
}

}  // namespace
}  // namespace orlix
