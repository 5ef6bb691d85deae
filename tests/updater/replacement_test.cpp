// What an installation checks before it copies anything, each rule by itself.
#include <gmock/gmock.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <fstream>

#include "updater/replacement_fixture.h"

namespace orlix {
namespace {

namespace fs = std::filesystem;
using test::BundleSample;
using test::readFile;
using test::writeFile;
using Ending = UpdateInstallation::Ending;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

class ReplacementTest : public test::ReplacementFixture {};

TEST_F(ReplacementTest, installsTheNewApplicationAndStartsIt) {
    EXPECT_EQ(bench_.install(), Ending::installed);
    EXPECT_TRUE(bench_.isNewInstalled());
    EXPECT_EQ(
        readFile(bench_.result()),
        "{\"message\":\"Velmorandix Orlix 1.1.0 was installed.\",\"succeeded\":true,\"version\":\"1.1.0\"}");
    EXPECT_THAT(bench_.starter.started, ElementsAre(startOfTarget()));
    EXPECT_THAT(bench_.processes.watched, ElementsAre(4711));
    expectNothingLeft();
}

TEST_F(ReplacementTest, asksTheToolForAReadOnlyVolumeThatNobodySees) {
    bench_.install();
    EXPECT_THAT(bench_.tools.arguments, ElementsAre(ElementsAre("attach", "-readonly", "-nobrowse", "-plist",
                                                                bench_.image().string()),
                                                    ElementsAre("detach", "/dev/disk4s1")));
}

TEST_F(ReplacementTest, theResultComesBeforeTheStart) {
    bool hadResult = false;
    atStep("start", 1, [&] {
        hadResult = fs::exists(bench_.result());
        return 0;
    });
    bench_.install();
    EXPECT_TRUE(hadResult);
}

// The parent.

TEST_F(ReplacementTest, touchesAndStartsNothingWhileTheParentLives) {
    bench_.processes.hasEnded = false;
    bench_.settings.replacement.patience = std::chrono::milliseconds(17);
    EXPECT_EQ(bench_.install(), Ending::leftAlone);
    EXPECT_EQ(bench_.message(),
              "Velmorandix Orlix 1.1.0 could not be installed: the application did not quit.");
    EXPECT_THAT(bench_.processes.waits, ElementsAre(std::chrono::milliseconds(17)));
    EXPECT_TRUE(bench_.isOldInstalled());
    EXPECT_THAT(bench_.starter.started, IsEmpty());
    EXPECT_THAT(bench_.tools.arguments, IsEmpty());
    expectNothingLeft();
}

TEST_F(ReplacementTest, waitsAMinuteAtMostUnlessToldOtherwise) {
    EXPECT_EQ(InstallationSettings().replacement.patience, std::chrono::seconds(60));
}

TEST_F(ReplacementTest, aParentThatCannotBeWatchedCountsAsAlive) {
    atStep("watch", 1, [] { return EINVAL; });
    EXPECT_EQ(bench_.install(), Ending::leftAlone);
    EXPECT_TRUE(bench_.isOldInstalled());
    EXPECT_THAT(bench_.starter.started, IsEmpty());
}

TEST_F(ReplacementTest, theParentIsWatchedBeforeAnythingElseAndWaitedForBeforeTheTargetIsOpened) {
    bench_.install();
    const auto& names = bench_.steps.names();
    EXPECT_EQ(names.front(), "watch");
    const auto waited = std::find(names.begin(), names.end(), "waitForEnd");
    for (const char* name : {"lock", "makeFolder", "attach", "exchange"})
        EXPECT_THAT(std::vector<std::string>(names.begin(), waited), Not(Contains(name)));
}

// Processes from inside the target.

TEST_F(ReplacementTest, leavesAnApplicationAloneThatStillRuns) {
    bench_.processes.programs = {bench_.target().string() + "/Contents/Helpers/other"};
    expectFailure("a program of the installed application is still running");
    EXPECT_THAT(bench_.tools.arguments, IsEmpty());
}

TEST_F(ReplacementTest, programsBesideTheTargetDoNotMatter) {
    bench_.processes.programs = {bench_.target().string() + "2/Contents/MacOS/x"};
    EXPECT_EQ(bench_.install(), Ending::installed);
}

TEST_F(ReplacementTest, looksAgainRightBeforeTheExchange) {
    atStep("read signature", 1, [&] {
        bench_.processes.programs = {bench_.target().string() + "/Contents/MacOS/x"};
        return 0;
    });
    expectFailure("a program of the installed application is still running");
}

TEST_F(ReplacementTest, waitsForAProcessThatEndsInTime) {
    bench_.settings.replacement.patience = std::chrono::minutes(5);
    bench_.processes.programs = {bench_.target().string() + "/Contents/MacOS/x"};
    atStep("processesFrom", 3, [&] {
        bench_.processes.programs.clear();
        return 0;
    });
    EXPECT_EQ(bench_.install(), Ending::installed);
}

TEST_F(ReplacementTest, theOldApplicationStaysWhileSomethingRunsFromIt) {
    atStep("exchange", 1, [&] {
        bench_.processes.programs = {bench_.folder.path().string() + "/Applications/" +
                                     bench_.leftovers().front() + "/Velmorandix Orlix.app/Contents/MacOS/x"};
        return 0;
    });
    EXPECT_EQ(bench_.install(), Ending::installed);
    EXPECT_TRUE(bench_.isNewInstalled());
    ASSERT_EQ(bench_.leftovers().size(), 1u);
    EXPECT_TRUE(test::readSeal(bench_.folder / "Applications" / bench_.leftovers().front() /
                               "Velmorandix Orlix.app"));
}

// The plan.

TEST_F(ReplacementTest, withoutAUsablePlanTheParentsApplicationRunsAgain) {
    writeFile(bench_.plan(), "{}");
    bench_.rememberRest();
    bench_.processes.program = bench_.target().string() + "/Contents/MacOS/Velmorandix Orlix";
    EXPECT_EQ(bench_.install(), Ending::failed);
    EXPECT_EQ(bench_.message(),
              "The update could not be installed: the install plan cannot be used: it does not have the "
              "fields of a "
              "plan.");
    EXPECT_THAT(readFile(bench_.result()), HasSubstr("\"version\":\"\""));
    EXPECT_THAT(bench_.starter.started, ElementsAre(startOfTarget()));
    EXPECT_TRUE(bench_.isOldInstalled());
    expectNothingLeft();
}

TEST_F(ReplacementTest, withoutAPlanAndAParentNothingIsStarted) {
    fs::remove(bench_.plan());
    for (const std::string& program : {std::string(), std::string("/usr/bin/velmorandix-orlix"),
                                       (bench_.folder / "outside/Other.app/Contents/MacOS/a/b").string(),
                                       (bench_.folder / "none.app/Contents/MacOS/x").string()}) {
        bench_.processes.program = program;
        EXPECT_EQ(bench_.install(), Ending::failed);
        EXPECT_THAT(bench_.starter.started, IsEmpty()) << program;
        EXPECT_NE(bench_.message(), "");
    }
}

TEST_F(ReplacementTest, theResultGoesToTheUsualPlaceOnly) {
    bench_.writePlan({{"statusPath", (bench_.folder / "outside/file").string()}});
    bench_.rememberRest();
    EXPECT_EQ(bench_.install(), Ending::failed);
    EXPECT_THAT(bench_.message(), HasSubstr("statusPath"));
    EXPECT_TRUE(bench_.isRestUntouched());
}

// The target.

TEST_F(ReplacementTest, replacesNoOtherApplication) {
    fs::remove_all(bench_.target());
    BundleSample other;
    other.identifier = "org.example.other";
    test::makeBundle(bench_.target(), other);
    EXPECT_EQ(bench_.install(), Ending::failed);
    EXPECT_THAT(bench_.message(), HasSubstr("another application is installed at its place"));
    EXPECT_EQ(test::readSeal(bench_.target()).value().identifier, "org.example.other");
    EXPECT_THAT(bench_.starter.started, IsEmpty()) << "and it is not started either";
    expectNothingLeft();
}

TEST_F(ReplacementTest, aTargetThatIsALinkIsNotFollowed) {
    fs::rename(bench_.target(), bench_.folder / "outside/Real.app");
    bench_.rememberRest();
    fs::create_directory_symlink(bench_.folder / "outside/Real.app", bench_.target());
    EXPECT_EQ(bench_.install(), Ending::failed);
    EXPECT_THAT(bench_.message(), HasSubstr("the installed application could not be opened"));
    EXPECT_TRUE(fs::is_symlink(bench_.target()));
    EXPECT_THAT(bench_.starter.started, IsEmpty()) << "nor is what it leads to started";
    expectNothingLeft();
}

TEST_F(ReplacementTest, aFolderThatIsALinkOnTheWayToTheTargetIsNotFollowed) {
    fs::create_directory_symlink("Applications", bench_.folder / "link");
    bench_.writePlan({{"targetAppPath", (bench_.folder / "link/Velmorandix Orlix.app").string()}});
    EXPECT_EQ(bench_.install(), Ending::failed);
    EXPECT_THAT(bench_.message(), HasSubstr("the installed application could not be opened"));
    EXPECT_TRUE(bench_.isOldInstalled());
}

TEST_F(ReplacementTest, aTargetThatIsAVolumeOfItsOwnIsNotReplaced) {
    bench_.files.disguise(bench_.target(), [](FileStatus& status) { ++status.device; });
    expectFailure("the installed application is a volume of its own");
}

TEST_F(ReplacementTest, installsOnlyWhatIsNewer) {
    const struct {
        const char* version;
        const char* build;
        bool isNewer;  // is 1.1.0 build 2
    } cases[] = {
        {"1.0.9", "99", true}, {"1.1", "1", true},  {"1.1.0", "1", true}, {"0.9", "1", true},
        {"1.1.0", "2", false}, {"1.1", "2", false}, {"v1.1", "3", false}, {"1.1.0", "3", false},
        {"1.10", "1", false},  {"2", "0", false},
    };
    for (const auto& [version, build, isNewer] : cases) {
        SCOPED_TRACE(std::string(version) + " build " + build);
        makeOld(version, build);
        EXPECT_EQ(bench_.install(), isNewer ? Ending::installed : Ending::failed);
        if (!isNewer) {
            EXPECT_THAT(bench_.message(), HasSubstr("the installed version is not older"));
        }
    }
}

TEST_F(ReplacementTest, twoInstallationsDoNotMeet) {
    PosixFileOperations files;
    UniqueFd folder;
    ASSERT_EQ(files.openKnownFolder(bench_.target().parent_path().string(), folder), 0);
    ASSERT_EQ(files.lock(folder.get()), 0);
    expectFailure("another update is being installed");
    folder.reset();
    EXPECT_EQ(bench_.install(), Ending::installed);
}

// The image.

TEST_F(ReplacementTest, theImageHasThePromisedDigest) {
    std::ofstream(bench_.image(), std::ios::app) << "x";
    bench_.rememberRest();
    expectFailure("the disk image failed SHA-256 verification");
    EXPECT_THAT(bench_.tools.arguments, IsEmpty());
}

TEST_F(ReplacementTest, theImageIsAFile) {
    const fs::path elsewhere = bench_.folder / "elsewhere.dmg";
    fs::rename(bench_.image(), elsewhere);
    fs::create_symlink(elsewhere, bench_.image());
    bench_.rememberRest();
    expectFailure("the disk image could not be read: Too many levels of symbolic links");
    EXPECT_THAT(bench_.tools.arguments, IsEmpty());
}

TEST_F(ReplacementTest, theImageIsNotAPipeAndNotEmpty) {
    writeFile(bench_.image(), "");
    bench_.writePlan();
    bench_.rememberRest();
    expectFailure("the disk image has the wrong size");
    bench_.starter.started.clear();
    fs::remove(bench_.image());
    ASSERT_EQ(mkfifo(bench_.image().c_str(), 0600), 0);
    bench_.rememberRest();
    expectFailure("the disk image could not be read: it is no file");
}

TEST_F(ReplacementTest, anImageBeyondAllMeasureIsNotRead) {
    std::error_code error;
    fs::resize_file(bench_.image(), (std::uintmax_t{4} << 30) + 1, error);
    ASSERT_FALSE(error) << error.message();
    EXPECT_EQ(bench_.install(), Ending::failed);
    EXPECT_THAT(bench_.message(), HasSubstr("the disk image has the wrong size"));
}

TEST_F(ReplacementTest, anImageThatGrowsWhileItIsReadIsRefused) {
    const std::string bytes = readFile(bench_.image());
    int opened = 0;
    bench_.steps.after = [&](int number) {
        // The third file that is opened, after the plan and the target's properties.
        if (bench_.steps.names()[static_cast<std::size_t>(number)] == "status" && opened == 3) ++opened;
        if (bench_.steps.names()[static_cast<std::size_t>(number)] == "openFile") ++opened;
        if (opened == 4) std::ofstream(bench_.image(), std::ios::app) << "more";
    };
    EXPECT_EQ(bench_.install(), Ending::failed);
    EXPECT_THAT(bench_.message(), HasSubstr("the disk image has the wrong size"));
    EXPECT_NE(readFile(bench_.image()), bytes) << "the test missed its moment";
    EXPECT_TRUE(bench_.isOldInstalled());
}

TEST_F(ReplacementTest, anImageSwappedBeforeItIsAttachedIsRefused) {
    atStep("makeFolder", 1, [&] {  // the private folder, after the image was verified
        const std::string bytes = readFile(bench_.image());
        fs::remove(bench_.image());
        writeFile(bench_.image(), bytes);
        return 0;
    });
    expectFailure("the disk image changed after it was verified");
    EXPECT_THAT(bench_.tools.arguments, IsEmpty());
}

TEST_F(ReplacementTest, anImageSwappedWhileItIsAttachedIsRefused) {
    atStep("attach", 1, [&] {
        const std::string bytes = readFile(bench_.image());
        fs::remove(bench_.image());
        writeFile(bench_.image(), bytes);
        return 0;
    });
    expectFailure("the disk image changed after it was verified");
}

TEST_F(ReplacementTest, anImageThatCannotBeMountedIsRefused) {
    atStep("attach", 1, [] { return 1; });
    expectFailure("The downloaded disk image is invalid: hdiutil: Resource busy");
}

TEST_F(ReplacementTest, detachesByForceWhenTheVolumeIsBusy) {
    bench_.tools.refusalsToDetach = 1;
    EXPECT_EQ(bench_.install(), Ending::installed);
    EXPECT_THAT(bench_.tools.arguments.back(), ElementsAre("detach", "/dev/disk4s1", "-force"));
    expectNothingLeft();
}

TEST_F(ReplacementTest, aVolumeThatStaysMountedIsNoReasonToFail) {
    bench_.tools.refusalsToDetach = 2;
    EXPECT_EQ(bench_.install(), Ending::installed);
    EXPECT_TRUE(bench_.isNewInstalled());
}

// What is on the image.

TEST_F(ReplacementTest, anImageWithoutTheApplicationIsRefused) {
    BundleSample sample = newSample();
    sample.identifier = "org.example.other";
    makeNew(sample);
    expectFailure("No matching Velmorandix Orlix app was found.");
}

TEST_F(ReplacementTest, theApplicationIsFoundInAFolderOfTheImage) {
    fs::create_directories(bench_.folder / "Volume/deep/er");
    fs::rename(bench_.newApplication(), bench_.folder / "Volume/deep/er/Another Name.app");
    bench_.rememberRest();
    EXPECT_EQ(bench_.install(), Ending::installed);
    EXPECT_TRUE(bench_.isNewInstalled()) << "under the name that it had";
    expectNothingLeft();
}

TEST_F(ReplacementTest, theApplicationHasThePromisedVersionAndBuild) {
    for (const auto& [version, build] : {std::pair("1.1.1", "2"), std::pair("1.1", "2"),
                                         std::pair("1.1.0", "3"), std::pair("1.1.0", "02")}) {
        SCOPED_TRACE(std::string(version) + " build " + build);
        BundleSample sample = newSample();
        sample.version = version;
        sample.build = build;
        makeNew(sample);
        bench_.starter.started.clear();
        expectFailure("version or build does not match the plan");
    }
}

TEST_F(ReplacementTest, refusesWhatMustNotBeCopied) {
    fs::create_symlink("/etc/passwd", bench_.newApplication() / "Contents/link");
    test::sealBundle(bench_.newApplication(), BundleSample().identifier, BundleSample().team);
    bench_.rememberRest();
    expectFailure("it is a link that leaves the application");
}

}  // namespace
}  // namespace orlix
