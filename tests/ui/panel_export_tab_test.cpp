#include <QLineEdit>

#include "panel_tabs_fixture.h"
#include "ui/panel/export_tab.h"

namespace orlix::test {
namespace {

class ExportTabTest : public PanelTabsTest {
  protected:
    void SetUp() override {
        PanelTabsTest::SetUp();
        game->setGameMode(GameMode::humanVsHuman);
        game->startNewGame();
        panel->setSelectedTab(5);
    }
    QLineEdit* field() const { return find<QLineEdit>("fenInput"); }
    TextLabel* refusal() const { return find<TextLabel>("invalidFen"); }
    void play(const char* from, const char* to) const {
        game->handleSquareClick(*Square::fromText(from));
        game->handleSquareClick(*Square::fromText(to));
    }
    /// Opens the save panel by `button`.
    void openSavePanel(const char* button) {
        click(find(button));
        QCoreApplication::processEvents();
        ASSERT_TRUE(dialogs.isOpen());
    }

    const QString endgame_ = QStringLiteral("4k3/8/8/8/8/8/4P3/4K3 w - - 0 1");
};

TEST_F(ExportTabTest, copiesTheGameAsPgnAndSaysSo) {
    play("e2", "e4");
    click(find("copyPgn"));
    EXPECT_EQ(pasteboard.text, game->exportPGN());
    EXPECT_TRUE(pasteboard.text->contains(QStringLiteral("1. e4")));
    EXPECT_EQ(panel->toastMessage(), QStringLiteral("Copied to clipboard!"));
}

TEST_F(ExportTabTest, copiesThePositionThatIsOnTheBoardNow) {
    play("e2", "e4");
    click(find("copyFen"));
    EXPECT_EQ(pasteboard.text, QStringLiteral("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1"));
    EXPECT_EQ(panel->toastMessage(), QStringLiteral("Copied to clipboard!"));
}

TEST_F(ExportTabTest, showsThePositionAndFollowsIt) {
    auto* shown = find<TextLabel>("currentFen");
    EXPECT_EQ(shown->text(), game->exportFEN());
    play("e2", "e4");
    EXPECT_EQ(shown->text(), game->exportFEN());
    panel->setSelectedTab(0);
    play("e7", "e5");
    panel->setSelectedTab(5);
    EXPECT_EQ(shown->text(), game->exportFEN());
}

TEST_F(ExportTabTest, aSavedGameIsReportedOnceItIsSaved) {
    openSavePanel("savePgn");
    ASSERT_EQ(dialogs.saveRequests.size(), 1U);
    EXPECT_EQ(dialogs.saveRequests[0].title, QStringLiteral("Save PGN Game"));
    EXPECT_EQ(dialogs.saveRequests[0].fileName, QStringLiteral("velmorandix_game.pgn"));
    EXPECT_EQ(panel->toastMessage(), QString());
    dialogs.answer(QStringLiteral("/games/one.pgn"));
    EXPECT_EQ(store.files.at(QStringLiteral("/games/one.pgn")), game->exportPGN().toUtf8());
    EXPECT_EQ(panel->toastMessage(), QStringLiteral("PGN saved successfully."));
}

TEST_F(ExportTabTest, aCancelledSaveSaysNothing) {
    openSavePanel("savePgn");
    dialogs.answer(std::nullopt);
    EXPECT_EQ(panel->toastMessage(), QString());
    EXPECT_EQ(store.attempts, 0);
}

TEST_F(ExportTabTest, aFailedSaveClaimsNoSuccess) {
    store.isFull = true;
    openSavePanel("savePgn");
    dialogs.answer(QStringLiteral("/games/one.pgn"));
    EXPECT_EQ(store.attempts, 1);
    EXPECT_EQ(panel->toastMessage(), QString());
}

TEST_F(ExportTabTest, aSavePanelMayOutliveTheSidePanel) {
    openSavePanel("savePgn");
    panel.reset();
    dialogs.answer(QStringLiteral("/games/one.pgn"));
    EXPECT_EQ(store.files.size(), 1U);
}

TEST_F(ExportTabTest, savesThePositionUnderItsDefaultName) {
    EXPECT_EQ(find<PanelButton>("saveFen")->label(), QStringLiteral("Save FEN..."));
    openSavePanel("saveFen");
    EXPECT_EQ(dialogs.saveRequests[0].title, QStringLiteral("Save FEN Position"));
    EXPECT_EQ(dialogs.saveRequests[0].fileName, QStringLiteral("velmorandix_position.fen"));
    dialogs.answer(QStringLiteral("/games/one.fen"));
    EXPECT_EQ(store.files.at(QStringLiteral("/games/one.fen")), game->exportFEN().toUtf8());
}

TEST_F(ExportTabTest, loadsATypedPositionByItsButton) {
    QTest::keyClicks(field(), endgame_);
    EXPECT_EQ(field()->text(), endgame_);
    click(find("loadFen"));
    EXPECT_EQ(game->exportFEN(), endgame_);
    EXPECT_EQ(panel->toastMessage(), QStringLiteral("FEN loaded successfully."));
    EXPECT_FALSE(refusal()->isVisible());
}

TEST_F(ExportTabTest, loadsATypedPositionByReturn) {
    field()->setFocus();
    QTest::keyClicks(field(), endgame_);
    QTest::keyClick(field(), Qt::Key_Return);
    EXPECT_EQ(game->exportFEN(), endgame_);
    EXPECT_EQ(panel->toastMessage(), QStringLiteral("FEN loaded successfully."));
}

TEST_F(ExportTabTest, anInvalidPositionLeavesTheBoardAndSaysSoAtTheField) {
    play("e2", "e4");
    const QString before = game->exportFEN();
    for (const char* text : {"", "nonsense", "4k3/8/8 w - - 0 1"}) {
        field()->setText(QString::fromLatin1(text));
        EXPECT_FALSE(refusal()->isVisible());
        click(find("loadFen"));
        EXPECT_EQ(game->exportFEN(), before) << text;
        EXPECT_TRUE(refusal()->isVisible()) << text;
        EXPECT_EQ(refusal()->text(), QStringLiteral("Invalid FEN string."));
        EXPECT_EQ(field()->accessibleDescription(), QStringLiteral("Invalid FEN string."));
        EXPECT_EQ(panel->toastMessage(), QString());
        loc->setCurrentLanguage(Language::german);
        EXPECT_EQ(refusal()->text(), loc->text("invalid_fen"));
        EXPECT_EQ(field()->accessibleDescription(), loc->text("invalid_fen"));
        loc->setCurrentLanguage(Language::english);
        field()->setText(QStringLiteral("4k3"));
    }
    EXPECT_FALSE(refusal()->isVisible()) << "typing takes the complaint back";
}

TEST_F(ExportTabTest, spaceTypesInTheFieldAndPressesNoButton) {
    field()->setFocus();
    QTest::keyClicks(field(), QStringLiteral("a b"));
    EXPECT_EQ(field()->text(), QStringLiteral("a b"));
    pasteboard.text.reset();
    find("copyPgn")->setFocus(Qt::TabFocusReason);
    QTest::keyClick(find("copyPgn"), Qt::Key_Space);
    EXPECT_FALSE(pasteboard.text);
    QTest::keyClick(find("copyPgn"), Qt::Key_Return);
    EXPECT_TRUE(pasteboard.text);
}

TEST_F(ExportTabTest, textsFollowTheLanguageButForTheFixedOne) {
    click(find("loadFen"));
    for (const Language language : allLanguages) {
        loc->setCurrentLanguage(language);
        EXPECT_EQ(find<PanelButton>("copyPgn")->label(), loc->text("btn_copy_pgn"));
        EXPECT_EQ(find<PanelButton>("savePgn")->label(), loc->text("btn_save_pgn"));
        EXPECT_EQ(find<PanelButton>("copyFen")->label(), loc->text("btn_copy_fen"));
        EXPECT_EQ(find<PanelButton>("loadFen")->label(), loc->text("btn_apply"));
        EXPECT_EQ(field()->accessibleName(), loc->text("btn_load_fen"));
        EXPECT_EQ(refusal()->text(), loc->text("invalid_fen"));
        EXPECT_EQ(find<PanelButton>("saveFen")->label(), QStringLiteral("Save FEN..."));
    }
}

TEST_F(ExportTabTest, everyTextFits) {
    click(find("loadFen"));
    forEveryLanguageAndWidth([this](const std::string& where) { EXPECT_GT(expectAllFit(where), 18); });
}

TEST_F(ExportTabTest, tabReachesEveryControl) {
    QSet<QString> reached;
    field()->setFocus(Qt::TabFocusReason);
    for (int step = 0; step < 30; ++step) {
        if (const QWidget* focused = panel->focusWidget()) reached.insert(focused->objectName());
        QTest::keyClick(panel->focusWidget(), Qt::Key_Tab);
    }
    for (const char* name : {"copyPgn", "savePgn", "copyFen", "saveFen", "fenInput", "loadFen"})
        EXPECT_TRUE(reached.contains(QString::fromLatin1(name))) << name;
}

}  // namespace
}  // namespace orlix::test
