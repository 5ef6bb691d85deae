// The installed program, from its first picture to its last process, with a real engine at the other side.
#include <gmock/gmock.h>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <memory>

#include "e2e/accessible_tree.h"
#include "e2e/desktop.h"
#include "e2e/played_application.h"
#include "e2e/played_game.h"

namespace orlix::e2e {
namespace {

using ::testing::Contains;
using ::testing::IsEmpty;

constexpr int mostPlies = 60;
constexpr int quitLimitMs = 60000;

class InstalledProgram : public ::testing::Test {
  protected:
    void SetUp() override {
        QProcess install;
        install.setProcessChannelMode(QProcess::MergedChannels);
        install.start(QStringLiteral("cmake"), {QStringLiteral("--install"), QStringLiteral(ORLIX_BINARY_DIR),
                                                QStringLiteral("--prefix"), prefix_.path()});
        ASSERT_TRUE(install.waitForFinished(120'000));
        ASSERT_EQ(install.exitCode(), 0) << install.readAll().toStdString();
    }

    QString installed(const char* path) const { return prefix_.filePath(QString::fromLatin1(path)); }

    QTemporaryDir prefix_;
};

TEST_F(InstalledProgram, bringsWhatADesktopNeeds) {
    for (const char* path :
         {"bin/velmorandix-orlix", "share/applications/velmorandix-orlix.desktop",
          "share/icons/hicolor/scalable/apps/velmorandix-orlix.svg",
          "share/icons/hicolor/16x16/apps/velmorandix-orlix.png",
          "share/icons/hicolor/512x512/apps/velmorandix-orlix.png", "share/doc/velmorandix-orlix/copyright"})
        EXPECT_TRUE(QFile::exists(installed(path))) << path;
    EXPECT_EQ(QDir(installed("share/velmorandix-orlix/sounds")).entryList(QDir::Files).size(), 4);
}

TEST_F(InstalledProgram, playsAGameByMouseAgainstStockfishSavesItAndLeavesNothing) {
    Desktop desktop;
    AccessibleTree tree(desktop.busAddress());
    PlayedApplication application(desktop, tree, installed("bin/velmorandix-orlix"));

    application.startGame(QStringLiteral("Player vs UCI Engine"), 1);
    const ChessBoard board = playAgainstEngine(application, mostPlies);
    EXPECT_GE(board.history.size(), 10U) << "too short to prove anything";
    EXPECT_THAT(application.sentLines(), Contains(QStringLiteral("go movetime 100")));

    const QString pgn = QDir(application.home()).filePath(QStringLiteral("played.pgn"));
    application.savePgn(pgn);
    EXPECT_EQ(movesReadByPgnExtract(pgn), uciMoves(board));

    application.closeWindow();
    EXPECT_FALSE(application.isRunning()) << "the window did not close";
    EXPECT_EQ(application.exitCode(), 0);
    waitUntil([&] { return application.processesLeft().isEmpty(); }, quitLimitMs);
    EXPECT_THAT(application.processesLeft(), IsEmpty());
}

}  // namespace
}  // namespace orlix::e2e
