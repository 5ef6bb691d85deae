// The program between its command line and its exit status, over the bench's seams.
#include "updater/updater_program.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include "support/environment_guard.h"
#include "update/update_places.h"
#include "update/user_folders.h"
#include "updater/bench.h"
#include "updater/own_team.h"

namespace orlix {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class UpdaterProgramTest : public ::testing::Test {
  protected:
    InstallationSeams seams() {
        return {bench_.files, bench_.processes, bench_.tools, bench_.signatures, bench_.starter};
    }
    int run(const std::vector<std::string>& arguments) {
        return runUpdater(arguments, seams(), bench_.settings);
    }
    std::vector<std::string> usual() const {
        return {"--plan", bench_.plan().string(), "--parent-pid", "4711"};
    }

    test::Bench bench_;
};

TEST_F(UpdaterProgramTest, installsWhatTheApplicationAskedFor) {
    EXPECT_EQ(run(usual()), 0);
    EXPECT_TRUE(bench_.isNewInstalled());
    EXPECT_THAT(bench_.processes.watched, ElementsAre(4711));
}

TEST_F(UpdaterProgramTest, saysSoWhenItFailed) {
    bench_.processes.hasEnded = false;
    EXPECT_EQ(run(usual()), 1);
    bench_.processes.hasEnded = true;
    std::filesystem::remove(bench_.image());
    EXPECT_EQ(run(usual()), 1);
    EXPECT_TRUE(bench_.isOldInstalled());
}

TEST_F(UpdaterProgramTest, anotherCommandLineLeavesOnlyAResult) {
    for (const auto& arguments : {std::vector<std::string>{}, {"--plan", bench_.plan().string()}}) {
        std::filesystem::remove(bench_.result());
        EXPECT_EQ(run(arguments), 2);
        EXPECT_EQ(bench_.message(),
                  "The update could not be installed: the updater was not started by the application.");
        EXPECT_TRUE(bench_.isOldInstalled());
        EXPECT_TRUE(bench_.isRestUntouched());
        EXPECT_THAT(bench_.starter.started, IsEmpty());
        EXPECT_THAT(bench_.processes.watched, IsEmpty());
        EXPECT_THAT(bench_.tools.arguments, IsEmpty());
    }
}

TEST_F(UpdaterProgramTest, theUsualSettingsAreThoseOfTheApplication) {
    EnvironmentGuard environment;
    environment.set("HOME", "/home/somebody");
    environment.unset("XDG_DATA_HOME");
    const InstallationSettings settings = usualSettings(seams());
    EXPECT_EQ(settings.replacement.bundleIdentifier, "com.dovu.velmorandix");
    EXPECT_EQ(settings.replacement.imageTool, "/usr/bin/hdiutil");
    EXPECT_EQ(settings.replacement.patience, std::chrono::seconds(60));
    EXPECT_EQ(settings.resultPlace.path(), installStatusPath(userFolders().applicationSupport).toStdString());
    EXPECT_EQ(settings.resultPlace.knownFolder, userFolders().applicationSupport.toStdString());
}

// The team of the program itself.

class OwnTeamTest : public ::testing::Test {
  protected:
    class Signatures : public CodeSignatureReader {
      public:
        SignatureFault fault = SignatureFault::none;
        SignatureInfo info{"com.dovu.velmorandix.updater", "TEAM123456"};
        std::vector<std::string> asked;

        SignatureFault read(const std::string& path, const std::string& requirement,
                            SignatureInfo& result) override {
            asked = {path, requirement};
            result = info;
            return fault;
        }
    };

    std::string team() {
        bench_.processes.program = "/caches/VelmorandixOrlixUpdater";
        return ownTeam(bench_.processes, signatures_);
    }

    test::Bench bench_{test::Bench::Size::small};
    Signatures signatures_;
};

TEST_F(OwnTeamTest, isInTheSignatureOfTheRunningProgram) {
    EXPECT_EQ(team(), "TEAM123456");
    EXPECT_THAT(signatures_.asked, ElementsAre("/caches/VelmorandixOrlixUpdater", "anchor apple generic"));
    EXPECT_THAT(bench_.processes.watched, ElementsAre(getpid()));
}

TEST_F(OwnTeamTest, isNobodyWithoutAValidSignature) {
    for (const SignatureFault fault :
         {SignatureFault::unreadable, SignatureFault::invalid, SignatureFault::uninspectable}) {
        signatures_.fault = fault;
        EXPECT_EQ(team(), "");
    }
    signatures_.fault = SignatureFault::none;
    signatures_.info.teamIdentifier.reset();
    EXPECT_EQ(team(), "");
}

TEST_F(OwnTeamTest, isNobodyWhenTheProgramCannotBeFound) {
    bench_.steps.before = [](int) { return 1; };
    EXPECT_EQ(team(), "");
    EXPECT_THAT(signatures_.asked, IsEmpty());
}

TEST_F(OwnTeamTest, isAskedForOnceTheParentIsWatched) {
    bench_.settings.ownTeam = [&] {
        EXPECT_THAT(bench_.steps.names(), ElementsAre("watch"));
        return std::string();
    };
    UpdateInstallation installation(
        {bench_.files, bench_.processes, bench_.tools, bench_.signatures, bench_.starter}, bench_.settings);
    EXPECT_EQ(installation.run(bench_.plan().string(), 4711), UpdateInstallation::Ending::failed);
}

}  // namespace
}  // namespace orlix
