#include "automatch_panel_fixture.h"
#include "ui/panel/engine_notice.h"

namespace orlix::test {
namespace {

class AutomatchControlsTest : public AutomatchPanel {
  protected:
    QStringList shownCommands() const {
        QStringList labels;
        for (const char* name : {"startAutomatch", "pauseAutomatch", "stopAutomatch"}) {
            if (isShown(name)) labels.append(find<PanelButton>(name)->label());
        }
        return labels;
    }
    static void pressReturn(QWidget* widget) {
        widget->setFocus(Qt::TabFocusReason);
        ASSERT_TRUE(widget->hasFocus());
        QTest::keyClick(widget, Qt::Key_Return);
    }
};

TEST_F(AutomatchControlsTest, pauseAndStopAreEquallyHighInEveryLanguage) {
    startSeries();
    for (const Language language : allLanguages) {
        loc->setCurrentLanguage(language);
        QCoreApplication::sendPostedEvents();
        EXPECT_EQ(find("pauseAutomatch")->y(), find("stopAutomatch")->y());
        EXPECT_EQ(find("pauseAutomatch")->height(), find("stopAutomatch")->height());
    }
}

TEST_F(AutomatchControlsTest, onlyTheCommandsThatApplyAreShown) {
    openTab();
    EXPECT_EQ(joined(shownCommands()), "Start Automatch");
    click(find("startAutomatch"));
    EXPECT_TRUE(automatch->isAutomatchActive());
    EXPECT_EQ(automatch->currentGameIndex(), 1);
    EXPECT_EQ(joined(shownCommands()), "Pause Match | Stop Match");
    click(find("pauseAutomatch"));
    EXPECT_TRUE(automatch->isAutomatchPaused());
    EXPECT_TRUE(game->isPaused());
    EXPECT_EQ(joined(shownCommands()), "Resume Match | Stop Match");
    click(find("pauseAutomatch"));
    EXPECT_FALSE(automatch->isAutomatchPaused());
    EXPECT_FALSE(game->isPaused());
    EXPECT_EQ(joined(shownCommands()), "Pause Match | Stop Match");
    click(find("stopAutomatch"));
    EXPECT_FALSE(automatch->isAutomatchActive());
    EXPECT_EQ(automatch->matchFinishedReason(), QStringLiteral("Automatch gestoppt."));
    EXPECT_EQ(joined(shownCommands()), "Start Automatch");
}

TEST_F(AutomatchControlsTest, startPlaysWhatIsSet) {
    openTab();
    automatch->setTotalGames(3);
    automatch->setEngine1(engines->availableEngines().at(1));
    automatch->setEngine2(engines->availableEngines().at(0));
    automatch->setEngine1Limit(true, 1500);
    click(find("startAutomatch"));
    EXPECT_EQ(automatch->totalGames(), 3);
    EXPECT_EQ(game->gameMode(), GameMode::engineVsEngine);
    EXPECT_EQ(engines->selectedWhiteEngine(), engines->availableEngines().at(1));
    EXPECT_EQ(engines->selectedBlackEngine(), engines->availableEngines().at(0));
    EXPECT_TRUE(game->whiteEngineLimitElo());
    EXPECT_EQ(game->whiteEngineElo(), 1500);
}

TEST_F(AutomatchControlsTest, aPauseInTheCountdownEndsWithTheNextGameAtOnce) {
    startSeries();
    end(GameEndReason::stalemate());
    game->resign(PieceColor::white);
    click(find("pauseAutomatch"));
    EXPECT_FALSE(automatch->isCountingDown());
    EXPECT_FALSE(isShown("countdown"));
    click(find("pauseAutomatch"));
    EXPECT_EQ(automatch->currentGameIndex(), 2);
    EXPECT_FALSE(automatch->isCountingDown());
}

TEST_F(AutomatchControlsTest, withoutAnEngineNothingCanBeStarted) {
    panel->setSelectedTab(automatchTab);
    EXPECT_FALSE(find("startAutomatch")->isEnabled());
    EXPECT_TRUE(panel->findChild<AutomatchTab*>()->findChild<EngineNotice*>()->isVisible());
    registerEngines();
    EXPECT_TRUE(find("startAutomatch")->isEnabled());
    EXPECT_FALSE(panel->findChild<AutomatchTab*>()->findChild<EngineNotice*>()->isVisible());
}

TEST_F(AutomatchControlsTest, theNoticeAddsAnEngine) {
    panel->setSelectedTab(automatchTab);
    files.executables.insert(QStringLiteral("/engines/mine"));
    click(panel->findChild<AutomatchTab*>()->findChild<QAbstractButton*>(QStringLiteral("addEngine")));
    ASSERT_TRUE(dialogs.isOpen());
    dialogs.answer(QStringLiteral("/engines/mine"));
    EXPECT_TRUE(eventually([this] { return engines->availableEngines().size() == 1; }));
}

TEST_F(AutomatchControlsTest, theKeyboardGoesFromStartToPauseAndFromStopToNothing) {
    openTab();
    pressReturn(find("startAutomatch"));
    EXPECT_TRUE(find("pauseAutomatch")->hasFocus());
    pressReturn(find("pauseAutomatch"));
    EXPECT_TRUE(find("pauseAutomatch")->hasFocus());
    EXPECT_TRUE(automatch->isAutomatchPaused());
    pressReturn(find("stopAutomatch"));
    // Another Return must not start a series by accident: the history would be gone.
    EXPECT_FALSE(find("startAutomatch")->hasFocus());
    EXPECT_FALSE(QApplication::focusWidget() && QApplication::focusWidget()->inherits("QAbstractButton"));
}

TEST_F(AutomatchControlsTest, theEndOfTheSeriesTakesTheKeyboardFromItsButtons) {
    startSeries(1);
    find("pauseAutomatch")->setFocus(Qt::TabFocusReason);
    end(GameEndReason::stalemate());
    EXPECT_FALSE(find("startAutomatch")->hasFocus());
    EXPECT_FALSE(QApplication::focusWidget() && QApplication::focusWidget()->inherits("QAbstractButton"));
}

TEST_F(AutomatchControlsTest, spacePressesNothingAndTravelsOn) {
    class KeyWatch : public QWidget {
      public:
        int spaces = 0;
        void keyPressEvent(QKeyEvent* event) override { spaces += event->key() == Qt::Key_Space; }
    } window;
    startSeries();
    playOn(3);
    panel->setParent(&window);
    window.show();
    panel->setSelectedTab(automatchTab);
    list()->choose(0);
    auto* tab = panel->findChild<AutomatchTab*>();
    int count = 0;
    for (QWidget* widget : tab->findChildren<QWidget*>()) {
        if (!widget->isVisible() || widget->focusPolicy() == Qt::NoFocus) continue;
        const int before = window.spaces;
        QTest::keyClick(widget, Qt::Key_Space);
        EXPECT_EQ(window.spaces, before + 1) << utf8(widget->objectName());
        ++count;
    }
    EXPECT_GE(count, 8);
    EXPECT_TRUE(automatch->isAutomatchActive());
    EXPECT_FALSE(automatch->isAutomatchPaused());
    EXPECT_EQ(list()->chosenRow(), 0);
    panel->setParent(nullptr);
}

TEST_F(AutomatchControlsTest, everyCommandIsNamedInEveryLanguage) {
    openTab();
    for (const Language language : allLanguages) {
        loc->setCurrentLanguage(language);
        EXPECT_EQ(find("startAutomatch")->accessibleName(), loc->text("btn_start_automatch"));
        automatch->startAutomatch();
        EXPECT_EQ(find("pauseAutomatch")->accessibleName(), loc->text("btn_pause_automatch"));
        EXPECT_EQ(find("stopAutomatch")->accessibleName(), loc->text("btn_stop_automatch"));
        automatch->pauseAutomatch();
        EXPECT_EQ(find("pauseAutomatch")->accessibleName(), loc->text("btn_resume_automatch"));
        automatch->stopAutomatch();
    }
}

}  // namespace
}  // namespace orlix::test
