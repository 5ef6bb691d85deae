// Real child processes that misbehave, as seen through the engine process object.
#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QStringList>
#include <vector>

#include "engine/engine_manager.h"
#include "engine/uci_engine_process.h"
#include "platform/posix/posix_process_launcher.h"
#include "platform/qt/qt_file_tests.h"
#include "support/event_pump.h"
#include "support/fake_defaults_store.h"
#include "support/fake_file_dialogs.h"
#include "support/fake_system_settings.h"
#include "support/process_watch.h"
#include "support/scripted_engine.h"

namespace orlix {
namespace {

// When an engine that outlives the signal to end is killed: who waits for that waits longer.
constexpr int killAfterMs = 2000;

QStringList texts(std::initializer_list<const char*> lines) {
    QStringList list;
    for (const char* line : lines)
        list.append(QString::fromUtf8(line));
    return list;
}

class EngineMisbehaviourTest : public ::testing::Test {
  protected:
    // A process object for a scripted engine, started.
    UCIEngineProcess& start(const QStringList& flags = {},
                            ScriptedEngine::Wrapper wrapper = ScriptedEngine::Wrapper::exec) {
        scripted_ = std::make_unique<ScriptedEngine>(flags, wrapper);
        EngineConfiguration config;
        config.executablePath = scripted_->path();
        isReady_ = false;
        moves_.clear();
        engine_ = std::make_unique<UCIEngineProcess>(config, launcher_, files_);
        engine_->start([this](bool ready) { isReady_ = ready; });
        return *engine_;
    }
    void search() {
        engine_->search({}, [this](const QString& move) { moves_.append(move); });
    }
    bool waitForMove() {
        return pumpUntil([this] { return !moves_.isEmpty(); });
    }
    bool waitUntilReady() {
        return pumpUntil([this] { return isReady_; });
    }
    bool waitForLog(const QString& entry) {
        return pumpUntil([&] { return engine_->logLines().contains(entry); });
    }
    bool waitUntilNoChildIsLeft() {
        return pumpUntil([this] { return launcher_.childCount() == 0; });
    }

    QtFileTests files_;
    PosixProcessLauncher launcher_;
    std::unique_ptr<ScriptedEngine> scripted_;
    std::unique_ptr<UCIEngineProcess> engine_;
    bool isReady_ = false;
    QStringList moves_;
};

TEST_F(EngineMisbehaviourTest, aWellBehavedEnginePlaysItsMoves) {
    UCIEngineProcess& engine = start({QStringLiteral("--moves=e7e5,b8c6")});
    engine.sendPosition(std::nullopt, texts({"e2e4"}));
    search();
    ASSERT_TRUE(waitUntilReady());
    ASSERT_TRUE(waitForMove());
    search();
    ASSERT_TRUE(pumpUntil([this] { return moves_.size() == 2; }));
    search();
    ASSERT_TRUE(pumpUntil([this] { return moves_.size() == 3; }));
    EXPECT_EQ(moves_, texts({"e7e5", "b8c6", "(none)"}));
    EXPECT_EQ(scripted_->receivedLines().mid(0, 3),
              texts({"uci", "position startpos moves e2e4", "go movetime 1000"}));
    EXPECT_EQ(scripted_->receivedLines().mid(3, 4),
              texts({"setoption name Threads value 2", "setoption name Hash value 64",
                     "setoption name UCI_LimitStrength value false", "isready"}));
    engine.terminate();
    EXPECT_TRUE(waitUntilNoChildIsLeft());
}

TEST_F(EngineMisbehaviourTest, understandsOtherLineEndsAndSplitReplies) {
    for (const char* flag : {"--crlf", "--split-uciok", "--stderr"}) {
        start({QString::fromLatin1(flag)});
        EXPECT_TRUE(waitUntilReady()) << flag;
        EXPECT_TRUE(engine_->logLines().contains(QStringLiteral("< uciok"))) << flag;
    }
}

TEST_F(EngineMisbehaviourTest, anEngineThatEndsByItselfStaysSeatedAndHarmsNothing) {
    for (const char* how : {"exit", "crash"}) {
        for (const char* stage : {"start", "uci", "isready", "go", "answered"}) {
            const QString flag = QStringLiteral("--%1-at=%2").arg(QLatin1String(how), QLatin1String(stage));
            UCIEngineProcess& engine = start({flag, QStringLiteral("--moves=e2e4")});
            search();
            EXPECT_TRUE(waitUntilNoChildIsLeft()) << flag.toStdString();
            EXPECT_EQ(zombieCount(), 0) << flag.toStdString();
            EXPECT_TRUE(engine.isRunning()) << flag.toStdString();
            for (int i = 0; i < 100; ++i)
                engine.send(QStringLiteral("isready"));
            EXPECT_EQ(engine.logLines().last(), QStringLiteral("> isready"));
            // The search is read before the "isready" that follows the options.
            if (qstrcmp(stage, "answered") == 0 || qstrcmp(stage, "isready") == 0) {
                EXPECT_TRUE(waitForMove()) << flag.toStdString();
                EXPECT_FALSE(engine.isThinking());
            } else {
                EXPECT_TRUE(engine.isThinking()) << flag.toStdString();
            }
            engine.terminate();
            EXPECT_FALSE(engine.isRunning());
        }
    }
}

TEST_F(EngineMisbehaviourTest, aSilentEngineIsNeverReady) {
    UCIEngineProcess& engine = start({QStringLiteral("--silent")});
    search();
    ASSERT_TRUE(pumpUntil([this] { return scripted_->receivedLines().size() == 2; }));
    EXPECT_FALSE(isReady_);
    EXPECT_TRUE(engine.isRunning());
    EXPECT_TRUE(engine.isThinking());
    EXPECT_EQ(scripted_->receivedLines(), texts({"uci", "go movetime 1000"}));
}

TEST_F(EngineMisbehaviourTest, aReadThatIsNotUtf8IsLostAndNothingElse) {
    UCIEngineProcess& engine = start({QStringLiteral("--undecodable"), QStringLiteral("--moves=e2e4")});
    ASSERT_TRUE(waitUntilReady());
    const qsizetype before = engine.logLines().size();
    search();
    ASSERT_TRUE(waitForMove());
    EXPECT_EQ(engine.logLines().mid(before), texts({"> go movetime 1000", "< bestmove e2e4"}));
    EXPECT_EQ(engine.currentEvaluation(), EngineEvaluation());
}

TEST_F(EngineMisbehaviourTest, nulAndControlCharactersReachTheLog) {
    UCIEngineProcess& engine = start({QStringLiteral("--nul"), QStringLiteral("--moves=e2e4")});
    search();
    ASSERT_TRUE(waitForMove());
    const char entry[] = "< info depth 7 \0 \x01\x02\x1b[31m nodes 77";
    EXPECT_TRUE(engine.logLines().contains(QString::fromUtf8(entry, sizeof entry - 1)));
    EXPECT_EQ(engine.currentEvaluation().depth, 7);
    EXPECT_EQ(engine.currentEvaluation().nodes, 77);
}

TEST_F(EngineMisbehaviourTest, anEngineThatReadsNothingHoldsNothingUp) {
    UCIEngineProcess& engine = start({QStringLiteral("--deaf-at=uci"), QStringLiteral("--ignore-term")});
    ASSERT_TRUE(pumpUntil([this] { return !scripted_->receivedLines().isEmpty(); }));
    const QString longPosition =
        QStringLiteral("position startpos moves") + QStringLiteral(" e2e4").repeated(1000);
    for (int i = 0; i < 1000; ++i)
        engine.send(longPosition);  // five megabytes for a pipe of 64 kilobytes
    EXPECT_EQ(scripted_->receivedLines(), texts({"uci"})) << "nobody waited until they were read";
    QElapsedTimer elapsed;
    elapsed.start();
    engine.terminate();
    EXPECT_LT(elapsed.elapsed(), killAfterMs);
    EXPECT_TRUE(waitUntilNoChildIsLeft());
}

TEST_F(EngineMisbehaviourTest, leavesNoProcessWhateverTheEngineDoes) {
    const struct {
        const char* name;
        QStringList flags;
        ScriptedEngine::Wrapper wrapper;
    } cases[] = {
        {"ends as asked", {}, ScriptedEngine::Wrapper::exec},
        {"ignores quit", {QStringLiteral("--ignore-quit")}, ScriptedEngine::Wrapper::exec},
        {"ignores quit and the signal", texts({"--ignore-quit", "--ignore-term"}),
         ScriptedEngine::Wrapper::exec},
        {"stopped itself", {QStringLiteral("--stop-at=uci")}, ScriptedEngine::Wrapper::exec},
        {"behind a shell, with a child", texts({"--ignore-term", "--ignore-quit", "--child"}),
         ScriptedEngine::Wrapper::waitingShell},
        {"floods",
         {QStringLiteral("--flood-lines=100000000"), QStringLiteral("--ignore-term")},
         ScriptedEngine::Wrapper::exec},
    };
    const qint64 descriptors = openDescriptorCount();
    const qint64 threads = threadCount();
    for (const auto& [name, flags, wrapper] : cases) {
        start(flags, wrapper);
        search();
        ASSERT_TRUE(pumpUntil([this] { return !scripted_->receivedLines().isEmpty(); })) << name;
        const QList<qint64> ids = scripted_->processIds();
        ASSERT_FALSE(ids.isEmpty()) << name;
        QElapsedTimer elapsed;
        elapsed.start();
        engine_.reset();
        EXPECT_LT(elapsed.elapsed(), killAfterMs) << name << ": nothing waits";
        for (const qint64 id : ids)
            EXPECT_TRUE(pumpUntil([&] { return !isProcessAlive(id); })) << name;
        EXPECT_TRUE(waitUntilNoChildIsLeft()) << name;
        EXPECT_EQ(zombieCount(), 0) << name;
    }
    EXPECT_EQ(openDescriptorCount(), descriptors);
    EXPECT_TRUE(pumpUntil([&] { return threadCount() <= threads; }));
}

TEST_F(EngineMisbehaviourTest, anAnswerThatComesAfterTheGameIsDropped) {
    UCIEngineProcess& engine = start(texts({"--late", "--ignore-quit", "--ignore-term", "--moves=e2e4"}));
    search();
    ASSERT_TRUE(waitUntilReady());
    engine.terminate();
    const QStringList log = engine.logLines();
    EXPECT_EQ(log.last(), QStringLiteral("> quit"));
    EXPECT_TRUE(waitUntilNoChildIsLeft());
    EXPECT_TRUE(moves_.isEmpty());
    EXPECT_EQ(engine.logLines(), log);
}

TEST_F(EngineMisbehaviourTest, manyShortGamesLeaveNothingBehind) {
    start();
    engine_.reset();
    ASSERT_TRUE(waitUntilNoChildIsLeft());
    const qint64 descriptors = openDescriptorCount();
    const qint64 threads = threadCount();
    for (int i = 0; i < 200; ++i) {
        start();
        search();
        if (i % 4 == 0) QCoreApplication::processEvents();
    }
    engine_.reset();
    EXPECT_TRUE(waitUntilNoChildIsLeft());
    EXPECT_EQ(openDescriptorCount(), descriptors);
    EXPECT_TRUE(pumpUntil([&] { return threadCount() <= threads; }));
    EXPECT_EQ(zombieCount(), 0);
}

TEST_F(EngineMisbehaviourTest, theRegistryTestsRealProcesses) {
    FakeDefaultsStore defaults;
    FakeSystemSettings system;
    test::FakeFileDialogs dialogs;
    EngineManager manager(EngineManager::Platform{defaults, files_, system, launcher_, dialogs});
    using Result = EngineManager::EngineTestResult;
    // By assignment: with a sanitizer on, the compiler takes the optional texts of an aggregate for unset.
    Result named;
    named.success = true;
    named.engineName = QStringLiteral("Scripted");
    named.author = QStringLiteral("Nobody");
    Result nameless;
    nameless.success = true;
    Result tooLate;
    tooLate.error = QStringLiteral("Engine did not reply with 'uciok' within 3 seconds");
    const struct {
        const char* name;
        QStringList flags;
        const Result& result;
    } cases[] = {
        {"answers", {QStringLiteral("--ignore-term")}, named},
        {"names nothing", {QStringLiteral("--no-id")}, nameless},
        {"late, but in time", {QStringLiteral("--uciok-delay-ms=1000")}, named},
        {"too late", {QStringLiteral("--uciok-delay-ms=60000")}, tooLate},
        {"silent, and stays", texts({"--silent", "--ignore-quit", "--ignore-term"}), tooLate},
        {"ends at once", {QStringLiteral("--exit-at=start")}, tooLate},
        {"stops itself", {QStringLiteral("--stop-at=start")}, tooLate},
    };
    std::vector<std::unique_ptr<ScriptedEngine>> engines;
    std::vector<std::optional<Result>> results(std::size(cases));
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        engines.push_back(std::make_unique<ScriptedEngine>(cases[i].flags));
        manager.testEngine(engines.back()->path(),
                           [&results, i](const Result& result) { results[i] = result; });
    }
    EXPECT_TRUE(pumpUntil([&] {
        for (const auto& result : results) {
            if (!result) return false;
        }
        return true;
    }));
    for (std::size_t i = 0; i < std::size(cases); ++i)
        EXPECT_EQ(results[i], cases[i].result) << cases[i].name;
    EXPECT_TRUE(waitUntilNoChildIsLeft()) << "whatever an engine does, its test ends it";
    EXPECT_EQ(engines.front()->receivedLines(), texts({"uci", "quit"}));
    EXPECT_EQ(zombieCount(), 0);
}

}  // namespace
}  // namespace orlix
