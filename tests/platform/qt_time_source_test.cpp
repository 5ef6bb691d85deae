#include "platform/qt/qt_time_source.h"

#include <gmock/gmock.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QObject>
#include <QTest>
#include <vector>

#include "support/event_pump.h"

namespace orlix {
namespace {

using namespace std::chrono_literals;

TEST(QtTimeSource, nowIsTheWallClock) {
    const QtTimeSource time;
    const auto before = std::chrono::system_clock::now();
    const auto now = time.now();
    const auto after = std::chrono::system_clock::now();
    EXPECT_GE(now, before);
    EXPECT_LE(now, after);
}

TEST(QtTimeSource, aDelayedActionRunsOnceAndNotBeforeItsTime) {
    QtTimeSource time;
    QElapsedTimer elapsed;
    elapsed.start();
    int runs = 0;
    qint64 ranAfter = 0;
    const auto timer = time.after(30ms, [&] {
        ++runs;
        ranAfter = elapsed.elapsed();
    });
    EXPECT_EQ(runs, 0);
    ASSERT_TRUE(pumpUntil([&] { return runs > 0; }));
    EXPECT_GE(ranAfter, 29);
    int later = 0;
    const auto second = time.after(60ms, [&] { ++later; });
    ASSERT_TRUE(pumpUntil([&] { return later > 0; }));
    EXPECT_EQ(runs, 1);
}

TEST(QtTimeSource, aZeroDelayKeepsItsPlaceAmongQueuedCalls) {
    QtTimeSource time;
    QObject context;
    std::vector<int> order;
    const auto queue = [&](int number) {
        QMetaObject::invokeMethod(
            &context, [&order, number] { order.push_back(number); }, Qt::QueuedConnection);
    };
    queue(1);
    const auto first = time.after(0ms, [&] { order.push_back(2); });
    queue(3);
    const auto second = time.after(0ms, [&] { order.push_back(4); });
    queue(5);
    EXPECT_TRUE(order.empty());
    QCoreApplication::processEvents();
    EXPECT_THAT(order, testing::ElementsAre(1, 2, 3, 4, 5));
    QCoreApplication::processEvents();
    EXPECT_EQ(order.size(), 5U);
}

TEST(QtTimeSource, whileItHoldsActionsWithoutADelayWaitAndKeepTheirOrder) {
    QtTimeSource time;
    std::vector<int> order;
    time.hold();
    const auto first = time.after(0ms, [&] { order.push_back(1); });
    auto dropped = time.after(0ms, [&] { order.push_back(2); });
    const auto third = time.after(0ms, [&] { order.push_back(3); });
    const auto delayed = time.after(1ms, [&] { order.push_back(4); });
    ASSERT_TRUE(pumpUntil([&] { return !order.empty(); }));
    EXPECT_THAT(order, testing::ElementsAre(4));
    dropped.reset();
    time.release();
    const auto last = time.after(0ms, [&] { order.push_back(5); });
    EXPECT_EQ(order.size(), 1U);
    QCoreApplication::processEvents();
    EXPECT_THAT(order, testing::ElementsAre(4, 1, 3, 5));
    time.release();
    QCoreApplication::processEvents();
    EXPECT_EQ(order.size(), 4U);
}

TEST(QtTimeSource, aDestroyedTimerNeverRuns) {
    QtTimeSource time;
    int cancelled = 0;
    int marker = 0;
    auto queued = time.after(0ms, [&] { ++cancelled; });
    auto delayed = time.after(5ms, [&] { ++cancelled; });
    auto repeating = time.every(5ms, [&] { ++cancelled; });
    queued.reset();
    delayed.reset();
    repeating.reset();
    const auto last = time.after(40ms, [&] { ++marker; });
    ASSERT_TRUE(pumpUntil([&] { return marker > 0; }));
    EXPECT_EQ(cancelled, 0);
}

TEST(QtTimeSource, oneActionMayCancelAnotherThatIsDueAlready) {
    QtTimeSource time;
    int cancelled = 0;
    std::unique_ptr<Timer> second;
    const auto first = time.after(0ms, [&] { second.reset(); });
    second = time.after(0ms, [&] { ++cancelled; });
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    EXPECT_EQ(cancelled, 0);
}

TEST(QtTimeSource, aRepeatingTimerKeepsItsRate) {
    QtTimeSource time;
    QElapsedTimer elapsed;
    elapsed.start();
    int runs = 0;
    const auto timer = time.every(50ms, [&] { ++runs; });
    ASSERT_TRUE(pumpUntil([&] { return runs >= 6; }));
    EXPECT_GE(elapsed.elapsed(), 250);  // 300 ms less what a timer may come early to share a wake-up
}

TEST(QtTimeSource, aTimerMayBeDestroyedOrReplacedFromInsideItsOwnAction) {
    QtTimeSource time;
    // The captured text is read after the destruction: the action must outlive its timer.
    const auto payload = std::make_shared<std::string>("still here");
    std::vector<std::string> seen;
    std::unique_ptr<Timer> repeating;
    std::unique_ptr<Timer> queued;
    std::unique_ptr<Timer> delayed;
    repeating = time.every(1ms, [&, payload] {
        repeating.reset();
        seen.push_back(*payload + " repeating");
    });
    queued = time.after(0ms, [&, payload] {
        queued = time.after(0ms, [&, payload] {
            queued.reset();
            seen.push_back(*payload + " replaced");
        });
        seen.push_back(*payload + " queued");
    });
    delayed = time.after(1ms, [&, payload] {
        delayed.reset();
        seen.push_back(*payload + " delayed");
    });
    ASSERT_TRUE(pumpUntil([&] { return seen.size() >= 4; }));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_THAT(seen, testing::UnorderedElementsAre("still here repeating", "still here queued",
                                                    "still here replaced", "still here delayed"));
    EXPECT_EQ(payload.use_count(), 1);
}

}  // namespace
}  // namespace orlix
