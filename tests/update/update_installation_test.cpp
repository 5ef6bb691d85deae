// Staging, the hand-off at quit, and the result at the next start.
#include <gmock/gmock.h>
#include <sys/stat.h>

#include <QCoreApplication>

#include "platform/posix/posix_file_operations.h"
#include "support/update_world.h"
#include "update/update_install_plan.h"
#include "updater/checked_plan.h"

namespace orlix {
namespace {

namespace fs = std::filesystem;
using test::complaintOf;
using test::text;
using test::UpdateWorld;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class UpdateInstallationTest : public ::testing::Test {
  protected:
    UpdateInstallationTest() {
        test::writeFile(world.imagePath(), "a verified image");
        update = {world.info, text(world.imagePath())};
    }
    void schedule() { world.service().scheduleInstallation(update); }
    QString complaint() {
        return complaintOf([&] { schedule(); });
    }
    UpdateInstallPlan plan() const {
        QString error;
        const std::string json = test::readFile(world.releaseFolder() / "install-plan.json");
        return UpdateInstallPlan::fromJson(QByteArray::fromStdString(json), error)
            .value_or(UpdateInstallPlan{});
    }
    fs::path stagedHelper() const { return world.releaseFolder() / "VelmorandixOrlixUpdater"; }
    fs::path helperInBundle() const {
        return world.runningBundle / "Contents/Helpers/VelmorandixOrlixUpdater";
    }

    UpdateWorld world;
    PreparedUpdate update;
};

TEST_F(UpdateInstallationTest, stagesTheHelperAndThePlanBesideTheImage) {
    update.info.sha256 = update.info.sha256->toUpper();
    schedule();
    EXPECT_EQ(test::readFile(stagedHelper()), test::readFile(helperInBundle()));
    EXPECT_EQ(fs::status(stagedHelper()).permissions(), fs::perms(0755));
    UpdateInstallPlan expected;
    expected.dmgPath = text(world.imagePath());
    expected.targetAppPath = text(world.runningBundle);
    expected.expectedBundleIdentifier = QStringLiteral("com.dovu.velmorandix");
    expected.expectedTeamIdentifier = QStringLiteral("TEAM123456");
    expected.expectedVersion = QStringLiteral("1.10");
    expected.expectedBuild = QStringLiteral("42");
    expected.expectedSHA256 = world.info.sha256->toLower();
    expected.statusPath = text(world.statusPath());
    EXPECT_EQ(plan(), expected);
    EXPECT_TRUE(fs::is_directory(world.statusPath().parent_path())) << "the result has a folder to lie in";
    EXPECT_THAT(world.starter.started, IsEmpty()) << "nothing starts before the quit";
}

TEST_F(UpdateInstallationTest, thePlanIsForTheUserOnlyWhateverTheMask) {
    const mode_t mask = umask(0);
    schedule();
    umask(mask);
    const fs::path path = world.releaseFolder() / "install-plan.json";
    EXPECT_EQ(fs::status(path).permissions(), fs::perms(0600)) << "the helper takes no other plan";
    fs::permissions(path, fs::perms(0666));
    schedule();
    EXPECT_EQ(fs::status(path).permissions(), fs::perms(0600));
}

// The program that installs opens nothing through a link, and what it is told must pass its checks.
TEST(UpdateHandOver, theInstallingProgramTakesThePlanAlsoWhereTheCachesAreALink) {
    UpdateWorld world;
    fs::create_directories(world.folder / "another disk/caches");
    fs::create_directory_symlink(world.folder / "another disk/caches", world.caches);
    const mode_t mask = umask(0002);
    world.service().scheduleInstallation(world.prepared());
    world.service().launchScheduledInstaller();
    umask(mask);
    ASSERT_EQ(world.starter.started.size(), 1U);
    const std::vector<std::string>& command = world.starter.started[0];
    EXPECT_EQ(fs::canonical(command[0]), command[0]);
    EXPECT_EQ(fs::canonical(command[2]), command[2]);
    PosixFileOperations files;
    const PlanPolicy policy{"com.dovu.velmorandix", "TEAM123456", world.statusPath().string()};
    CheckedPlan plan;
    EXPECT_EQ(readPlan(files, command[2], policy, plan), std::nullopt);
    EXPECT_EQ(plan.targetPath, world.runningBundle.string());
    EXPECT_EQ(plan.imageName, world.imagePath().filename().string());
}

TEST_F(UpdateInstallationTest, theTargetIsTheBundleBehindLinksAndDots) {
    fs::create_directory_symlink(world.runningBundle, world.folder / "Running.app");
    world.running.bundlePath = text(world.folder / "Applications/../Running.app");
    schedule();
    EXPECT_EQ(plan().targetAppPath, text(world.runningBundle));
}

TEST_F(UpdateInstallationTest, withoutAnIdentifierOfItsOwnTheUsualOneIsExpected) {
    world.running.info.identifier.reset();
    schedule();
    EXPECT_EQ(plan().expectedBundleIdentifier, QStringLiteral("com.dovu.velmorandix"));
    UpdateWorld other;
    other.running.info.identifier = QStringLiteral("com.other");
    test::writeFile(other.imagePath(), "a verified image");
    other.service().scheduleInstallation({other.info, text(other.imagePath())});
    EXPECT_NE(test::readFile(other.releaseFolder() / "install-plan.json").find("\"com.other\""),
              std::string::npos);
}

TEST_F(UpdateInstallationTest, whatWasStagedBeforeIsReplaced) {
    test::writeFile(stagedHelper(), "an old helper that is much longer than the new one");
    fs::permissions(stagedHelper(), fs::perms(0444));
    test::writeFile(world.releaseFolder() / "install-plan.json", "an old plan");
    schedule();
    EXPECT_EQ(test::readFile(stagedHelper()), test::readFile(helperInBundle()));
    EXPECT_EQ(plan().expectedVersion, QStringLiteral("1.10"));
}

TEST_F(UpdateInstallationTest, aLinkInTheHelpersPlaceIsNotWrittenThrough) {
    test::writeFile(world.folder / "precious", "mine");
    fs::create_symlink(world.folder / "precious", stagedHelper());
    schedule();
    EXPECT_EQ(test::readFile(world.folder / "precious"), "mine");
    EXPECT_FALSE(fs::is_symlink(stagedHelper()));
}

TEST_F(UpdateInstallationTest, withoutDigestOrBuildNothingIsStaged) {
    update.info.sha256.reset();
    EXPECT_EQ(complaint(), QStringLiteral("The update feed has no valid size and SHA-256 checksum."));
    update.info = world.info;
    update.info.build.reset();
    EXPECT_EQ(complaint(), QStringLiteral("The update feed has no valid size and SHA-256 checksum."));
    EXPECT_THAT(world.signatures.asked, IsEmpty());
    EXPECT_FALSE(fs::exists(stagedHelper()));
}

TEST_F(UpdateInstallationTest, withoutATeamNothingIsStaged) {
    for (const auto& team : {std::optional<std::string>(), std::optional<std::string>("")}) {
        world.signatures.byName["Running.app"].info.teamIdentifier = team;
        fs::permissions(helperInBundle(), fs::perms(0600));  // looked at later
        EXPECT_EQ(complaint(),
                  QStringLiteral("Automatic updates require a Developer ID signed application."));
    }
    world.signatures.byName["Running.app"].fault = SignatureFault::invalid;
    EXPECT_EQ(complaint(),
              QStringLiteral("The downloaded application is invalid: Code signature validation failed."));
    EXPECT_FALSE(fs::exists(stagedHelper()));
}

TEST_F(UpdateInstallationTest, withoutARunnableHelperNothingIsStaged) {
    const QString missing = QStringLiteral("The Velmorandix Orlix updater helper is missing.");
    fs::permissions(helperInBundle(), fs::perms(0644));
    EXPECT_EQ(complaint(), missing);
    fs::remove(helperInBundle());
    EXPECT_EQ(complaint(), missing);
    fs::create_directories(helperInBundle());
    EXPECT_EQ(complaint(), missing) << "a folder cannot be run";
    EXPECT_FALSE(fs::exists(stagedHelper()));
    world.service().launchScheduledInstaller();
    EXPECT_THAT(world.starter.started, IsEmpty());
}

TEST_F(UpdateInstallationTest, whatFailsWhileStagingIsToldWithTheSystemsWords) {
    update.dmgPath = text(world.folder / "none/image.dmg");
    EXPECT_EQ(complaint(), QStringLiteral("Could not prepare the updater: No such file or directory"))
        << "the copy";
    update.dmgPath = text(world.imagePath());
    fs::create_directories(world.releaseFolder() / "install-plan.json");
    EXPECT_TRUE(complaint().startsWith(QStringLiteral("Could not prepare the updater: "))) << "the plan";
    fs::remove(world.releaseFolder() / "install-plan.json");
    fs::remove_all(world.support);
    test::writeFile(world.support, "a file");
    EXPECT_EQ(complaint(), QStringLiteral("Could not prepare the updater: Not a directory"))
        << "the folder of the result";
    world.service().launchScheduledInstaller();
    EXPECT_THAT(world.starter.started, IsEmpty()) << "what was not staged is not started";
}

TEST_F(UpdateInstallationTest, theStagedHelperIsStartedOnceWithPlanAndProcess) {
    schedule();
    world.service().launchScheduledInstaller();
    const std::string plan = (world.releaseFolder() / "install-plan.json").string();
    EXPECT_THAT(world.starter.started,
                ElementsAre(ElementsAre(stagedHelper().string(), "--plan", plan, "--parent-pid",
                                        std::to_string(QCoreApplication::applicationPid()))));
    world.service().launchScheduledInstaller();
    EXPECT_EQ(world.starter.started.size(), 1U);
}

TEST_F(UpdateInstallationTest, withNothingScheduledNothingStarts) {
    world.service().launchScheduledInstaller();
    EXPECT_THAT(world.starter.started, IsEmpty());
}

TEST_F(UpdateInstallationTest, aHelperThatCannotBeStartedIsForgotten) {
    schedule();
    world.starter.error = EACCES;
    EXPECT_EQ(complaintOf([&] { world.service().launchScheduledInstaller(); }),
              QStringLiteral("Permission denied"));
    world.service().launchScheduledInstaller();
    EXPECT_EQ(world.starter.started.size(), 1U);
}

TEST_F(UpdateInstallationTest, whatIsForgottenIsNotStarted) {
    schedule();
    world.service().forgetScheduledInstaller();
    world.service().launchScheduledInstaller();
    EXPECT_THAT(world.starter.started, IsEmpty());
}

TEST_F(UpdateInstallationTest, aSecondStagingReplacesTheFirst) {
    schedule();
    const fs::path other = world.folder / "other/image.dmg";
    test::writeFile(other, "another image");
    update.dmgPath = text(other);
    schedule();
    world.service().launchScheduledInstaller();
    ASSERT_EQ(world.starter.started.size(), 1U);
    EXPECT_EQ(world.starter.started[0][0], (world.folder / "other/VelmorandixOrlixUpdater").string());
}

TEST_F(UpdateInstallationTest, aResultIsTakenOnce) {
    for (const bool succeeded : {true, false}) {
        const UpdateInstallResult result{succeeded, QStringLiteral("So it went."), QStringLiteral("1.10")};
        test::writeFile(world.statusPath(), result.toJson().toStdString());
        EXPECT_EQ(world.service().consumeInstallStatus(), result);
        EXPECT_FALSE(fs::exists(world.statusPath()));
        EXPECT_EQ(world.service().consumeInstallStatus(), std::nullopt);
    }
}

TEST_F(UpdateInstallationTest, whatIsNoResultStaysWhereItIs) {
    for (const char* content : {"nonsense", "{}", "{\"succeeded\":true,\"message\":\"x\"}", ""}) {
        SCOPED_TRACE(content);
        test::writeFile(world.statusPath(), content);
        EXPECT_EQ(world.service().consumeInstallStatus(), std::nullopt);
        EXPECT_EQ(world.service().consumeInstallStatus(), std::nullopt);
        EXPECT_EQ(test::readFile(world.statusPath()), content);
    }
}

TEST_F(UpdateInstallationTest, askingForTheResultsPathMakesItsFolder) {
    EXPECT_EQ(world.service().installStatusPath(), text(world.statusPath()));
    EXPECT_TRUE(fs::is_directory(world.statusPath().parent_path()));
}

}  // namespace
}  // namespace orlix
