#include "platform/give_way.h"

#include <gtest/gtest.h>

#include <thread>

namespace orlix {
namespace {

TEST(GiveWay, concernsTheCallingThreadAlone) {
    const int before = getpriority(PRIO_PROCESS, 0);
    int inThread = before;
    std::thread([&] {
        giveWay();
        inThread = getpriority(PRIO_PROCESS, 0);
    }).join();
    EXPECT_GT(inThread, before);
    EXPECT_EQ(getpriority(PRIO_PROCESS, 0), before);
}

}  // namespace
}  // namespace orlix
