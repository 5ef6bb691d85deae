// How the new application is checked and gets in place of the old one, each rule by itself.
#include <gmock/gmock.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <fstream>

#include "updater/bundle_verification.h"
#include "updater/replacement_fixture.h"

namespace orlix {
namespace {

namespace fs = std::filesystem;
using test::BundleSample;
using test::readFile;
using test::writeFile;
using Ending = UpdateInstallation::Ending;
using ::testing::AllOf;
using ::testing::Contains;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

class ExchangeTest : public test::ReplacementFixture {};

// The signature.

TEST_F(ExchangeTest, checksTheSignatureOfTheCopyAndOfWhatIsInstalled) {
    bench_.install();
    ASSERT_EQ(bench_.signatures.paths.size(), 2u);
    EXPECT_THAT(bench_.signatures.paths.front(),
                AllOf(StartsWith((bench_.folder / "Applications/.VelmorandixOrlixUpdate-").string()),
                      EndsWith("/Velmorandix Orlix.app")));
    EXPECT_EQ(bench_.signatures.paths.back(), bench_.target().string());
    for (const std::string& requirement : bench_.signatures.requirements)
        EXPECT_EQ(requirement,
                  "anchor apple generic and identifier \"com.dovu.velmorandix\""
                  " and certificate 1[field.1.2.840.113635.100.6.2.6] exists"
                  " and certificate leaf[field.1.2.840.113635.100.6.1.13] exists"
                  " and certificate leaf[subject.OU] = \"TEAM123456\"");
}

TEST_F(ExchangeTest, anApplicationOfAnotherTeamIsRefused) {
    BundleSample sample = newSample();
    sample.team = "OTHERTEAM0";
    makeNew(sample);
    expectFailure("code signature validation failed");
}

TEST_F(ExchangeTest, theReadersWordAloneIsNotEnough) {
    // A reader that takes no requirement into account.
    bench_.signatures.ignoresRequirement = true;
    BundleSample sample = newSample();
    sample.team = "OTHERTEAM0";
    makeNew(sample);
    expectFailure("the Developer ID identity does not match the installed application");
    test::sealBundle(bench_.newApplication(), "org.example.other", BundleSample().team);
    bench_.rememberRest();
    bench_.starter.started.clear();
    expectFailure("the Developer ID identity does not match the installed application");
    test::sealBundle(bench_.newApplication(), BundleSample().identifier, "");
    bench_.rememberRest();
    bench_.starter.started.clear();
    bench_.settings.ownTeam = [] { return std::string(); };
    EXPECT_EQ(bench_.install(), Ending::failed);
}

TEST_F(ExchangeTest, everyFaultOfASignatureRefuses) {
    const std::pair<SignatureFault, const char*> cases[] = {
        {SignatureFault::unreadable, "the code signature could not be read"},
        {SignatureFault::invalid, "code signature validation failed"},
        {SignatureFault::uninspectable, "the signing identity could not be inspected"},
    };
    for (const auto& [fault, text] : cases) {
        bench_.signatures.fault = fault;
        bench_.starter.started.clear();
        expectFailure(text);
    }
}

TEST_F(ExchangeTest, noTeamIsNotTheSameAsNoTeam) {
    bench_.signatures.ignoresRequirement = true;
    test::sealBundle(bench_.newApplication(), BundleSample().identifier, "");
    UniqueFd folder;
    ASSERT_EQ(bench_.files.openKnownFolder((bench_.folder / "Volume").string(), folder), 0);
    FileStatus status;
    const ExpectedBundle nobodys{BundleSample().identifier, "1.1.0", "2", ""};
    EXPECT_EQ(verifyBundle(bench_.files, bench_.signatures, folder.get(), (bench_.folder / "Volume").string(),
                           "Velmorandix Orlix.app", nobodys, status),
              "the Developer ID identity does not match the installed application");
}

TEST_F(ExchangeTest, aTouchedApplicationIsRefused) {
    writeFile(bench_.newApplication() / "Contents/MacOS/Velmorandix Orlix", "#!/bin/sh\n# evil 1.1.0\n");
    bench_.rememberRest();
    expectFailure("code signature validation failed");
}

TEST_F(ExchangeTest, aCopyThatIsTouchedBeforeTheExchangeIsSwappedBack) {
    atStep("exchange", 1, [&] {
        std::ofstream(bench_.folder / "Applications" / bench_.leftovers().front() /
                          "Velmorandix Orlix.app/Contents/Resources/board.txt",
                      std::ios::app)
            << "evil";
        return 0;
    });
    expectFailure("code signature validation failed");
}

TEST_F(ExchangeTest, aCopyThatIsSwappedForAnotherGoodOneIsSwappedBack) {
    test::makeBundle(bench_.folder / "other", newSample());
    atStep("exchange", 1, [&] {
        const fs::path copy =
            bench_.folder / "Applications" / bench_.leftovers().front() / "Velmorandix Orlix.app";
        fs::rename(copy, bench_.folder / "aside");
        fs::rename(bench_.folder / "other", copy);
        return 0;
    });
    expectFailure("another application got in its place");
}

TEST_F(ExchangeTest, theSignatureThatCountsIsTheCopys) {
    // Whoever swaps the folder for a link to a good application while the signature is read gains nothing.
    test::makeBundle(bench_.folder / "good", newSample());
    bench_.signatures.onRead = [&](const std::string& path) {
        if (path == bench_.target().string()) return;
        fs::rename(path, bench_.folder / "aside");
        fs::create_directory_symlink(bench_.folder / "good", path);
    };
    expectFailure("the new application was moved while it was checked");
}

TEST_F(ExchangeTest, theCopyIsLookedAtWhereItsSignatureIsRead) {
    // A good application in the copy's place before its signature is read, and away again afterwards.
    test::makeBundle(bench_.folder / "good", newSample());
    writeFile(bench_.newApplication() / "Contents/Resources/board.txt", "evil");
    bench_.rememberRest();
    fs::path copy;
    bench_.steps.after = [&](int number) {
        const auto& names = bench_.steps.names();
        const std::string& name = names[static_cast<std::size_t>(number)];
        if (name == "read" && copy.empty() && std::count(names.begin(), names.end(), "detach") == 1) {
            // The copy's own properties.
            copy = bench_.folder / "Applications" / bench_.leftovers().front() / "Velmorandix Orlix.app";
            fs::rename(copy, bench_.folder / "aside");
            fs::rename(bench_.folder / "good", copy);
        } else if (name == "read signature") {
            fs::rename(copy, bench_.folder / "good");
            fs::rename(bench_.folder / "aside", copy);
        }
    };
    EXPECT_EQ(bench_.install(), Ending::failed);
    ASSERT_FALSE(copy.empty());
    EXPECT_THAT(bench_.message(), HasSubstr("the new application was moved while it was checked"));
    EXPECT_THAT(bench_.signatures.paths, IsEmpty());
    EXPECT_TRUE(bench_.isOldInstalled());
}

TEST_F(ExchangeTest, theCopyHasTheIdentifierThatWasLookedFor) {
    // The signature's would do, and the search had found the right one.
    atStep("makeFolder", 2, [&] {
        BundleSample other = newSample();
        other.identifier = "org.example.other";
        fs::remove_all(bench_.folder / "mounts/Volume/Velmorandix Orlix.app/Contents");
        test::makeBundle(bench_.folder / "other", other);
        test::sealBundle(bench_.folder / "other", BundleSample().identifier, BundleSample().team);
        fs::rename(bench_.folder / "other/Contents",
                   bench_.folder / "mounts/Volume/Velmorandix Orlix.app/Contents");
        return 0;
    });
    EXPECT_EQ(bench_.install(), Ending::failed);
    EXPECT_THAT(bench_.message(), HasSubstr("the new application has another identifier"));
    EXPECT_TRUE(bench_.isOldInstalled());
}

// The exchange.

TEST_F(ExchangeTest, aVolumeWithoutExchangesMovesAside) {
    bench_.files.canExchange = false;
    EXPECT_EQ(bench_.install(), Ending::installed);
    EXPECT_TRUE(bench_.isNewInstalled());
    EXPECT_THAT(bench_.steps.names(), Contains("guardMove"));
    expectNothingLeft();
}

TEST_F(ExchangeTest, movedAsideAndBackWhenTheNewOneDoesNotGetInPlace) {
    bench_.files.canExchange = false;
    atStep("move", 2, [] { return ENOSPC; });
    expectFailure("the application could not be replaced: No space left on device");
}

TEST_F(ExchangeTest, movedBackWhenTheInstalledOneFailsItsCheck) {
    bench_.files.canExchange = false;
    bench_.signatures.onRead = [&](const std::string& path) {
        if (path == bench_.target().string())
            std::ofstream(bench_.target() / "Contents/Resources/board.txt", std::ios::app) << "evil";
    };
    expectFailure("code signature validation failed");
}

TEST_F(ExchangeTest, swappedBackWhenTheInstalledOneFailsItsCheck) {
    bench_.signatures.onRead = [&](const std::string& path) {
        if (path == bench_.target().string())
            std::ofstream(bench_.target() / "Contents/Resources/board.txt", std::ios::app) << "evil";
    };
    expectFailure("code signature validation failed");
}

TEST_F(ExchangeTest, aTargetThatWasMovedMeanwhileIsNotExchanged) {
    atStep("read signature", 1, [&] {
        fs::rename(bench_.target(), bench_.folder / "aside");
        test::makeBundle(bench_.target(), {});
        return 0;
    });
    expectFailure("the installed application was moved meanwhile");
}

TEST_F(ExchangeTest, theOldApplicationIsKeptWhenItCannotBeSwappedBack) {
    bench_.signatures.onRead = [&](const std::string& path) {
        if (path == bench_.target().string())
            std::ofstream(bench_.target() / "Contents/Resources/board.txt", std::ios::app) << "evil";
    };
    int exchanges = 0;
    bench_.steps.before = [&](int number) {
        return bench_.steps.names()[static_cast<std::size_t>(number)] == "exchange" && ++exchanges > 1
                   ? EACCES
                   : 0;
    };
    EXPECT_EQ(bench_.install(), Ending::failed);
    ASSERT_EQ(bench_.leftovers().size(), 1u);
    const auto kept = bench_.folder / "Applications" / bench_.leftovers().front() / "Velmorandix Orlix.app";
    EXPECT_TRUE(test::readSeal(kept)) << "the only complete application there is";
}

// The private folder.

TEST_F(ExchangeTest, theNewApplicationIsMadeReadyWhereNobodyElseLooks) {
    mode_t mode = 0;
    atStep("read signature", 1, [&] {
        struct stat status {};
        EXPECT_EQ(lstat((bench_.folder / "Applications" / bench_.leftovers().front()).c_str(), &status), 0);
        mode = status.st_mode;
        return 0;
    });
    bench_.install();
    EXPECT_EQ(mode, static_cast<mode_t>(S_IFDIR | 0700));
}

TEST_F(ExchangeTest, aPrivateFolderThatIsSwappedForALinkIsNotUsed) {
    fs::create_directories(bench_.folder / "outside/empty");
    bench_.rememberRest();
    bench_.steps.after = [&, done = false](int number) mutable {
        if (done || bench_.steps.names()[static_cast<std::size_t>(number)] != "makeFolder") return;
        done = true;
        const fs::path made = bench_.folder / "Applications" / bench_.leftovers().front();
        fs::remove(made);
        fs::create_directory_symlink(bench_.folder / "outside/empty", made);
    };
    EXPECT_EQ(bench_.install(), Ending::failed);
    EXPECT_THAT(bench_.message(), HasSubstr("no folder could be made beside the installed application"));
    EXPECT_TRUE(bench_.isOldInstalled());
    EXPECT_TRUE(bench_.isRestUntouched());
}

TEST_F(ExchangeTest, removesWhatKilledRunsLeft) {
    const fs::path leftover = bench_.folder / "Applications/.VelmorandixOrlixUpdate-0123456789abcdef";
    writeFile(leftover / "Velmorandix Orlix.app/Contents/file", "x");
    fs::permissions(leftover, fs::perms(0700));
    EXPECT_EQ(bench_.install(), Ending::installed);
    expectNothingLeft();
}

TEST_F(ExchangeTest, leavesAloneWhatOnlyLooksLikeALeftover) {
    const fs::path applications = bench_.folder / "Applications";
    writeFile(applications / ".VelmorandixOrlixUpdate-open/file", "x");
    fs::permissions(applications / ".VelmorandixOrlixUpdate-open", fs::perms(0755));
    writeFile(applications / ".VelmorandixOrlixUpdate-file", "x");
    fs::create_directory_symlink(bench_.folder / "outside", applications / ".VelmorandixOrlixUpdate-link");
    writeFile(applications / ".Other-0123/file", "x");
    fs::permissions(applications / ".Other-0123", fs::perms(0700));
    writeFile(applications / ".VelmorandixOrlixUpdate-busy/a.app/Contents/MacOS/x", "x");
    fs::permissions(applications / ".VelmorandixOrlixUpdate-busy", fs::perms(0700));
    bench_.processes.programs = {
        (applications / ".VelmorandixOrlixUpdate-busy/a.app/Contents/MacOS/x").string()};
    EXPECT_EQ(bench_.install(), Ending::installed);
    EXPECT_EQ(bench_.leftovers().size(), 5u);
    EXPECT_TRUE(bench_.isRestUntouched());
}

TEST_F(ExchangeTest, leavesAloneWhatAnotherUserLeft) {
    const fs::path left = bench_.folder / "Applications/.VelmorandixOrlixUpdate-0123456789abcdef";
    writeFile(left / "file", "x");
    fs::permissions(left, fs::perms(0700));
    bench_.files.disguise(left, [](FileStatus& status) { ++status.owner; });
    EXPECT_EQ(bench_.install(), Ending::installed);
    EXPECT_EQ(readFile(left / "file"), "x");
}

TEST_F(ExchangeTest, leavesAloneWhatIsMountedLikeALeftover) {
    const fs::path left = bench_.folder / "Applications/.VelmorandixOrlixUpdate-0123456789abcdef";
    writeFile(left / "file", "x");
    fs::permissions(left, fs::perms(0700));
    bench_.files.disguise(left, [](FileStatus& status) { ++status.device; });
    EXPECT_EQ(bench_.install(), Ending::installed);
    EXPECT_EQ(readFile(left / "file"), "x");
}

// The result.

TEST_F(ExchangeTest, aResultReplacesAnEarlierOne) {
    writeFile(bench_.result(), std::string(10'000, 'x'));
    bench_.install();
    EXPECT_EQ(bench_.message(), "Velmorandix Orlix 1.1.0 was installed.");
    EXPECT_EQ(std::distance(fs::directory_iterator(bench_.result().parent_path()), {}), 1);
}

TEST_F(ExchangeTest, aResultIsNotWrittenThroughALink) {
    fs::create_directories(bench_.result().parent_path());
    fs::create_symlink(bench_.folder / "outside/file", bench_.result());
    bench_.install();
    EXPECT_EQ(bench_.message(), "Velmorandix Orlix 1.1.0 was installed.");
    EXPECT_FALSE(fs::is_symlink(bench_.result()));
    EXPECT_TRUE(bench_.isRestUntouched());
}

TEST_F(ExchangeTest, noFolderOnTheWayToTheResultMayBeALink) {
    fs::create_directory_symlink(bench_.folder / "outside", bench_.folder / "support/com.dovu.velmorandix");
    EXPECT_EQ(bench_.install(), Ending::installed);
    EXPECT_TRUE(bench_.isRestUntouched());
}

TEST_F(ExchangeTest, aResultThatCannotBeWrittenLeavesNoHalfOne) {
    writeFile(bench_.result(), "earlier");
    int renames = 0;
    bench_.steps.before = [&](int number) {
        return bench_.steps.names()[static_cast<std::size_t>(number)] == "replace" && ++renames <= 2 ? ENOSPC
                                                                                                     : 0;
    };
    EXPECT_EQ(bench_.install(), Ending::installed);
    EXPECT_EQ(readFile(bench_.result()), "earlier");
    EXPECT_EQ(std::distance(fs::directory_iterator(bench_.result().parent_path()), {}), 1);
}

}  // namespace
}  // namespace orlix
