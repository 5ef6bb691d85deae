// An engine that says far more than anybody can read: order, content and memory.
#include <gtest/gtest.h>

#include <QStringList>

#include "engine/uci_engine_process.h"
#include "platform/posix/posix_process_launcher.h"
#include "platform/qt/qt_file_tests.h"
#include "support/event_pump.h"
#include "support/process_watch.h"
#include "support/scripted_engine.h"

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define ORLIX_UNDER_SANITIZER 1
#else
#define ORLIX_UNDER_SANITIZER 0
#endif

namespace orlix {
namespace {

// A sanitizer's own memory and pace say nothing about ours.
constexpr bool isUnderSanitizer = ORLIX_UNDER_SANITIZER;
constexpr int floodPatienceMs = 240'000;
constexpr qint64 allowedGrowth = 32 * 1024;

// What the log must hold after `lines` numbered lines have followed `before`.
QStringList logAfter(QStringList before, const QStringList& added) {
    for (const QString& entry : added) {
        if (before.size() >= 301) before.erase(before.begin(), before.begin() + 50);
        before.append(entry);
    }
    return before;
}

class EngineFloodTest : public ::testing::Test {
  protected:
    void startReady(const QStringList& flags) {
        scripted_ = std::make_unique<ScriptedEngine>(QStringList{QStringLiteral("--moves=e2e4")} + flags);
        EngineConfiguration config;
        config.executablePath = scripted_->path();
        engine_ = std::make_unique<UCIEngineProcess>(config, launcher_, files_);
        bool isReady = false;
        engine_->start([&](bool ready) { isReady = ready; });
        ASSERT_TRUE(pumpUntil([&] { return isReady; }));
        resetPeakMemory();
        memoryBefore_ = residentKilobytes();
    }
    void search() {
        engine_->search({}, [this](const QString& move) { moves_.append(move); });
    }
    qint64 growth() const { return peakResidentKilobytes() - memoryBefore_; }

    QtFileTests files_;
    PosixProcessLauncher launcher_;
    std::unique_ptr<ScriptedEngine> scripted_;
    std::unique_ptr<UCIEngineProcess> engine_;
    QStringList moves_;
    qint64 memoryBefore_ = 0;
};

TEST_F(EngineFloodTest, aFloodKeepsItsOrderAndItsContentInLittleMemory) {
    const qint64 rate = isUnderSanitizer ? 20000 : 200000;
    const qint64 lines = 2 * rate;
    startReady({QStringLiteral("--flood-seconds=2"), QStringLiteral("--flood-rate=%1").arg(rate)});
    const QStringList logBefore = engine_->logLines() + QStringList(QStringLiteral("> go movetime 1000"));
    qint64 updates = 0;
    qint64 outOfOrder = 0;
    qint64 afterTheMove = 0;
    engine_->setOnEvaluationUpdate([&](const EngineEvaluation& evaluation) {
        ++updates;
        if (evaluation.nodes != updates || evaluation.depth != 1 + updates % 60 ||
            evaluation.scoreCp != updates % 400 - 200 || evaluation.pv.size() != 6)
            ++outOfOrder;
        if (!moves_.isEmpty()) ++afterTheMove;
    });
    qint64 repaints = 0;
    QObject::connect(engine_.get(), &UCIEngineProcess::evaluationChanged, engine_.get(), [&] { ++repaints; });
    LoopGaps gaps;
    search();
    ASSERT_TRUE(pumpUntil([this] { return !moves_.isEmpty(); }, floodPatienceMs));
    EXPECT_EQ(updates, lines);
    EXPECT_EQ(outOfOrder, 0);
    EXPECT_EQ(afterTheMove, 0);
    EXPECT_EQ(moves_, QStringList(QStringLiteral("e2e4")));
    EXPECT_LT(repaints, lines / 10) << "painting is coalesced";
    EXPECT_GT(repaints, 10) << "and still goes on";
    const auto line = [](qint64 i) {
        return QStringLiteral(
                   "< info depth %1 seldepth 40 multipv 1 score cp %2 nodes %3 nps 1500000 hashfull 12 "
                   "time %4 pv e2e4 e7e5 g1f3 b8c6 f1b5 a7a6")
            .arg(1 + i % 60)
            .arg(i % 400 - 200)
            .arg(i)
            .arg(i / 100);
    };
    QStringList added;
    for (qint64 i = 1; i <= lines; ++i)
        added.append(line(i));
    added.append(QStringLiteral("< bestmove e2e4"));
    EXPECT_EQ(engine_->logLines(), logAfter(logBefore, added));
    EXPECT_GE(gaps.ticks(), 20U) << "two seconds of lines, and the event loop turned between them";
}

TEST_F(EngineFloodTest, aFloodThatNobodyTakesWaitsInThePipe) {
    startReady({QStringLiteral("--flood-lines=2000000")});
    search();
    // The main thread is busy with something else and takes nothing.
    QElapsedTimer busy;
    busy.start();
    while (busy.elapsed() < 500) {
    }
    if (!isUnderSanitizer) {
        EXPECT_LT(growth(), allowedGrowth);
    }
    engine_->terminate();
    EXPECT_TRUE(pumpUntil([this] { return launcher_.childCount() == 0; }));
}

TEST_F(EngineFloodTest, aFloodGrowsMemoryByLittle) {
    startReady({QStringLiteral("--flood-lines=400000")});
    search();
    ASSERT_TRUE(pumpUntil([this] { return !moves_.isEmpty(); }, floodPatienceMs));
    EXPECT_EQ(engine_->currentEvaluation().nodes, 400000);
    if (!isUnderSanitizer) {
        EXPECT_LT(growth(), allowedGrowth);
    }
}

TEST_F(EngineFloodTest, anEndlessLineIsNeitherKeptNorCutUp) {
    for (const char* stream : {"--no-id", "--stderr"}) {
        moves_.clear();
        startReady({QStringLiteral("--giant=67108864"), QString::fromLatin1(stream)});
        const QStringList before = engine_->logLines();
        search();
        ASSERT_TRUE(pumpUntil([this] { return !moves_.isEmpty(); }, floodPatienceMs));
        EXPECT_EQ(engine_->logLines(), before + QStringList({QStringLiteral("> go movetime 1000"),
                                                             QStringLiteral("< bestmove e2e4")}));
        EXPECT_EQ(engine_->currentEvaluation(), EngineEvaluation());
        if (!isUnderSanitizer) {
            EXPECT_LT(growth(), allowedGrowth);
        }
    }
}

TEST_F(EngineFloodTest, aLineJustBelowTheLimitIsKept) {
    // "info string " and the rest together are the longest line that counts.
    startReady({QStringLiteral("--giant=1048564")});
    search();
    ASSERT_TRUE(pumpUntil([this] { return !moves_.isEmpty(); }));
    const QString entry = engine_->logLines().at(engine_->logLines().size() - 2);
    EXPECT_EQ(entry.size(), 2 + 1048576);
    EXPECT_TRUE(entry.startsWith(QStringLiteral("< info string xxx")));
}

TEST_F(EngineFloodTest, twoFloodsAtATimeBothArrive) {
    startReady({QStringLiteral("--flood-lines=50000")});
    const auto firstScript = std::move(scripted_);
    const auto first = std::move(engine_);
    startReady({QStringLiteral("--flood-lines=50000")});
    first->search({}, [this](const QString& move) { moves_.append(move); });
    search();
    ASSERT_TRUE(pumpUntil([this] { return moves_.size() == 2; }, floodPatienceMs));
    EXPECT_EQ(first->currentEvaluation().nodes, 50000);
    EXPECT_EQ(engine_->currentEvaluation().nodes, 50000);
}

}  // namespace
}  // namespace orlix
