// How seldom an engine process disturbs its observers and the event loop.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTest>
#include <thread>

#include "engine/uci_engine_process.h"
#include "support/fake_file_tests.h"
#include "support/fake_process_launcher.h"

namespace orlix {
namespace {

class TimerWatch : public QObject {
  public:
    TimerWatch() { QCoreApplication::instance()->installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Timer) ++count;
        return false;
    }
    int count = 0;
};

class UCIEngineRest : public ::testing::Test {
  protected:
    UCIEngineRest() {
        config_.executablePath = QStringLiteral("/engines/good");
        files_.executables.insert(config_.executablePath);
        engine_ = std::make_unique<UCIEngineProcess>(config_, launcher_, files_);
        engine_->start({});
    }

    /// As an engine's own thread delivers it.
    void sayFromThread(const QByteArray& chunk) {
        std::thread([&] { launcher_.last().say(chunk); }).join();
    }
    bool reachesDepth(int depth) {
        return QTest::qWaitFor([&] { return engine_->currentEvaluation().depth == depth; });
    }

    FakeProcessLauncher launcher_;
    FakeFileTests files_;
    EngineConfiguration config_;
    std::unique_ptr<UCIEngineProcess> engine_;
};

TEST_F(UCIEngineRest, linesOfOneReadAndTheAnswersToThemAreAnnouncedTogether) {
    const QSignalSpy logChanged(engine_.get(), &UCIEngineProcess::logChanged);
    const QSignalSpy evaluationChanged(engine_.get(), &UCIEngineProcess::evaluationChanged);
    launcher_.last().say("id name Good\nuciok\ninfo depth 1\nreadyok\ninfo depth 2\n");
    ASSERT_TRUE(QTest::qWaitFor([&] { return engine_->currentEvaluation().depth == 2; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(logChanged.size(), 1) << "options and \"isready\" went out in between";
    EXPECT_EQ(evaluationChanged.size(), 1);
    ASSERT_TRUE(engine_->logLines().contains(QStringLiteral("> isready")));
}

TEST_F(UCIEngineRest, infoLinesThatFollowOthersAreTakenTogetherAndNoneIsForgotten) {
    sayFromThread("uciok\nreadyok\n");
    int updates = 0;
    engine_->setOnEvaluationUpdate([&](const EngineEvaluation&) { ++updates; });
    sayFromThread("info depth 1\n");
    ASSERT_TRUE(reachesDepth(1));
    const QSignalSpy announced(engine_.get(), &UCIEngineProcess::evaluationChanged);
    for (int depth = 2; depth <= 6; ++depth) {
        sayFromThread("info depth " + QByteArray::number(depth) + '\n');
        QCoreApplication::processEvents();
    }
    ASSERT_TRUE(reachesDepth(6)) << "the last line, after which the engine says nothing";
    EXPECT_EQ(updates, 6);
    EXPECT_LT(announced.size(), 5);
    const TimerWatch watch;
    QTest::qWait(500);
    EXPECT_LE(watch.count, 1) << "the end of the rest, and no more";
    sayFromThread("info depth 7\n");
    ASSERT_TRUE(reachesDepth(7));
}

TEST_F(UCIEngineRest, anEngineThatStartsAnewDuringARestIsHeard) {
    sayFromThread("uciok\nreadyok\ninfo depth 1\n");
    ASSERT_TRUE(reachesDepth(1));
    sayFromThread("info depth 2\n");
    ASSERT_TRUE(reachesDepth(2));
    sayFromThread("info depth 3\n");
    engine_->terminate();
    engine_->start({});
    sayFromThread("info depth 4\n");
    ASSERT_TRUE(reachesDepth(4));
    sayFromThread("info depth 5\n");
    ASSERT_TRUE(reachesDepth(5));
}

TEST_F(UCIEngineRest, aLineThatComesWhileAnAnswerIsTakenIsNotForgotten) {
    sayFromThread("uciok\nreadyok\n");
    sayFromThread("info depth 1\n");
    ASSERT_TRUE(reachesDepth(1));
    engine_->search({}, [&](const QString&) { sayFromThread("info depth 9\n"); });
    sayFromThread("info depth 2\nbestmove e2e4\n");
    ASSERT_TRUE(reachesDepth(9));
}

TEST_F(UCIEngineRest, noTimerRunsWhileTheEngineIsSilent) {
    launcher_.last().say("uciok\nreadyok\ninfo depth 1\n");
    ASSERT_TRUE(QTest::qWaitFor([&] { return engine_->currentEvaluation().depth == 1; }));
    const TimerWatch watch;
    QTest::qWait(100);
    EXPECT_LE(watch.count, 2) << "the end of the turn, and no more";
}

}  // namespace
}  // namespace orlix
