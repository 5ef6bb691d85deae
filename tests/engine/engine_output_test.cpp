#include "engine/engine_output.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <deque>
#include <string>
#include <thread>
#include <vector>

namespace orlix {
namespace {

class EngineOutputTest : public ::testing::Test {
  protected:
    void receive(const QByteArray& lines) { output_.receive(lines); }
    void receiveFromThread(const QByteArray& lines) {
        std::thread([&] { receive(lines); }).join();
    }
    /// The number of wakes so far, all of them delivered.
    int wakes() {
        QCoreApplication::processEvents();
        return wakes_;
    }
    std::vector<std::string> take() {
        std::deque<EngineOutput::Event> events;
        output_.takeAll(events);
        std::vector<std::string> lines;
        for (const EngineOutput::Event& event : events)
            lines.push_back(event.line);
        return lines;
    }

    int wakes_ = 0;
    Waker waker_{[this] { ++wakes_; }};
    EngineOutput output_{waker_};
};

TEST_F(EngineOutputTest, wakesOnceUntilTheLinesAreTaken) {
    receiveFromThread("info depth 1\n");
    receiveFromThread("info depth 2\n");
    EXPECT_EQ(wakes(), 1);
    EXPECT_EQ(take().size(), 2U);
    receiveFromThread("info depth 3\n");
    EXPECT_EQ(wakes(), 2);
}

TEST_F(EngineOutputTest, atRestInfoLinesWaitForAnythingElse) {
    for (const char* line : {"bestmove e2e4", "readyok", "uciok", "id name Puppet"}) {
        output_.rest();
        const int before = wakes();
        receiveFromThread("info depth 1\ninfo depth 2\n");
        EXPECT_EQ(wakes(), before);
        receiveFromThread(QByteArray(line) + "\n");
        EXPECT_EQ(wakes(), before + 1) << line;
        EXPECT_EQ(take(), (std::vector<std::string>{"info depth 1", "info depth 2", line}));
        receiveFromThread("info depth 3\n");
        EXPECT_EQ(wakes(), before + 1) << "what was urgent has gone";
        EXPECT_EQ(take().size(), 1U);
    }
}

TEST_F(EngineOutputTest, atTheEndOfARestTheNextLineWakes) {
    output_.rest();
    receiveFromThread("info depth 1\n");
    EXPECT_EQ(wakes(), 0);
    EXPECT_TRUE(output_.endRest()) << "one waits of which nobody was told";
    receiveFromThread("info depth 2\n");
    EXPECT_EQ(wakes(), 1);
    output_.rest();
    EXPECT_FALSE(output_.endRest()) << "everybody knows of these";
    EXPECT_EQ(take().size(), 2U);
    EXPECT_FALSE(output_.endRest());
}

TEST_F(EngineOutputTest, aFloodDoesNotWaitForTheEndOfARest) {
    output_.rest();
    QByteArray lines;
    for (int depth = 0; depth < 600; ++depth)
        lines += "info depth " + QByteArray::number(depth) + '\n';
    receiveFromThread(lines);
    EXPECT_EQ(wakes(), 1);
    EXPECT_EQ(take().size(), 600U);

    output_.rest();
    receiveFromThread("info string " + QByteArray(300 * 1024, 'x') + '\n');
    EXPECT_EQ(wakes(), 2);
}

TEST_F(EngineOutputTest, linesOfTheTakingThreadItselfNeverRest) {
    output_.rest();
    receive("info depth 1\n");
    EXPECT_EQ(wakes(), 1);
}

}  // namespace
}  // namespace orlix
