#include "update/disk_images.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "platform/posix/posix_tool_runner.h"
#include "support/disk_image_tool.h"
#include "support/temporary_folder.h"
#include "support/update_world.h"

namespace orlix {
namespace {

namespace fs = std::filesystem;
using test::complaintOf;
using test::text;
using ::testing::ElementsAre;

class DiskImagesTest : public ::testing::Test {
  protected:
    DiskImagesTest() {
        fs::create_directories(volume);
        test::writeFile(image, test::DiskImageTool::imageOf(volume));
    }
    QString attachComplaint(const std::vector<std::string>& flags) {
        tool.setFlags(flags);
        return complaintOf([&] { images.attach(text(image)); });
    }
    static QString invalid(const char* reason) {
        return QStringLiteral("The downloaded disk image is invalid: ") + QString::fromUtf8(reason);
    }

    test::TemporaryFolder folder;
    fs::path volume = folder / "Orlix 1.2";
    fs::path image = folder / "an image.dmg";
    test::DiskImageTool tool{{}, folder.path()};
    PosixToolRunner runner;
    DiskImages images{runner, tool.path().string()};
};

TEST_F(DiskImagesTest, attachesReadOnlyWithoutBrowsingAndDetachesTheDevice) {
    const MountedImage mounted = images.attach(text(image));
    EXPECT_EQ(mounted.mountPath, text(tool.mountPoint(volume)));
    EXPECT_EQ(mounted.device, QStringLiteral("/dev/disk4s1"));
    images.detach(mounted);
    EXPECT_FALSE(tool.isAttached());
    EXPECT_THAT(tool.calls(), ElementsAre("attach\t-readonly\t-nobrowse\t-plist\t" + image.string(),
                                          "detach\t/dev/disk4s1"));
}

TEST_F(DiskImagesTest, withoutADeviceTheMountPointIsDetached) {
    tool.setFlags({"--no-device"});
    const MountedImage mounted = images.attach(text(image));
    EXPECT_EQ(mounted.device, std::nullopt);
    images.detach(mounted);
    EXPECT_EQ(tool.calls().back(), "detach\t" + tool.mountPoint(volume).string());
    EXPECT_FALSE(tool.isAttached());
}

TEST_F(DiskImagesTest, theLastEntityWithAMountPointCounts) {
    tool.setFlags({"--two-mounts"});
    EXPECT_EQ(images.attach(text(image)).mountPath, text(tool.mountPoint(volume)));
}

TEST_F(DiskImagesTest, aFailureCarriesTheToolsOwnWords) {
    EXPECT_EQ(attachComplaint({"--exit=1", "--error=hdiutil: no wäy"}), invalid("hdiutil: no wäy\n"));
    EXPECT_EQ(attachComplaint({"--bad-error"}), invalid("Could not mount image."));
}

/// Answers well and fails all the same.
class TwoTongues : public ToolRunner {
  public:
    Result run(const std::string&, const std::vector<std::string>&) override {
        return {0, 1,
                "<plist><dict><key>system-entities</key><array><dict><key>mount-point</key>"
                "<string>/Volumes/Orlix</string></dict></array></dict></plist>",
                "no permission"};
    }
    void hurry(std::chrono::milliseconds) override {}
};

TEST(DiskImages, aToolThatFailsIsNotBelievedWhateverItAnswers) {
    TwoTongues tools;
    ASSERT_TRUE(DiskImages::mountedImage(QByteArray::fromStdString(tools.run({}, {}).output)));
    DiskImages images(tools, "/usr/bin/hdiutil");
    EXPECT_EQ(complaintOf([&] { images.attach(QStringLiteral("/a.dmg")); }),
              QStringLiteral("The downloaded disk image is invalid: no permission"));
}

TEST_F(DiskImagesTest, anAnswerWithoutAMountPointIsAFailure) {
    for (const char* flag : {"--garbage", "--array", "--no-entities", "--no-mount-point"}) {
        SCOPED_TRACE(flag);
        EXPECT_EQ(attachComplaint({flag}), invalid(""));
    }
}

TEST_F(DiskImagesTest, aToolThatDiesIsAFailure) {
    EXPECT_EQ(attachComplaint({"--crash"}), invalid(""));
}

TEST_F(DiskImagesTest, aToolThatHangsIsEndedAndHasFailed) {
    PosixToolRunner impatient(std::chrono::milliseconds(50));
    DiskImages limited(impatient, tool.path().string());
    tool.setFlags({"--hang=attach"});
    EXPECT_EQ(complaintOf([&] { limited.attach(text(image)); }), invalid(""));
    tool.setFlags({"--hang=detach"});
    EXPECT_EQ(complaintOf([&] {
                  limited.detach({QStringLiteral("/x"), std::nullopt});
              }),
              invalid("Could not detach image."));
}

TEST_F(DiskImagesTest, aFloodOfWordsDoesNotHoldTheToolUp) {
    tool.setFlags({"--flood=3000000"});
    EXPECT_EQ(images.attach(text(image)).mountPath, text(tool.mountPoint(volume)));
}

TEST_F(DiskImagesTest, aBusyVolumeIsAFailureToDetach) {
    const MountedImage mounted = images.attach(text(image));
    tool.setFlags({"--busy=1"});
    EXPECT_EQ(complaintOf([&] { images.detach(mounted); }), invalid("Could not detach image."));
    images.detach(mounted);
    EXPECT_FALSE(tool.isAttached());
}

TEST_F(DiskImagesTest, detachesByForce) {
    const MountedImage mounted = images.attach(text(image));
    images.detachByForce(mounted);
    EXPECT_EQ(tool.calls().back(), "detach\t/dev/disk4s1\t-force");
    EXPECT_FALSE(tool.isAttached());
    EXPECT_EQ(complaintOf([&] { images.detachByForce(mounted); }), invalid("Could not detach image."));
}

TEST_F(DiskImagesTest, aToolThatIsNotThereIsTheSystemsError) {
    DiskImages missing(runner, (folder / "none").string());
    EXPECT_EQ(complaintOf([&] { missing.attach(text(image)); }), QStringLiteral("No such file or directory"));
    EXPECT_EQ(complaintOf([&] {
                  missing.detach({QStringLiteral("/x"), std::nullopt});
              }),
              QStringLiteral("No such file or directory"));
}

QByteArray entities(const char* content) {
    return QByteArray("<plist version=\"1.0\"><dict><key>system-entities</key>") + content +
           "</dict></plist>";
}

TEST(MountedImage, isReadFromEntitiesOfTheRightTypesOnly) {
    const char* good = "<array><dict><key>mount-point</key><string>/Volumes/A</string></dict>";
    EXPECT_EQ(DiskImages::mountedImage(entities("<array/>")), std::nullopt);
    EXPECT_EQ(DiskImages::mountedImage(entities("<string>/Volumes/A</string>")), std::nullopt);
    EXPECT_EQ(DiskImages::mountedImage(entities((std::string(good) + "<string>x</string></array>").c_str())),
              std::nullopt)
        << "one entity that is no dictionary spoils them all";
    EXPECT_EQ(DiskImages::mountedImage(entities((std::string(good) + "</array>").c_str())),
              (MountedImage{QStringLiteral("/Volumes/A"), std::nullopt}));
    EXPECT_EQ(
        DiskImages::mountedImage(entities(
            (std::string(good) + "<dict><key>mount-point</key><integer>7</integer></dict></array>").c_str())),
        (MountedImage{QStringLiteral("/Volumes/A"), std::nullopt}))
        << "a mount point that is no text is none";
    EXPECT_EQ(
        DiskImages::mountedImage(entities("<array><dict><key>mount-point</key><string>/Volumes/A</string>"
                                          "<key>dev-entry</key><integer>4</integer></dict></array>")),
        (MountedImage{QStringLiteral("/Volumes/A"), std::nullopt}))
        << "a device that is no text is none";
}

}  // namespace
}  // namespace orlix
