// How seldom an engine process disturbs its observers and the event loop.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTest>

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

TEST_F(UCIEngineRest, noTimerRunsWhileTheEngineIsSilent) {
    launcher_.last().say("uciok\nreadyok\ninfo depth 1\n");
    ASSERT_TRUE(QTest::qWaitFor([&] { return engine_->currentEvaluation().depth == 1; }));
    const TimerWatch watch;
    QTest::qWait(100);
    EXPECT_LE(watch.count, 2) << "the end of the turn, and no more";
}

}  // namespace
}  // namespace orlix
