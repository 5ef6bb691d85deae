// Download and verification: every step, and the order of the steps.
#include <gmock/gmock.h>

#include <functional>
#include <vector>

#include "support/update_world.h"

namespace orlix {
namespace {

namespace fs = std::filesystem;
using test::complaintOf;
using test::text;
using test::UpdateWorld;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class UpdatePreparationTest : public ::testing::Test {
  protected:
    QString complaint() {
        return complaintOf([&] { world.prepared(); });
    }
    bool hasImage() const { return fs::exists(world.imagePath()); }

    UpdateWorld world;
};

TEST_F(UpdatePreparationTest, aGoodReleaseIsReadyInItsFolder) {
    EXPECT_EQ(world.prepared(), (PreparedUpdate{world.info, text(world.imagePath())}));
    EXPECT_EQ(test::readFile(world.imagePath()), world.transport.fileContents.toStdString());
    EXPECT_EQ(world.transport.downloaded, QList<QUrl>{world.info.downloadURL});
    EXPECT_EQ(world.transport.downloadLimit, *world.info.size);
    EXPECT_THAT(world.tool.calls(),
                ElementsAre("attach\t-readonly\t-nobrowse\t-plist\t" + world.imagePath().string(),
                            "detach\t/dev/disk4s1"));
    EXPECT_FALSE(world.tool.isAttached());
    EXPECT_THAT(world.signatures.asked,
                ElementsAre(world.runningBundle.string(),
                            (world.tool.mountPoint(world.volume) / "New.app").string()));
    EXPECT_EQ(std::distance(fs::directory_iterator(world.releaseFolder()), fs::directory_iterator()), 1)
        << "nothing else is left";
}

TEST_F(UpdatePreparationTest, aDigestInCapitalsMatches) {
    world.info.sha256 = world.info.sha256->toUpper();
    EXPECT_EQ(complaint(), QString());
}

TEST_F(UpdatePreparationTest, aSecondPreparationReplacesTheImage) {
    world.prepared();
    const QByteArray second = world.transport.fileContents + "more";
    world.setImage(second);
    world.prepared();
    EXPECT_EQ(test::readFile(world.imagePath()), second.toStdString());
}

TEST_F(UpdatePreparationTest, whatADownloadLeftBehindEarlierDoesNotMatter) {
    test::writeFile(text(world.imagePath()).toStdString() + ".part", "half");
    EXPECT_EQ(complaint(), QString());
}

// One thing that is wrong, and what the user is told of it.
struct Fault {
    const char* name;
    std::function<void(UpdateWorld&)> apply;
    QString text;
};

QString invalidApplication(const char* reason) {
    return QStringLiteral("The downloaded application is invalid: ") + QString::fromUtf8(reason);
}

// In the order in which they are to be found.
std::vector<Fault> faults() {
    return {
        {"metadata", [](UpdateWorld& world) { world.info.build.reset(); },
         QStringLiteral("The update feed has no valid size and SHA-256 checksum.")},
        {"address", [](UpdateWorld& world) { world.info.downloadURL.setScheme(QStringLiteral("http")); },
         QStringLiteral("The update URL must use HTTPS and the same host as the update feed.")},
        {"system", [](UpdateWorld& world) { world.info.minimumMacOS = QStringLiteral("99.0"); },
         QStringLiteral("This update requires macOS 99.0 or later.")},
        {"disk image",
         [](UpdateWorld& world) { world.running.bundlePath = QStringLiteral("/Volumes/Orlix/Running.app"); },
         QStringLiteral("Move Velmorandix Orlix to Applications before updating it.")},
        {"folder", [](UpdateWorld& world) { test::writeFile(world.caches, "a file"); },
         QStringLiteral("Not a directory")},
        {"network",
         [](UpdateWorld& world) { world.transport.response.error = QStringLiteral("The network is down."); },
         QStringLiteral("The network is down.")},
        {"status", [](UpdateWorld& world) { world.transport.response.status = 404; },
         QStringLiteral("The update server returned an unexpected response.")},
        {"final address",
         [](UpdateWorld& world) {
             world.transport.finalUrl = QUrl(QStringLiteral("https://evil.example/a"));
         },
         QStringLiteral("The update server returned an unexpected response.")},
        {"size", [](UpdateWorld& world) { world.info.size = *world.info.size + 1; },
         QString()},  // has the sizes in it
        {"digest", [](UpdateWorld& world) { world.info.sha256 = QString(64, QLatin1Char('0')); },
         QStringLiteral("The downloaded update failed SHA-256 verification.")},
        {"move",
         [](UpdateWorld& world) {
             std::error_code ignored;  // there may be no folder for it
             fs::create_directories(world.imagePath() / "in the way", ignored);
         },
         QStringLiteral("Is a directory")},
        {"own signature",
         [](UpdateWorld& world) { world.signatures.byName["Running.app"].info.teamIdentifier.reset(); },
         QStringLiteral("Automatic updates require a Developer ID signed application.")},
        {"mount",
         [](UpdateWorld& world) {
             world.tool.setFlags({"--exit=1", "--error=no mountable file systems"});
         },
         QStringLiteral("The downloaded disk image is invalid: no mountable file systems\n")},
        {"search", [](UpdateWorld& world) { fs::rename(world.newBundle, world.volume / "New.old"); },
         invalidApplication("No matching Velmorandix Orlix app was found.")},
        {"build",
         [](UpdateWorld& world) {
             if (fs::exists(world.newBundle))
                 test::writeBundle(world.newBundle, "com.dovu.velmorandix", "1.10", "41");
         },
         invalidApplication("Version or build does not match the feed.")},
        {"signature",
         [](UpdateWorld& world) { world.signatures.byName["New.app"].fault = SignatureFault::invalid; },
         invalidApplication("Code signature validation failed.")},
        {"team",
         [](UpdateWorld& world) { world.signatures.byName["New.app"].info.teamIdentifier = "OTHER12345"; },
         invalidApplication("Developer ID identity does not match the installed app.")},
    };
}

QString expectedText(const Fault& fault, const UpdateWorld& world) {
    if (!fault.text.isEmpty()) return fault.text;
    const qint64 actual = world.transport.fileContents.size();
    return QStringLiteral("The update has the wrong size (expected %1, received %2 bytes).")
        .arg(actual + 1)
        .arg(actual);
}

TEST(UpdatePreparationOrder, eachFaultAloneIsToldInItsWords) {
    for (const Fault& fault : faults()) {
        SCOPED_TRACE(fault.name);
        UpdateWorld world;
        fault.apply(world);
        EXPECT_EQ(complaintOf([&] { world.prepared(); }), expectedText(fault, world));
        EXPECT_FALSE(world.tool.isAttached());
        EXPECT_FALSE(fs::is_regular_file(world.imagePath())) << "what was refused is not kept";
        EXPECT_FALSE(fs::exists(world.imagePath().string() + ".part"));
    }
}

TEST(UpdatePreparationOrder, ofTwoFaultsTheFirstIsTold) {
    const std::vector<Fault> all = faults();
    for (std::size_t first = 0; first < all.size(); ++first) {
        for (std::size_t second = first + 1; second < all.size(); ++second) {
            SCOPED_TRACE(std::string(all[first].name) + ", then " + all[second].name);
            UpdateWorld world;
            all[first].apply(world);
            all[second].apply(world);
            EXPECT_EQ(complaintOf([&] { world.prepared(); }), expectedText(all[first], world));
        }
    }
}

TEST(UpdatePreparationOrder, nothingIsDownloadedBeforeTheReleaseIsFit) {
    for (const Fault& fault : faults()) {
        if (fault.name == std::string("network")) break;
        SCOPED_TRACE(fault.name);
        UpdateWorld world;
        fault.apply(world);
        complaintOf([&] { world.prepared(); });
        EXPECT_TRUE(world.transport.downloaded.isEmpty());
    }
}

TEST_F(UpdatePreparationTest, everyLackOfMetadataIsRefused) {
    const std::vector<std::function<void(UpdateInfo&)>> lacks{
        [](UpdateInfo& info) { info.build = QString(); }, [](UpdateInfo& info) { info.size.reset(); },
        [](UpdateInfo& info) { info.size = 0; },          [](UpdateInfo& info) { info.sha256.reset(); },
        [](UpdateInfo& info) { info.sha256->chop(1); },
    };
    const UpdateInfo good = world.info;
    for (const auto& lack : lacks) {
        world.info = good;
        lack(world.info);
        EXPECT_EQ(complaint(), QStringLiteral("The update feed has no valid size and SHA-256 checksum."));
    }
}

TEST_F(UpdatePreparationTest, theNeededSystemIsComparedByItsNumbers) {
    for (const char* enough : {"14.5", "14.5.0", "14", "14.4.9", "9.99", "", "any"}) {
        SCOPED_TRACE(enough);
        world.info.minimumMacOS = QString::fromUtf8(enough);
        EXPECT_EQ(complaint(), QString());
    }
    for (const char* tooNew : {"14.5.1", "14.10", "15", "v99.0-beta"}) {
        SCOPED_TRACE(tooNew);
        world.info.minimumMacOS = QString::fromUtf8(tooNew);
        EXPECT_EQ(complaint(), QStringLiteral("This update requires macOS ") + QString::fromUtf8(tooNew) +
                                   QStringLiteral(" or later."));
    }
}

TEST_F(UpdatePreparationTest, onAnotherSystemNoVersionIsAskedFor) {
    world.running.systemVersion.reset();
    world.info.minimumMacOS = QStringLiteral("99.0");
    EXPECT_EQ(complaint(), QString());
}

TEST_F(UpdatePreparationTest, onlyPathsBelowTheVolumesCountAsDiskImages) {
    for (const char* path : {"/Volumes/", "/Volumes/a", "/Volumes/USB/Applications/Running.app"}) {
        SCOPED_TRACE(path);
        UpdateWorld other;
        other.running.bundlePath = QString::fromUtf8(path);
        EXPECT_EQ(complaintOf([&] { other.prepared(); }),
                  QStringLiteral("Move Velmorandix Orlix to Applications before updating it."));
    }
    for (const char* path :
         {"/Users/a/Volumes/Running.app", "/VolumesX/Running.app", "/volumes/Running.app"}) {
        SCOPED_TRACE(path);
        UpdateWorld other;
        other.running.bundlePath = QString::fromUtf8(path);
        EXPECT_EQ(complaintOf([&] { other.prepared(); }), QString());
    }
}

TEST_F(UpdatePreparationTest, aFileThatIsTooShortOrTooLongIsRefused) {
    world.setImage(QByteArray(1000, 'x'));
    world.transport.fileContents.chop(1);
    EXPECT_EQ(complaint(),
              QStringLiteral("The update has the wrong size (expected 1000, received 999 bytes)."));
    world.transport.fileContents = QByteArray(1065, 'x');
    world.transport.response.isTooLong = true;
    EXPECT_EQ(complaint(),
              QStringLiteral("The update has the wrong size (expected 1000, received 1065 bytes)."));
    EXPECT_FALSE(hasImage());
}

TEST_F(UpdatePreparationTest, statusAndAddressAreJudgedBeforeTheSize) {
    const QString unexpected = QStringLiteral("The update server returned an unexpected response.");
    world.transport.fileContents = "<html>no</html>";
    for (const int status : {0, 100, 199, 204, 300, 301, 304, 403, 404, 500}) {
        SCOPED_TRACE(status);
        world.transport.response.status = status;
        EXPECT_EQ(complaint() == unexpected, status != 204);
    }
    world.transport.response.status = 200;
    for (const char* end :
         {"http://updates.example/a", "https://cdn.updates.example/a", "https://evil.example/a"}) {
        SCOPED_TRACE(end);
        world.transport.finalUrl = QUrl(QString::fromUtf8(end));
        EXPECT_EQ(complaint(), unexpected);
    }
    world.transport.finalUrl = QUrl(QStringLiteral("https://UPDATES.example:8443/elsewhere"));
    EXPECT_NE(complaint(), unexpected);
}

TEST_F(UpdatePreparationTest, oneWrongByteFailsTheDigest) {
    world.transport.fileContents[world.transport.fileContents.size() / 2] = 'y';
    EXPECT_EQ(complaint(), QStringLiteral("The downloaded update failed SHA-256 verification."));
    EXPECT_THAT(world.tool.calls(), IsEmpty()) << "it is not even mounted";
}

TEST_F(UpdatePreparationTest, anImageThatIsRefusedDoesNotTouchTheOneBefore) {
    world.prepared();
    const std::string before = test::readFile(world.imagePath());
    world.transport.fileContents[0] = '?';
    EXPECT_NE(complaint(), QString());
    EXPECT_EQ(test::readFile(world.imagePath()), before);
}

TEST_F(UpdatePreparationTest, withoutATeamOfItsOwnTheApplicationCannotUpdateItself) {
    for (const auto& team : {std::optional<std::string>(), std::optional<std::string>("")}) {
        world.signatures.byName["Running.app"].info.teamIdentifier = team;
        world.signatures.byName["New.app"].info.teamIdentifier = team;
        EXPECT_EQ(complaint(),
                  QStringLiteral("Automatic updates require a Developer ID signed application."));
        EXPECT_FALSE(hasImage());
    }
    EXPECT_THAT(world.tool.calls(), IsEmpty());
}

struct SignatureText {
    SignatureFault fault;
    const char* text;
};

TEST_F(UpdatePreparationTest, faultsOfBothSignaturesAreToldInTheSameWords) {
    for (const SignatureText& item :
         {SignatureText{SignatureFault::unreadable, "Could not read the code signature."},
          SignatureText{SignatureFault::invalid, "Code signature validation failed."},
          SignatureText{SignatureFault::uninspectable, "Could not inspect the signing identity."}}) {
        SCOPED_TRACE(item.text);
        for (const char* bundle : {"Running.app", "New.app"}) {
            world.signatures.byName[bundle].fault = item.fault;
            EXPECT_EQ(complaint(), invalidApplication(item.text));
            EXPECT_FALSE(hasImage());
            world.signatures.byName[bundle].fault = SignatureFault::none;
        }
    }
}

TEST_F(UpdatePreparationTest, theNewSignatureHasToHaveTheIdentifierAndTheTeam) {
    const SignatureInfo good = world.signatures.byName["New.app"].info;
    const QString mismatch = invalidApplication("Developer ID identity does not match the installed app.");
    for (const SignatureInfo& bad :
         {SignatureInfo{std::nullopt, good.teamIdentifier}, SignatureInfo{"com.other", good.teamIdentifier},
          SignatureInfo{"", good.teamIdentifier}, SignatureInfo{"com.dovu.Velmorandix", good.teamIdentifier},
          SignatureInfo{good.identifier, std::nullopt}, SignatureInfo{good.identifier, ""},
          SignatureInfo{good.identifier, "team123456"}, SignatureInfo{good.identifier, "TEAM1234567"}}) {
        world.signatures.byName["New.app"].info = bad;
        EXPECT_EQ(complaint(), mismatch);
        EXPECT_FALSE(world.tool.isAttached());
    }
    world.signatures.byName["New.app"].info = good;
    EXPECT_EQ(complaint(), QString());
}

TEST_F(UpdatePreparationTest, theRunningBundlesIdentifierIsTheExpectedOne) {
    world.running.info.identifier = QStringLiteral("com.dovu.velmorandix.beta");
    EXPECT_EQ(complaint(), invalidApplication("No matching Velmorandix Orlix app was found."));
    UpdateWorld beta;
    beta.running.info.identifier = QStringLiteral("com.dovu.velmorandix.beta");
    test::writeBundle(beta.newBundle, "com.dovu.velmorandix.beta", "1.10", "42");
    beta.signatures.byName["New.app"].info.identifier = "com.dovu.velmorandix.beta";
    EXPECT_EQ(complaintOf([&] { beta.prepared(); }), QString());
    UpdateWorld nameless;
    nameless.running.info.identifier.reset();
    EXPECT_EQ(complaintOf([&] { nameless.prepared(); }), QString()) << "the usual one counts then";
}

struct NewBundle {
    const char* version;
    const char* build;
};

TEST_F(UpdatePreparationTest, versionAndBuildHaveToBeTheFeedsLetterByLetter) {
    for (const NewBundle& bundle :
         {NewBundle{"1.10", "41"}, NewBundle{"1.10", "042"}, NewBundle{"1.10", nullptr},
          NewBundle{"1.9", "42"}, NewBundle{"1.10.0", "42"}, NewBundle{"v1.10", "42"},
          NewBundle{nullptr, "42"}, NewBundle{nullptr, nullptr}}) {
        test::writeBundle(world.newBundle, "com.dovu.velmorandix", bundle.version, bundle.build);
        EXPECT_EQ(complaint(), invalidApplication("Version or build does not match the feed."));
        EXPECT_FALSE(hasImage());
    }
}

TEST_F(UpdatePreparationTest, aFailureToDetachIsToldOnlyWhenAllElseWasWell) {
    world.tool.setFlags({"--busy=99"});
    EXPECT_EQ(complaint(), QStringLiteral("The downloaded disk image is invalid: Could not detach image."));
    EXPECT_FALSE(hasImage());
    UpdateWorld other;
    other.tool.setFlags({"--busy=99"});
    test::writeBundle(other.newBundle, "com.other", "1.10", "42");
    EXPECT_EQ(complaintOf([&] { other.prepared(); }),
              invalidApplication("No matching Velmorandix Orlix app was found."));
    EXPECT_THAT(other.tool.calls().back(), "detach\t/dev/disk4s1");
}

TEST_F(UpdatePreparationTest, aToolThatIsMissingIsTheSystemsError) {
    world.diskImageTool = "/nowhere/hdiutil";
    EXPECT_EQ(complaint(), QStringLiteral("No such file or directory"));
    EXPECT_FALSE(hasImage());
}

TEST_F(UpdatePreparationTest, aVersionOfPathsStaysInsideTheFolderOfUpdates) {
    world.info.version = QStringLiteral("../../escaped");
    EXPECT_EQ(complaint(), invalidApplication("Version or build does not match the feed."));
    EXPECT_TRUE(fs::is_directory(world.caches / "com.dovu.velmorandix/Updates/.._.._escaped-42"));
    EXPECT_FALSE(fs::exists(world.caches / "escaped-42"));
}

TEST_F(UpdatePreparationTest, cancellingReachesTheTransferAndTheDigest) {
    world.service().cancel();
    EXPECT_TRUE(world.transport.isCancelled);
    EXPECT_NE(complaint(), QString());
    EXPECT_FALSE(hasImage());
}

}  // namespace
}  // namespace orlix
