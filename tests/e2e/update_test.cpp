// An update from the first look at the feed to the new version's first window: the application and its
// updater as bundles would hold them, an HTTPS server, and a user who clicks one button.
#include <gmock/gmock.h>

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <filesystem>

#include "e2e/accessible_tree.h"
#include "e2e/desktop.h"
#include "e2e/engine_registry.h"
#include "e2e/played_application.h"
#include "support/disk_image_tool.h"
#include "support/https_server.h"
#include "support/temporary_folder.h"
#include "updater/seal_signatures.h"

namespace orlix::e2e {
namespace {

namespace fs = std::filesystem;
using test::BundleSample;
using ::testing::Contains;
using ::testing::IsEmpty;
using ::testing::Not;

constexpr int limitMs = 60000;

QString text(const fs::path& path) {
    return QString::fromStdString(path.string());
}

class UpdateByHand : public ::testing::Test {
  protected:
    UpdateByHand() {
        makeApplication(installed(), "1.0.0", "1");
        makeApplication(folder_ / "Volume/Velmorandix Orlix.app", "2.0.0", "7");
        serveRelease();
    }

    fs::path installed() const { return folder_ / "Applications/Velmorandix Orlix.app"; }

    // As a release is packed: property list, program, updater; each sealed by one team.
    static void makeApplication(const fs::path& bundle, const std::string& version,
                                const std::string& build) {
        BundleSample sample;
        sample.version = version;
        sample.build = build;
        test::makeBundle(bundle, sample);
        const fs::path program = bundle / "Contents/MacOS" / test::sampleProgram;
        fs::copy_file(ORLIX_SEALED_APPLICATION, program, fs::copy_options::overwrite_existing);
        const fs::path updater = bundle / "Contents/Helpers/VelmorandixOrlixUpdater";
        fs::create_directories(updater.parent_path());
        fs::copy_file(ORLIX_SEALED_UPDATER, updater);
        fs::copy_file("/bin/cat", bundle / "Contents/MacOS/cat");
        test::sealProgram(updater, sample.identifier + ".updater", sample.team);
        test::sealBundle(bundle, sample.identifier, sample.team);
    }

    void serveRelease() {
        const QByteArray image = QByteArray::fromStdString(
            test::DiskImageTool::imageOf(folder_ / "Volume", std::string(100'000, 'i')));
        const QJsonObject feed{
            {QStringLiteral("version"), QStringLiteral("2.0.0")},
            {QStringLiteral("build"), QStringLiteral("7")},
            {QStringLiteral("size"), image.size()},
            {QStringLiteral("sha256"),
             QString::fromLatin1(QCryptographicHash::hash(image, QCryptographicHash::Sha256).toHex())},
            {QStringLiteral("download_url"), server_.url(QStringLiteral("/files/orlix.dmg")).toString()},
            {QStringLiteral("release_notes"), QStringLiteral("Better chess.")}};
        test::Answer answer;
        answer.body = QJsonDocument(feed).toJson();
        server_.answer(QStringLiteral("/updates/Velmorandix/appcast.json"), answer);
        answer.body = image;
        server_.answer(QStringLiteral("/files/orlix.dmg"), answer);
        QFile authority(text(folder_ / "authority.pem"));
        ASSERT_TRUE(authority.open(QIODevice::WriteOnly));
        authority.write(authority_.certificate().toPem());
    }

    QStringList environment(const QString& patienceMs = QStringLiteral("60000")) const {
        return {QStringLiteral("ORLIX_TEST_AUTHORITY=") + text(folder_ / "authority.pem"),
                QStringLiteral("ORLIX_TEST_IMAGE_TOOL=") + text(tool_.path()),
                QStringLiteral("ORLIX_TEST_FEED=") +
                    server_.url(QStringLiteral("/updates/Velmorandix/appcast.json")).toString(),
                QStringLiteral("ORLIX_TEST_PATIENCE_MS=") + patienceMs};
    }

    // The look at the feed of a later start would take the place of what is shown then.
    static void stopLookingAtLaunch(const PlayedApplication& application) {
        QFile file(defaultsFile(application.home()));
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        QByteArray defaults = file.readAll();
        defaults.replace("[General]\n", "[General]\nvelmorandix_orlix_update_check_at_launch=false\n");
        ASSERT_TRUE(defaults.contains("check_at_launch"));
        file.seek(0);
        file.write(defaults);
    }

    // Runs the installed application until it has quit for the update that it offers.
    void acceptUpdate(PlayedApplication& application) {
        const QString line = QStringLiteral("Velmorandix Orlix 2.0.0 (build 7) is available.");
        ASSERT_TRUE(waitUntil([&] { return tree_.find(line).has_value(); }, limitMs))
            << tree_.description().toStdString();
        stopLookingAtLaunch(application);
        application.clickControl(QStringLiteral("Download, Install & Relaunch"));
        ASSERT_TRUE(waitUntil([&] { return !application.isRunning(); }, limitMs))
            << tree_.description().toStdString();
        EXPECT_EQ(application.exitCode(), 0);
    }
    // The window that the updater brings shows this line, and closes with everything that was started.
    void expectShownAndClosed(const PlayedApplication& application, const QString& line) {
        ASSERT_TRUE(waitUntil([&] { return tree_.find(line).has_value(); }, limitMs))
            << tree_.description().toStdString();
        const QString program = text(installed() / "Contents/MacOS" / test::sampleProgram);
        EXPECT_EQ(application.processesLeft().filter(program).size(), 1) << "besides engines";
        desktop_.press(QStringLiteral("Escape"));
        ASSERT_TRUE(waitUntil([&] { return !tree_.find(line); }, limitMs)) << "the sheet does not close";
        desktop_.press(QStringLiteral("alt+F4"));
        waitUntil([&] { return application.processesLeft().isEmpty(); }, limitMs);
        EXPECT_THAT(application.processesLeft(), IsEmpty());
    }
    std::string installedVersion() const {
        const std::string list = test::readFile(installed() / "Contents/Info.plist");
        return list.find("<string>2.0.0</string>") != std::string::npos ? "2.0.0" : "1.0.0";
    }
    QStringList besideIt() const {
        return QDir(text(installed().parent_path()))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    const test::TemporaryFolder folder_;
    const test::DiskImageTool tool_{{}, folder_.path()};
    const test::CertificateAuthority authority_;
    test::HttpsServer server_{authority_.issue({QStringLiteral("localhost")})};
    Desktop desktop_;
    AccessibleTree tree_{desktop_.busAddress()};
};

TEST_F(UpdateByHand, oneClickBringsTheNewVersionWhichSaysSo) {
    PlayedApplication application(desktop_, tree_, text(installed() / "Contents/MacOS" / test::sampleProgram),
                                  {}, environment());
    acceptUpdate(application);
    expectShownAndClosed(application, QStringLiteral("Velmorandix Orlix 2.0.0 was installed."));
    EXPECT_EQ(installedVersion(), "2.0.0");
    EXPECT_TRUE(test::readSeal(installed()).has_value());
    EXPECT_EQ(besideIt(), QStringList{QStringLiteral("Velmorandix Orlix.app")});
    EXPECT_FALSE(tool_.isAttached());
}

TEST_F(UpdateByHand, anUpdateThatFailsBringsTheOldVersionBackWhichSaysWhy) {
    QProcess inside;
    inside.start(text(installed() / "Contents/MacOS/cat"), QStringList{});
    ASSERT_TRUE(inside.waitForStarted());
    PlayedApplication application(desktop_, tree_, text(installed() / "Contents/MacOS" / test::sampleProgram),
                                  {}, environment(QStringLiteral("500")));
    acceptUpdate(application);
    expectShownAndClosed(application,
                         QStringLiteral("Velmorandix Orlix 2.0.0 could not be installed: a program of the "
                                        "installed application is still running."));
    EXPECT_EQ(installedVersion(), "1.0.0");
    EXPECT_TRUE(test::readSeal(installed()).has_value());
    EXPECT_EQ(besideIt(), QStringList{QStringLiteral("Velmorandix Orlix.app")});
    inside.kill();
    inside.waitForFinished();
}

}  // namespace
}  // namespace orlix::e2e
