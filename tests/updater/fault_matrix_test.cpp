// Every step of an installation fails once in every way, is the last one before the process is killed, or
// finds a link where a file was. Whatever happens, one complete application is at the target, and nothing
// changes where nothing should.
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

#include "platform/posix/posix_spawn.h"
#include "updater/bench.h"

namespace orlix {
namespace {

namespace fs = std::filesystem;
using test::Bench;
using ::testing::IsEmpty;
using Ending = UpdateInstallation::Ending;

enum class Volume { exchanges, moves };

std::unique_ptr<Bench> makeBench(Volume volume) {
    auto bench = std::make_unique<Bench>(Bench::Size::small);
    bench->files.canExchange = volume == Volume::exchanges;
    return bench;
}

// The names of all steps when nothing goes wrong.
std::vector<std::string> allSteps(Volume volume) {
    const auto bench = makeBench(volume);
    EXPECT_EQ(bench->install(), Ending::installed);
    return bench->steps.names();
}

class FaultMatrixTest : public ::testing::TestWithParam<Volume> {};

std::string volumeName(const ::testing::TestParamInfo<Volume>& info) {
    return info.param == Volume::exchanges ? "exchangingVolume" : "movingVolume";
}

INSTANTIATE_TEST_SUITE_P(, FaultMatrixTest, ::testing::Values(Volume::exchanges, Volume::moves), volumeName);

// What holds after a run in which one step failed.
void expectConsistent(Bench& bench, Ending ending, const std::string& failedStep) {
    EXPECT_TRUE(bench.isRestUntouched());
    if (ending == Ending::installed)
        EXPECT_TRUE(bench.isNewInstalled());
    else
        EXPECT_TRUE(bench.isOldInstalled());
    const auto result = bench.readResult();
    ASSERT_TRUE(result);
    EXPECT_EQ(result->succeeded, ending == Ending::installed);
    if (ending == Ending::leftAlone) {
        EXPECT_THAT(bench.starter.started, IsEmpty());
    } else {
        EXPECT_EQ(bench.starter.started.size(), 1u) << "after " << failedStep;
    }
    EXPECT_FALSE(bench.tools.isAttached());
}

// What could not be removed is removed by the next run.
void expectNextRunToCleanUp(Bench& bench) {
    bench.steps.before = nullptr;
    fs::remove_all(bench.target());
    test::makeBundle(bench.target(), {});
    EXPECT_EQ(bench.install(), Ending::installed);
    EXPECT_THAT(bench.leftovers(), IsEmpty());
}

TEST_P(FaultMatrixTest, anyStepMayFail) {
    const std::vector<std::string> steps = allSteps(GetParam());
    ASSERT_GT(steps.size(), 100u);
    for (std::size_t failing = 0; failing < steps.size(); ++failing) {
        for (const int error : {ENOSPC, EROFS, EACCES, EXDEV}) {
            SCOPED_TRACE("step " + std::to_string(failing) + ", " + steps[failing] + ": " + strerror(error));
            const auto bench = makeBench(GetParam());
            bench->steps.before = [&](int number) { return number == static_cast<int>(failing) ? error : 0; };
            const Ending ending = bench->install();
            expectConsistent(*bench, ending, steps[failing]);
            if (!bench->leftovers().empty()) expectNextRunToCleanUp(*bench);
            if (HasFailure()) return;
        }
    }
}

// Runs an installation in a process of its own that is killed before the step `last`, and waits until every
// process that it left has ended too. False when the installation ended before that step.
bool installAndKill(Bench& bench, int last) {
    UniqueFd everybody[2];
    EXPECT_TRUE(makePipe(everybody));
    const pid_t child = fork();
    if (child == 0) {
        bench.steps.before = [last](int number) {
            if (number == last) kill(getpid(), SIGKILL);
            return 0;
        };
        bench.install();
        _exit(0);
    }
    everybody[1].reset();
    char byte = 0;
    EXPECT_EQ(read(everybody[0].get(), &byte, 1), 0);
    int status = 0;
    waitpid(child, &status, 0);
    return WIFSIGNALED(status);
}

TEST_P(FaultMatrixTest, theProcessMayBeKilledAfterAnyStep) {
    const std::vector<std::string> steps = allSteps(GetParam());
    bool wasOld = false;
    bool wasNew = false;
    for (std::size_t last = 0; last < steps.size(); ++last) {
        SCOPED_TRACE("killed before step " + std::to_string(last) + ", " + steps[last]);
        const auto bench = makeBench(GetParam());
        ASSERT_TRUE(installAndKill(*bench, static_cast<int>(last)));
        EXPECT_TRUE(bench->isRestUntouched());
        EXPECT_TRUE(bench->isOldInstalled() || bench->isNewInstalled());
        (bench->isOldInstalled() ? wasOld : wasNew) = true;
        // The next run finishes the work, or has nothing newer to install; and nothing of the killed one is
        // left.
        const bool isDone = bench->isNewInstalled();
        EXPECT_EQ(bench->install(), isDone ? Ending::failed : Ending::installed);
        EXPECT_TRUE(bench->isNewInstalled());
        if (!isDone) {
            EXPECT_THAT(bench->leftovers(), IsEmpty());
            EXPECT_FALSE(bench->tools.isAttached());
        }
        if (HasFailure()) return;
    }
    EXPECT_TRUE(wasOld && wasNew);
}

}  // namespace
}  // namespace orlix
