#include "platform/posix/posix_quit_signals.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <QSignalSpy>
#include <csignal>
#include <memory>

#include "support/event_pump.h"

namespace orlix {
namespace {

TEST(PosixQuitSignals, everySignalThatAsksToEndArrivesThroughTheEventLoop) {
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        PosixQuitSignals signals;
        QSignalSpy received(&signals, &PosixQuitSignals::received);
        ASSERT_EQ(kill(getpid(), number), 0);
        EXPECT_EQ(received.count(), 0) << "signal " << number;
        EXPECT_TRUE(pumpUntil([&] { return received.count() > 0; })) << "signal " << number;
    }
}

TEST(PosixQuitSignals, burstOfSignalsIsSurvived) {
    PosixQuitSignals signals;
    QSignalSpy received(&signals, &PosixQuitSignals::received);
    for (int i = 0; i < 1000; ++i) {
        ASSERT_EQ(raise(SIGTERM), 0);
    }
    EXPECT_TRUE(pumpUntil([&] { return received.count() > 0; }));
}

TEST(PosixQuitSignalsDeathTest, withoutTheObjectASignalEndsTheProgramAgain) {
    EXPECT_EXIT(
        {
            std::make_unique<PosixQuitSignals>().reset();
            raise(SIGTERM);
        },
        ::testing::KilledBySignal(SIGTERM), "");
}

}  // namespace
}  // namespace orlix
