#include "records/pgn_exporter.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <memory>
#include <optional>
#include <vector>

#include "support/fake_file_dialogs.h"
#include "support/fake_file_store.h"
#include "support/fake_pasteboard.h"

namespace orlix {
namespace {

class PGNExporterTest : public ::testing::Test {
  protected:
    test::FakeFileDialogs dialogs;
    test::FakeFileStore files;
    test::FakePasteboard pasteboard;
    std::unique_ptr<PGNExporter> exporter = std::make_unique<PGNExporter>(dialogs, files, pasteboard);

    static void runEventLoop() { QCoreApplication::processEvents(); }
};

TEST_F(PGNExporterTest, gamePanelHasItsTitleNameAndKindOfFile) {
    exporter->savePGNDialog(QStringLiteral("1. e4"), QStringLiteral("velmorandix_game.pgn"));
    runEventLoop();

    ASSERT_EQ(dialogs.saveRequests.size(), 1u);
    EXPECT_EQ(dialogs.saveRequests[0].title, QStringLiteral("Save PGN Game"));
    EXPECT_EQ(dialogs.saveRequests[0].fileName, QStringLiteral("velmorandix_game.pgn"));
    EXPECT_EQ(dialogs.saveRequests[0].fileExtension, QStringLiteral("pgn"));
}

TEST_F(PGNExporterTest, positionPanelHasItsTitleNameAndKindOfFile) {
    exporter->saveFENDialog(QStringLiteral("8/8/8/8/8/8/8/8 w - - 0 1"),
                            QStringLiteral("velmorandix_position.fen"));
    runEventLoop();

    ASSERT_EQ(dialogs.saveRequests.size(), 1u);
    EXPECT_EQ(dialogs.saveRequests[0].title, QStringLiteral("Save FEN Position"));
    EXPECT_EQ(dialogs.saveRequests[0].fileName, QStringLiteral("velmorandix_position.fen"));
    EXPECT_EQ(dialogs.saveRequests[0].fileExtension, QStringLiteral("fen"));
}

TEST_F(PGNExporterTest, panelOpensAfterItsCallerHasReturned) {
    exporter->savePGNDialog(QStringLiteral("1. e4"), QStringLiteral("a.pgn"));
    EXPECT_TRUE(dialogs.saveRequests.empty());
    runEventLoop();
    EXPECT_EQ(dialogs.saveRequests.size(), 1u);
}

TEST_F(PGNExporterTest, confirmedPathGetsTheTextInUtf8) {
    exporter->savePGNDialog(QStringLiteral("[White \"Zoë Łęcka\"]\n"), QStringLiteral("a.pgn"));
    runEventLoop();
    EXPECT_EQ(files.attempts, 0);

    dialogs.answer(QStringLiteral("/games/Zoë.pgn"));
    ASSERT_EQ(files.files.size(), 1u);
    EXPECT_EQ(files.files.at(QStringLiteral("/games/Zoë.pgn")),
              QByteArray("[White \"Zo\xC3\xAB \xC5\x81\xC4\x99"
                         "cka\"]\n"));
}

TEST_F(PGNExporterTest, cancelWritesNothing) {
    exporter->saveFENDialog(QStringLiteral("fen"), QStringLiteral("a.fen"));
    runEventLoop();
    dialogs.answer(std::nullopt);
    EXPECT_EQ(files.attempts, 0);
}

TEST_F(PGNExporterTest, failedWriteIsNeitherReportedNorRetried) {
    files.isFull = true;
    exporter->savePGNDialog(QStringLiteral("1. e4"), QStringLiteral("a.pgn"));
    runEventLoop();
    dialogs.answer(QStringLiteral("/full/a.pgn"));
    runEventLoop();

    EXPECT_EQ(files.attempts, 1);
    EXPECT_EQ(dialogs.saveRequests.size(), 1u);
}

TEST_F(PGNExporterTest, answerAfterTheExporterIsGoneIsIgnored) {
    exporter->savePGNDialog(QStringLiteral("1. e4"), QStringLiteral("a.pgn"));
    runEventLoop();
    exporter.reset();
    dialogs.answer(QStringLiteral("/games/a.pgn"));
    EXPECT_EQ(files.attempts, 0);
}

TEST_F(PGNExporterTest, copyReplacesThePasteboardsText) {
    pasteboard.setText(QStringLiteral("before"));
    exporter->copyToClipboard(QStringLiteral("1. e4 e5"));
    EXPECT_EQ(pasteboard.text, QStringLiteral("1. e4 e5"));
}

TEST_F(PGNExporterTest, theCallerLearnsWhatBecameOfTheSave) {
    using Outcome = PGNExporter::SaveOutcome;
    std::vector<Outcome> outcomes;
    const auto save = [&](const std::optional<QString>& path) {
        exporter->savePGNDialog(QStringLiteral("1. e4"), QStringLiteral("a.pgn"),
                                [&outcomes](Outcome outcome) { outcomes.push_back(outcome); });
        runEventLoop();
        dialogs.answer(path);
    };
    save(QStringLiteral("/games/a.pgn"));
    save(std::nullopt);
    files.isFull = true;
    save(QStringLiteral("/games/b.pgn"));
    EXPECT_EQ(outcomes, (std::vector{Outcome::saved, Outcome::cancelled, Outcome::failed}));
    EXPECT_EQ(files.files.size(), 1u);

    files.isFull = false;
    exporter->saveFENDialog(QStringLiteral("8/8/8/8/8/8/8/8 w - - 0 1"), QStringLiteral("a.fen"),
                            [&outcomes](Outcome outcome) { outcomes.push_back(outcome); });
    runEventLoop();
    dialogs.answer(QStringLiteral("/games/a.fen"));
    EXPECT_EQ(outcomes.size(), 4u);
    EXPECT_EQ(outcomes.back(), Outcome::saved);
}

}  // namespace
}  // namespace orlix
