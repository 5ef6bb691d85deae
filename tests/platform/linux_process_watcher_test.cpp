#include "platform/linux/linux_process_watcher.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <limits>

#include "support/temporary_folder.h"
#include "support/waiting_child.h"

namespace orlix {
namespace {

using namespace std::chrono_literals;
using Child = test::WaitingChild;
using ::testing::Contains;
using ::testing::Not;

constexpr auto longWait = 60s;
constexpr std::uint64_t endOfTime = std::numeric_limits<std::uint64_t>::max();

TEST(LinuxProcessWatcherTest, waitsForTheEnd) {
    LinuxProcessWatcher watcher(endOfTime);
    const Child child;
    std::unique_ptr<WatchedProcess> process;
    ASSERT_EQ(watcher.watch(child.id(), process), 0);
    EXPECT_FALSE(process->waitForEnd(0ms));
    EXPECT_FALSE(process->waitForEnd(5ms));
    child.end();
    EXPECT_TRUE(process->waitForEnd(longWait)) << "nobody has reaped it, and it has ended all the same";
    child.reap();
    EXPECT_TRUE(process->waitForEnd(0ms));
}

TEST(LinuxProcessWatcherTest, aNumberThatNobodyHasIsThatOfAnEndedProcess) {
    LinuxProcessWatcher watcher(endOfTime);
    pid_t id = 0;
    {
        const Child child;
        id = child.id();
    }
    std::unique_ptr<WatchedProcess> process;
    ASSERT_EQ(watcher.watch(id, process), 0);
    EXPECT_TRUE(process->waitForEnd(0ms));
    EXPECT_EQ(process->program(), "");
}

TEST(LinuxProcessWatcherTest, aYoungerProcessOfThatNumberIsSomebodyElse) {
    LinuxProcessWatcher watcher(0);  // every process is younger
    const Child child;
    std::unique_ptr<WatchedProcess> process;
    ASSERT_EQ(watcher.watch(child.id(), process), 0);
    EXPECT_TRUE(process->waitForEnd(0ms));
    EXPECT_EQ(process->program(), "");
}

TEST(LinuxProcessWatcherTest, byItselfItTakesOlderProcesses) {
    LinuxProcessWatcher watcher;
    std::unique_ptr<WatchedProcess> process;
    ASSERT_EQ(watcher.watch(getppid(), process), 0);
    EXPECT_FALSE(process->waitForEnd(0ms));
}

TEST(LinuxProcessWatcherTest, numbersThatNoProcessCanHaveAreRefused) {
    LinuxProcessWatcher watcher;
    std::unique_ptr<WatchedProcess> process;
    EXPECT_EQ(watcher.watch(-1, process), EINVAL);
    EXPECT_EQ(watcher.watch(0, process), EINVAL);
}

TEST(LinuxProcessWatcherTest, tellsWhichProgramRuns) {
    LinuxProcessWatcher watcher(endOfTime);
    const test::TemporaryFolder folder;
    std::filesystem::copy_file("/bin/cat", folder / "a (b) c");
    const Child child((folder / "a (b) c").string());
    std::unique_ptr<WatchedProcess> process;
    ASSERT_EQ(watcher.watch(child.id(), process), 0);
    EXPECT_EQ(process->program(), (folder / "a (b) c").string());
    EXPECT_FALSE(process->waitForEnd(0ms)) << "brackets in the name do not hide when it started";
}

TEST(LinuxProcessWatcherTest, bracketsInANameDoNotHideItsStart) {
    LinuxProcessWatcher watcher(0);
    const test::TemporaryFolder folder;
    std::filesystem::copy_file("/bin/cat", folder / "a) 1 2 (c");
    const Child child((folder / "a) 1 2 (c").string());
    std::unique_ptr<WatchedProcess> process;
    ASSERT_EQ(watcher.watch(child.id(), process), 0);
    EXPECT_TRUE(process->waitForEnd(0ms));
}

TEST(LinuxProcessWatcherTest, findsWhatRunsFromInsideAFolder) {
    LinuxProcessWatcher watcher;
    const test::TemporaryFolder folder;
    for (const char* name : {"App.app", "App.app2"}) {
        std::filesystem::create_directories(folder / name / "Contents");
        std::filesystem::copy_file("/bin/cat", folder / name / "Contents/cat");
    }
    const Child inside((folder / "App.app/Contents/cat").string());
    const Child beside((folder / "App.app2/Contents/cat").string());
    const std::string target = (folder / "App.app").string();
    EXPECT_THAT(watcher.processesFrom(target), Contains(inside.id()));
    EXPECT_THAT(watcher.processesFrom(target), Not(Contains(beside.id())));
    std::filesystem::remove(folder / "App.app/Contents/cat");
    EXPECT_THAT(watcher.processesFrom(target), Contains(inside.id()))
        << "its file is gone, and it still runs";
    inside.end();
    inside.reap();
    EXPECT_THAT(watcher.processesFrom(target), Not(Contains(inside.id())));
}

}  // namespace
}  // namespace orlix
