// The updater as a process among processes: real parents, real ends, real signals.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <unistd.h>

#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>

#include "support/waiting_child.h"
#include "updater/running_updater.h"
#include "updater/seal_signatures.h"

namespace orlix {
namespace {

namespace fs = std::filesystem;
using test::RunningUpdater;
using test::WaitingChild;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class UpdaterProcessTest : public ::testing::Test {
  protected:
    void expectInstalled(RunningUpdater& updater) {
        EXPECT_EQ(updater.waitForEnd(), 0);
        EXPECT_TRUE(bench_.isNewInstalled());
        EXPECT_EQ(bench_.message(), "Velmorandix Orlix 1.1.0 was installed.");
        EXPECT_THAT(bench_.startRecord(), HasSubstr("version 1.1.0\n"));
        expectNothingLeft();
    }
    void expectFailure(RunningUpdater& updater, const std::string& message) {
        EXPECT_EQ(updater.waitForEnd(), 1);
        EXPECT_TRUE(bench_.isOldInstalled());
        EXPECT_EQ(bench_.message(), message);
        EXPECT_THAT(bench_.startRecord(), HasSubstr("version 1.0.0\n"));
        expectNothingLeft();
    }
    void expectNothingLeft() {
        EXPECT_THAT(bench_.leftovers(), IsEmpty());
        EXPECT_FALSE(bench_.imageTool.isAttached());
        EXPECT_TRUE(bench_.isRestUntouched());
    }
    // A parent that has ended.
    pid_t endedParent() const { return WaitingChild().id(); }
    // From now on the updater runs this in the tool's place; "$PPID" is the updater.
    void setTool(const std::string& script) {
        tool_ = bench_.folder / "tool";
        test::writeFile(
            tool_, "#!/bin/sh\n" + script + "\nexec '" + bench_.imageTool.path().string() + "' \"$@\"\n");
        fs::permissions(tool_, fs::perms::owner_all);
    }
    RunningUpdater::Setting setting(pid_t parent) const {
        RunningUpdater::Setting setting = bench_.setting(parent);
        if (!tool_.empty()) setting.environment.push_back("ORLIX_TEST_IMAGE_TOOL=" + tool_.string());
        return setting;
    }

    test::UpdaterBench bench_;
    fs::path tool_;
    const std::string failed_ = "Velmorandix Orlix 1.1.0 could not be installed: ";
};

TEST_F(UpdaterProcessTest, installsWhenTheApplicationHasEndedAndStartsTheNewOne) {
    auto parent = std::make_unique<WaitingChild>(bench_.innerProgram().string());
    RunningUpdater updater(setting(parent->id()));
    ASSERT_TRUE(updater.waitUntilItWaits());
    EXPECT_TRUE(bench_.isOldInstalled());
    EXPECT_THAT(bench_.imageTool.calls(), IsEmpty());
    parent.reset();
    expectInstalled(updater);
}

TEST_F(UpdaterProcessTest, aKilledParentThatNobodyReapsHasEnded) {
    const WaitingChild parent(bench_.innerProgram().string());
    RunningUpdater updater(setting(parent.id()));
    ASSERT_TRUE(updater.waitUntilItWaits());
    parent.end();
    expectInstalled(updater);
}

TEST_F(UpdaterProcessTest, aParentThatHasEndedBeforeIsNotWaitedFor) {
    bench_.patienceMs = 600'000;
    RunningUpdater updater(setting(endedParent()));
    expectInstalled(updater);
}

TEST_F(UpdaterProcessTest, whatIsStartedHasNothingOfTheUpdaters) {
    RunningUpdater::Setting setting = this->setting(endedParent());
    setting.before = [] { return dup2(STDERR_FILENO, 77) == 77; };
    RunningUpdater updater(setting);
    EXPECT_EQ(updater.waitForEnd(), 0);
    EXPECT_EQ(bench_.startRecord(), "version 1.1.0\nprogram " + bench_.target().string() +
                                        "/Contents/MacOS/Velmorandix Orlix\narguments 0\nfolder /\n"
                                        "session own\n");
}

TEST_F(UpdaterProcessTest, aParentThatStaysKeepsItsApplication) {
    bench_.patienceMs = 100;
    const WaitingChild parent(bench_.innerProgram().string());
    RunningUpdater updater(setting(parent.id()));
    EXPECT_EQ(updater.waitForEnd(), 1);
    EXPECT_EQ(bench_.message(), failed_ + "the application did not quit.");
    EXPECT_TRUE(bench_.isOldInstalled());
    EXPECT_THAT(bench_.imageTool.calls(), IsEmpty());
    expectNothingLeft();
    EXPECT_FALSE(bench_.hasStarted());
}

// Ticks from the system's start to the process's.
unsigned long long startOf(pid_t id) {
    std::ifstream stream("/proc/" + std::to_string(id) + "/stat");
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    std::istringstream fields(text.substr(text.rfind(')') + 1));
    std::string field;
    for (int number = 3; number <= 22; ++number)
        fields >> field;
    return std::stoull(field);
}

TEST_F(UpdaterProcessTest, aYoungerProcessWithTheParentsNumberIsSomebodyElse) {
    // The updater gets its command line when the younger process is there.
    const fs::path younger = bench_.folder / "younger";
    RunningUpdater::Setting setting = this->setting(0);
    setting.program = "/bin/sh";
    setting.arguments = {"-c",
                         "while [ ! -e \"$0\" ]; do sleep 0.01; done; "
                         "exec \"$1\" --plan \"$2\" --parent-pid \"$(cat \"$0\")\"",
                         younger.string(), bench_.updater().string(), bench_.plan().string()};
    RunningUpdater updater(setting);
    auto stranger = std::make_unique<WaitingChild>();
    while (startOf(stranger->id()) <= startOf(updater.id()))
        stranger = std::make_unique<WaitingChild>();
    test::writeFile(younger.string() + ".part", std::to_string(stranger->id()));
    fs::rename(younger.string() + ".part", younger);
    expectInstalled(updater);
    EXPECT_EQ(kill(stranger->id(), 0), 0) << "and it runs on";
}

TEST_F(UpdaterProcessTest, leavesAnApplicationAloneThatRunsOn) {
    bench_.patienceMs = 200;
    const WaitingChild second(bench_.innerProgram().string());
    RunningUpdater updater(setting(endedParent()));
    expectFailure(updater, failed_ + "a program of the installed application is still running.");
    EXPECT_THAT(bench_.imageTool.calls(), IsEmpty());
}

TEST_F(UpdaterProcessTest, waitsForTheLastProgramOfTheApplication) {
    auto second = std::make_unique<WaitingChild>(bench_.innerProgram().string());
    auto parent = std::make_unique<WaitingChild>(bench_.innerProgram().string());
    RunningUpdater updater(setting(parent->id()));
    ASSERT_TRUE(updater.waitUntilItWaits());
    parent.reset();
    usleep(50'000);  // long enough for the updater to get on, were it not for the second
    EXPECT_TRUE(bench_.isOldInstalled());
    EXPECT_THAT(bench_.imageTool.calls(), IsEmpty());
    second.reset();
    expectInstalled(updater);
}

TEST_F(UpdaterProcessTest, theEndOfTheSessionWaitsForTheInstallation) {
    setTool("[ \"$1\" = attach ] && kill -TERM $PPID && kill -HUP $PPID && kill -INT $PPID");
    RunningUpdater updater(setting(endedParent()));
    expectInstalled(updater);
}

// Killed at its worst moments, it leaves an application, and the next run does the rest.

TEST_F(UpdaterProcessTest, killedBeforeTheImageIsThereItLeavesTheOldApplication) {
    setTool("[ \"$1\" = attach ] && [ ! -e '" + (bench_.folder / "again").string() +
            "' ] && kill -KILL $PPID && exit 1");
    RunningUpdater first(setting(endedParent()));
    EXPECT_EQ(first.waitForEnd(), 256 + SIGKILL);
    EXPECT_TRUE(bench_.isOldInstalled());
    EXPECT_EQ(bench_.leftovers().size(), 1u) << "its private folder";
    test::writeFile(bench_.folder / "again", "");
    RunningUpdater second(setting(endedParent()));
    expectInstalled(second);
}

TEST_F(UpdaterProcessTest, killedWithTheCopyMadeItLeavesTheOldApplication) {
    setTool("[ \"$1\" = detach ] && [ ! -e '" + (bench_.folder / "again").string() +
            "' ] && kill -KILL $PPID && exit 1");
    RunningUpdater first(setting(endedParent()));
    EXPECT_EQ(first.waitForEnd(), 256 + SIGKILL);
    EXPECT_TRUE(bench_.isOldInstalled());
    EXPECT_TRUE(bench_.imageTool.isAttached());
    test::writeFile(bench_.folder / "again", "");
    RunningUpdater second(setting(endedParent()));
    expectInstalled(second);
}

TEST_F(UpdaterProcessTest, killedWhileItWaitsItLeavesEverything) {
    const WaitingChild parent;
    RunningUpdater updater(setting(parent.id()));
    ASSERT_TRUE(updater.waitUntilItWaits());
    kill(updater.id(), SIGKILL);
    EXPECT_EQ(updater.waitForEnd(), 256 + SIGKILL);
    EXPECT_TRUE(bench_.isOldInstalled());
    EXPECT_EQ(bench_.message(), "");
    expectNothingLeft();
}

// Whose updater it is.

TEST_F(UpdaterProcessTest, anUpdaterOfAnotherTeamInstallsNothing) {
    for (const char* team : {"", "OTHERTEAM1"}) {
        fs::remove(bench_.updater());
        fs::remove(bench_.folder / "start-record");
        fs::copy_file(ORLIX_SEALED_UPDATER, bench_.updater());
        test::sealProgram(bench_.updater(), "com.dovu.velmorandix.updater", team);
        // Absent in the signature and absent in the plan is no match either.
        bench_.writePlan({{"expectedTeamIdentifier", team[0] == '\0' ? "" : "TEAM123456"}});
        bench_.rememberRest();
        auto parent = std::make_unique<WaitingChild>(bench_.innerProgram().string());
        RunningUpdater updater(setting(parent->id()));
        ASSERT_TRUE(updater.waitUntilItWaits());
        parent.reset();
        expectFailure(updater,
                      std::string("The update could not be installed: ") +
                          (team[0] == '\0' ? "automatic updates require a Developer ID signed application."
                                           : "the install plan cannot be used: expectedTeamIdentifier."));
    }
}

TEST_F(UpdaterProcessTest, anUpdaterThatIsNotWhatWasSignedInstallsNothing) {
    std::fstream file(bench_.updater(), std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(-1, std::ios::end);
    file << 'x';
    file.close();
    fs::resize_file(bench_.updater(), fs::file_size(bench_.updater()) - 3);
    bench_.rememberRest();
    RunningUpdater updater(setting(endedParent()));
    EXPECT_EQ(updater.waitForEnd(), 1);
    EXPECT_THAT(bench_.message(), HasSubstr("automatic updates require a Developer ID signed application"));
    EXPECT_TRUE(bench_.isOldInstalled());
}

// The program that is shipped, whose every part is the system's.

class ShippedUpdaterTest : public UpdaterProcessTest {
  protected:
    RunningUpdater::Setting shipped(const std::vector<std::string>& arguments) const {
        return {ORLIX_UPDATER, arguments, bench_.setting(0).environment, {}};
    }
};

TEST_F(ShippedUpdaterTest, takesNoPlanHereAndStartsTheApplicationAgain) {
    auto parent = std::make_unique<WaitingChild>(bench_.innerProgram().string());
    RunningUpdater updater(shipped(bench_.setting(parent->id()).arguments));
    ASSERT_TRUE(updater.waitUntilItWaits());
    parent.reset();
    expectFailure(updater,
                  "The update could not be installed: automatic updates require a Developer ID signed "
                  "application.");
}

TEST_F(ShippedUpdaterTest, withoutArgumentsItOnlySaysSo) {
    const std::vector<std::vector<std::string>> lines{
        {}, {"--help"}, {"--plan", bench_.plan().string(), "--parent-pid", "1x"}};
    for (const auto& arguments : lines) {
        fs::remove(bench_.result());
        RunningUpdater updater(shipped(arguments));
        EXPECT_EQ(updater.waitForEnd(), 2);
        EXPECT_EQ(bench_.message(),
                  "The update could not be installed: the updater was not started by the application.");
        EXPECT_TRUE(bench_.isOldInstalled());
        expectNothingLeft();
        EXPECT_FALSE(bench_.hasStarted());
    }
}

}  // namespace
}  // namespace orlix
