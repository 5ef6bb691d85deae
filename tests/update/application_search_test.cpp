// Bundles as such, and the search for one in a volume.
#include "update/application_search.h"

#include <gmock/gmock.h>

#include "support/update_world.h"
#include "update/bundle_info.h"

namespace orlix {
namespace {

namespace fs = std::filesystem;
using test::complaintOf;
using test::text;
using test::writeBundle;
using test::writeFile;

const QString identifier = QStringLiteral("com.dovu.velmorandix");

TEST(BundleInfo, isWhatTheInfoListSaysInText) {
    const test::TemporaryFolder folder;
    writeBundle(folder / "A.app", "com.a", "1.2", "42");
    EXPECT_EQ(readBundleInfo(text(folder / "A.app")),
              (BundleInfo{QStringLiteral("com.a"), QStringLiteral("1.2"), QStringLiteral("42")}));
    writeBundle(folder / "B.app", nullptr, nullptr, nullptr);
    EXPECT_EQ(readBundleInfo(text(folder / "B.app")), BundleInfo{});
    writeFile(folder / "C.app/Contents/Info.plist",
              "<plist version=\"1.0\"><dict><key>CFBundleVersion</key><integer>42</integer></dict></plist>");
    EXPECT_EQ(readBundleInfo(text(folder / "C.app")), BundleInfo{}) << "a number is no text";
}

TEST(BundleInfo, whatIsNoBundleHasNone) {
    const test::TemporaryFolder folder;
    fs::create_directories(folder / "A.app/Contents");
    writeFile(folder / "B.app", "a file");
    writeFile(folder / "C.app/Contents/Info.plist", "nonsense");
    fs::create_directories(folder / "D.app/Contents/Info.plist");
    for (const char* name : {"A.app", "B.app", "C.app", "D.app", "none.app"}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(readBundleInfo(text(folder / name)), std::nullopt);
    }
}

class ApplicationSearchTest : public ::testing::Test {
  protected:
    void add(const fs::path& path, const char* id = "com.dovu.velmorandix") {
        writeBundle(volume / path, id, "1", "1");
    }
    QString found() const { return findApplication(text(volume), identifier); }
    QString complaint() const {
        return complaintOf([&] { found(); });
    }
    void expectNone() const {
        EXPECT_EQ(complaint(),
                  QStringLiteral("The downloaded application is invalid: No matching Velmorandix "
                                 "Orlix app was found."));
    }

    test::TemporaryFolder folder;
    fs::path volume = folder / "volume";

    void SetUp() override { fs::create_directories(volume); }
};

TEST_F(ApplicationSearchTest, findsTheBundleWithTheIdentifier) {
    add("A.app", "com.other");
    add("B.app");
    EXPECT_EQ(found(), text(volume / "B.app"));
}

TEST_F(ApplicationSearchTest, looksIntoFoldersFromTheFirstName) {
    add("b/C.app");
    add("a/deep/er/X.app");
    EXPECT_EQ(found(), text(volume / "a/deep/er/X.app"));
}

TEST_F(ApplicationSearchTest, theSuffixMayBeInCapitals) {
    add("Orlix.APP");
    EXPECT_EQ(found(), text(volume / "Orlix.APP"));
}

TEST_F(ApplicationSearchTest, theIdentifierIsComparedLetterByLetter) {
    add("A.app", "com.dovu.Velmorandix");
    add("B.app", "com.dovu.velmorandix ");
    add("C.app", "com.dovu.velmorandix.helper");
    add("D.app", nullptr);
    expectNone();
}

TEST_F(ApplicationSearchTest, hiddenThingsDoNotCount) {
    add(".Hidden.app");
    add(".hidden/A.app");
    expectNone();
}

TEST_F(ApplicationSearchTest, packagesAreNotLookedInto) {
    add("Other.app/Contents/Helpers/Inner.app");
    writeBundle(volume / "Other.app", "com.other", "1", "1");
    add("An.pkg/A.app");
    add("A.bundle/A.app");
    add("A.PlugIn/A.app");
    expectNone();
}

TEST_F(ApplicationSearchTest, otherSuffixesAreNoApplications) {
    add("Orlix");
    add("Orlix.app.old");
    add("Orlix.application");
    expectNone();
}

TEST_F(ApplicationSearchTest, linksAreNotFollowed) {
    writeBundle(folder / "outside/A.app", "com.dovu.velmorandix", "1", "1");
    fs::create_directory_symlink(folder / "outside", volume / "Applications");
    fs::create_directory_symlink(folder / "outside/A.app", volume / "A.app");
    fs::create_directory_symlink(volume, volume / "circle");
    expectNone();
}

TEST_F(ApplicationSearchTest, aVolumeThatCannotBeReadIsNotInspected) {
    const QString expected =
        QStringLiteral("The downloaded application is invalid: Could not inspect the disk image.");
    writeFile(folder / "file", "x");
    EXPECT_EQ(complaintOf([&] { findApplication(text(folder / "none"), identifier); }), expected);
    EXPECT_EQ(complaintOf([&] { findApplication(text(folder / "file"), identifier); }), expected);
}

}  // namespace
}  // namespace orlix
