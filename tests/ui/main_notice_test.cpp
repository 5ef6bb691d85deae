#include "l10n/extra_texts.h"
#include "shell_fixture.h"
#include "ui/controls/panel_button.h"
#include "ui/controls/text_label.h"
#include "ui/engine_notice_view.h"

namespace orlix {
namespace {

class EngineNotice : public test::ShellTest {
  protected:
    EngineNoticeView* notice() const { return find<EngineNoticeView>(); }
    QString text() const { return notice()->findChild<TextLabel*>()->text(); }
    PanelButton* button(const char* key) const {
        for (PanelButton* candidate : notice()->findChildren<PanelButton*>()) {
            if (candidate->isVisible() && candidate->label() == loc.text(key)) return candidate;
        }
        return nullptr;
    }
    QString extra(ExtraText id) const { return extraText(loc.currentLanguage(), id); }
    /// Presses the button that adds an engine and answers the panel.
    void addEngine(const std::optional<QString>& path) {
        PanelButton* add = button("add_engine");
        ASSERT_NE(add, nullptr);
        QTest::mouseClick(add, Qt::LeftButton);
        ASSERT_TRUE(dialogs.isOpen());
        dialogs.answer(path);
    }
};

TEST_F(EngineNotice, saysOverTheBoardThatThereIsNoEngineAndOffersToAddOne) {
    showWindow();
    ASSERT_TRUE(notice()->isVisible());
    EXPECT_EQ(text(), extra(ExtraText::noEngineRegistered));
    EXPECT_NE(button("add_engine"), nullptr);
    EXPECT_TRUE(find<BoardView>()->geometry().contains(notice()->geometry()));
    EXPECT_EQ(notice()->height(), notice()->heightForWidth(notice()->width()));
}

TEST_F(EngineNotice, isHiddenWhereNoEngineIsMissing) {
    installEngine();
    showWindow();
    EXPECT_FALSE(notice()->isVisible());
}

TEST_F(EngineNotice, isHiddenBetweenPeopleAndAfterTheEnd) {
    showWindowForTwoPeople();
    EXPECT_FALSE(notice()->isVisible());
    game->setGameMode(GameMode::engineVsEngine);
    game->startNewGame();
    EXPECT_TRUE(notice()->isVisible());
    game->resign(PieceColor::white);
    EXPECT_FALSE(notice()->isVisible());
}

TEST_F(EngineNotice, addedEngineTakesTheEmptySeatAndPlays) {
    showWindow();
    addEngine(test::puppetPath);
    fileTests.executables.insert(test::puppetPath);
    EXPECT_EQ(text(), extra(ExtraText::checkingEngine));
    EXPECT_FALSE(button("add_engine")->isEnabled());

    ASSERT_TRUE(eventually([this] { return !notice()->isVisible(); }));
    ASSERT_TRUE(engines->selectedBlackEngine().has_value());
    EXPECT_EQ(engines->selectedBlackEngine()->name, QStringLiteral("Puppet"));
    ASSERT_NE(game->blackEngineProcess(), nullptr);
    click("e2");
    click("e4");
    EXPECT_TRUE(eventually([this] { return launcher.lastHeard("go "); }));
}

TEST_F(EngineNotice, oneAddedEngineTakesBothEmptySeats) {
    buildWindow();
    game->setGameMode(GameMode::engineVsEngine);
    showWindow();
    fileTests.executables.insert(test::puppetPath);
    addEngine(test::puppetPath);
    ASSERT_TRUE(eventually([this] { return !notice()->isVisible(); }));
    EXPECT_NE(game->whiteEngineProcess(), nullptr);
    EXPECT_NE(game->blackEngineProcess(), nullptr);
}

TEST_F(EngineNotice, chosenEngineOfTheOtherSideStays) {
    fileTests.executables.insert(test::puppetPath);
    buildWindow();
    EngineConfiguration own;
    own.name = QStringLiteral("Own");
    own.executablePath = QStringLiteral("/engines/own");
    engines->setSelectedWhiteEngine(own);
    showWindow();
    addEngine(test::puppetPath);
    ASSERT_TRUE(eventually([this] { return !notice()->isVisible(); }));
    EXPECT_EQ(engines->selectedWhiteEngine()->name, QStringLiteral("Own"));
    EXPECT_EQ(engines->selectedBlackEngine()->name, QStringLiteral("Puppet"));
}

TEST_F(EngineNotice, gameThatHasBegunIsNotThrownAway) {
    fileTests.executables.insert(test::puppetPath);
    showWindow();
    game->handleSquareClick(*Square::fromText("e2"));
    game->handleSquareClick(*Square::fromText("e4"));
    addEngine(test::puppetPath);
    ASSERT_TRUE(eventually([this] { return engines->selectedBlackEngine().has_value(); }));
    EXPECT_EQ(game->board().history.size(), 1u);
    ASSERT_TRUE(notice()->isVisible());
    EXPECT_EQ(text(), extra(ExtraText::newGameSeatsEngine));
    EXPECT_EQ(button("add_engine"), nullptr);

    ASSERT_NE(button("btn_new_game"), nullptr);
    QTest::mouseClick(button("btn_new_game"), Qt::LeftButton);
    EXPECT_FALSE(notice()->isVisible());
    EXPECT_NE(game->blackEngineProcess(), nullptr);
}

TEST_F(EngineNotice, refusedFileIsExplainedAndAnotherMayBeTried) {
    fileTests.executables.insert(test::puppetPath);
    launcher.introductions[QStringLiteral("/bin/cat")] = "what?\n";
    showWindow();
    addEngine(QStringLiteral("/bin/cat"));
    ASSERT_TRUE(eventually([this] { return text().startsWith(QLatin1String("Engine failed UCI test: ")); }));
    EXPECT_TRUE(notice()->isVisible());
    ASSERT_NE(button("add_engine"), nullptr);
    EXPECT_TRUE(button("add_engine")->isEnabled());
    EXPECT_EQ(notice()->height(), notice()->heightForWidth(notice()->width()));

    addEngine(test::puppetPath);
    EXPECT_TRUE(eventually([this] { return !notice()->isVisible(); }));
}

TEST_F(EngineNotice, cancelledPanelLeavesEverythingAsItWas) {
    showWindow();
    addEngine(std::nullopt);
    EXPECT_TRUE(notice()->isVisible());
    EXPECT_EQ(text(), extra(ExtraText::noEngineRegistered));
    EXPECT_TRUE(button("add_engine")->isEnabled());
    EXPECT_TRUE(launcher.engines().empty());
}

TEST_F(EngineNotice, otherWordsWhereEnginesAreRegisteredButNoneIsChosen) {
    installEngine();
    buildWindow();
    engines->setSelectedBlackEngine(std::nullopt);
    showWindow();
    ASSERT_TRUE(notice()->isVisible());
    EXPECT_EQ(text(), extra(ExtraText::noEngineChosen));
}

TEST_F(EngineNotice, closedNoticeComesBackOnceTheGameHasMovedOn) {
    showWindow();
    QTest::mouseClick(button("btn_close"), Qt::LeftButton);
    EXPECT_FALSE(notice()->isVisible());
    click("e2");
    game->flipBoard();
    game->flipBoard();
    EXPECT_FALSE(notice()->isVisible());
    click("e4");
    ASSERT_TRUE(notice()->isVisible()) << "now the empty seat is to move";

    QTest::mouseClick(button("btn_close"), Qt::LeftButton);
    loc.setCurrentLanguage(Language::german);
    EXPECT_FALSE(notice()->isVisible());
    game->startNewGame();
    EXPECT_TRUE(notice()->isVisible());
}

TEST_F(EngineNotice, speaksTheInterfacesLanguageAndNothingIsCut) {
    showWindow();
    for (const Language language : allLanguages) {
        loc.setCurrentLanguage(language);
        EXPECT_EQ(text(), extra(ExtraText::noEngineRegistered));
        ASSERT_NE(button("add_engine"), nullptr);
        ASSERT_NE(button("btn_close"), nullptr);
        for (const QWidget* child : notice()->findChildren<QWidget*>()) {
            const auto* shows = dynamic_cast<const ShowsText*>(child);
            if (shows == nullptr || !child->isVisible()) continue;
            for (const ShownText& shown : shows->shownTexts()) {
                EXPECT_LE(shown.needed.width(), shown.room.width()) << qPrintable(shown.text);
                EXPECT_LE(shown.needed.height(), shown.room.height()) << qPrintable(shown.text);
            }
        }
    }
}

}  // namespace
}  // namespace orlix
