#include <QLineEdit>
#include <QSignalSpy>

#include "automatch_panel_fixture.h"
#include "ui/controls/picker_button.h"
#include "ui/controls/stepper.h"
#include "ui/controls/toggle_switch.h"
#include "ui/controls/value_slider.h"

namespace orlix::test {
namespace {

class AutomatchConfigurationTest : public AutomatchPanel {
  protected:
    Stepper* games() const { return find<Stepper>("automatchGames"); }
    ValueSlider* pause() const { return find<ValueSlider>("automatchPause"); }
    PickerButton* picker(int engine) const {
        return find<PickerButton>(engine == 1 ? "automatchEngine1" : "automatchEngine2");
    }
    void pick(PickerButton* button, int index) const {
        click(button);
        ASSERT_TRUE(button->popup());
        click(button->popup()->findChildren<PanelButton*>().at(index));
    }
};

TEST_F(AutomatchConfigurationTest, itShowsWhatTheSeriesHolds) {
    openTab();
    EXPECT_EQ(games()->value(), 10);
    EXPECT_EQ(figure("automatchGamesText"), QStringLiteral(" Partien"));
    EXPECT_EQ(find<ChoiceGroup>("automatchPresets")->currentIndex(), 1);
    EXPECT_TRUE(find<ToggleSwitch>("alternateColors")->isChecked());
    EXPECT_EQ(pause()->value(), 15);
    EXPECT_EQ(figure("automatchPauseText"), QStringLiteral("1.5 s"));
    EXPECT_FALSE(find<ToggleSwitch>("engine1Limit")->isChecked());
    EXPECT_FALSE(isShown("engine1Elo"));
    // Who would play, although the slots are empty yet.
    EXPECT_EQ(joined(picker(1)->items()), "Stockfish | Gnuchess");
    EXPECT_EQ(picker(1)->currentIndex(), 0);
    EXPECT_EQ(picker(2)->currentIndex(), 1);
    EXPECT_FALSE(automatch->engine1());
    EXPECT_FALSE(automatch->engine2());
}

// Assistive technology reads in the order of the children.
TEST_F(AutomatchConfigurationTest, anEngineIsReadFromItsHeadDownwards) {
    openTab();
    int lowest = -1;
    for (const QWidget* part :
         picker(1)->parentWidget()->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
        EXPECT_GT(part->y(), lowest) << part->metaObject()->className();
        lowest = part->y();
    }
    EXPECT_GT(lowest, 0);
}

TEST_F(AutomatchConfigurationTest, theNumberOfGamesIsTypedSteppedOrChosen) {
    openTab();
    click(games()->plusButton());
    EXPECT_EQ(automatch->totalGames(), 11);
    click(games()->minusButton());
    click(games()->minusButton());
    EXPECT_EQ(automatch->totalGames(), 9);
    EXPECT_EQ(find<ChoiceGroup>("automatchPresets")->currentIndex(), -1);
    QLineEdit* field = games()->field();
    field->setFocus();
    field->selectAll();
    QTest::keyClicks(field, QStringLiteral("1000"));
    EXPECT_EQ(automatch->totalGames(), 1000);
    EXPECT_EQ(field->text(), QStringLiteral("1000"));
    const qint64 presets[] = {2, 10, 20, 50, 100};
    for (int index = 0; index < 5; ++index) {
        click(find<ChoiceGroup>("automatchPresets")->button(index));
        EXPECT_EQ(automatch->totalGames(), presets[index]);
        EXPECT_EQ(games()->value(), presets[index]);
        EXPECT_EQ(figure("gamesPlayed"), QStringLiteral(" 0 / %1").arg(presets[index]));
    }
}

TEST_F(AutomatchConfigurationTest, coloursAndPauseAreInForceAtOnce) {
    openTab();
    click(find("alternateColors"));
    EXPECT_FALSE(automatch->alternateColors());
    pause()->setFocus();
    QTest::keyClick(pause(), Qt::Key_Right);
    EXPECT_DOUBLE_EQ(automatch->pauseBetweenGamesSeconds(), 2.0);
    EXPECT_EQ(figure("automatchPauseText"), QStringLiteral("2.0 s"));
    QTest::keyClick(pause(), Qt::Key_Home);
    EXPECT_DOUBLE_EQ(automatch->pauseBetweenGamesSeconds(), 0);
    QTest::keyClick(pause(), Qt::Key_End);
    EXPECT_DOUBLE_EQ(automatch->pauseBetweenGamesSeconds(), 10);
    EXPECT_EQ(figure("automatchPauseText"), QStringLiteral("10.0 s"));
}

TEST_F(AutomatchConfigurationTest, eachEngineHasItsPickerAndItsStrength) {
    openTab();
    pick(picker(1), 1);
    EXPECT_EQ(automatch->engine1(), engines->availableEngines().at(1));
    EXPECT_EQ(picker(1)->currentIndex(), 1);
    pick(picker(2), 0);
    EXPECT_EQ(automatch->engine2(), engines->availableEngines().at(0));
    click(find("engine1Limit"));
    EXPECT_TRUE(automatch->engine1LimitElo());
    EXPECT_TRUE(isShown("engine1Elo"));
    EXPECT_FALSE(automatch->engine2LimitElo());
    click(find<ChoiceGroup>("engine1Presets")->button(0));
    EXPECT_EQ(automatch->engine1Elo(), 1400);
    EXPECT_EQ(text("engine1Strength"), QStringLiteral("1400 ELO"));
    click(find("engine2Limit"));
    click(find<ChoiceGroup>("engine2Presets")->button(3));
    EXPECT_TRUE(automatch->engine2LimitElo());
    EXPECT_EQ(automatch->engine2Elo(), 2600);
    EXPECT_EQ(automatch->engine1Elo(), 1400);
}

TEST_F(AutomatchConfigurationTest, whatIsChangedElsewhereIsShownWithoutAnEcho) {
    openTab();
    automatch->setTotalGames(42);
    automatch->setAlternateColors(false);
    automatch->setPauseBetweenGamesSeconds(3.3);
    automatch->setEngine1(engines->availableEngines().at(1));
    automatch->setEngine2Limit(true, 2200);
    EXPECT_EQ(games()->value(), 42);
    EXPECT_FALSE(find<ToggleSwitch>("alternateColors")->isChecked());
    EXPECT_EQ(figure("automatchPauseText"), QStringLiteral("3.3 s"));
    EXPECT_DOUBLE_EQ(automatch->pauseBetweenGamesSeconds(), 3.3);
    EXPECT_EQ(picker(1)->currentIndex(), 1);
    EXPECT_TRUE(find<ToggleSwitch>("engine2Limit")->isChecked());
    EXPECT_EQ(text("engine2Strength"), QStringLiteral("2200 ELO"));
    const QSignalSpy changes(automatch.get(), &AutomatchManager::changed);
    automatch->setTotalGames(20'000);  // more than the field takes
    EXPECT_EQ(automatch->totalGames(), 20'000);
    EXPECT_EQ(changes.count(), 1);
}

TEST_F(AutomatchConfigurationTest, anEngineThatIsGoneStaysOnOfferWhileItIsChosen) {
    openTab();
    const EngineConfiguration gone = engines->availableEngines().at(1);
    automatch->setEngine1(gone);
    engines->removeEngine(gone);
    EXPECT_EQ(joined(picker(1)->items()), "Stockfish | Gnuchess");
    EXPECT_EQ(picker(1)->currentIndex(), 1);
    pick(picker(1), 0);
    EXPECT_EQ(joined(picker(1)->items()), "Stockfish");
}

TEST_F(AutomatchConfigurationTest, aRunningSeriesOffersWhatCanBeChangedThen) {
    const char* settings[] = {"automatchEngine1", "automatchEngine2", "engine1Limit",  "engine2Limit",
                              "automatchGames",   "automatchPresets", "unfoldSettings"};
    startSeries(10);
    for (const char* name : settings)
        EXPECT_FALSE(isShown(name)) << name;
    EXPECT_EQ(figure("automatchGamesText"), QStringLiteral("10 Partien"));
    click(find("alternateColors"));
    EXPECT_FALSE(automatch->alternateColors());
    QTest::keyClick(pause(), Qt::Key_Home);
    EXPECT_DOUBLE_EQ(automatch->pauseBetweenGamesSeconds(), 0);
}

TEST_F(AutomatchConfigurationTest, afterASeriesTheSettingsAreFoldedAndOpenOnDemand) {
    const char* folded[] = {"automatchEngine1", "automatchEngine2", "automatchPresets", "alternateColors",
                            "automatchPause"};
    openTab();
    EXPECT_TRUE(find("unfoldSettings")->isChecked());
    for (const char* name : folded)
        EXPECT_TRUE(isShown(name)) << name;
    automatch->startAutomatch();
    automatch->stopAutomatch();
    EXPECT_FALSE(find("unfoldSettings")->isChecked());
    EXPECT_TRUE(isShown("automatchGames"));
    for (const char* name : folded)
        EXPECT_FALSE(isShown(name)) << name;
    find("unfoldSettings")->setFocus(Qt::TabFocusReason);
    QTest::keyClick(find("unfoldSettings"), Qt::Key_Return);
    for (const char* name : folded)
        EXPECT_TRUE(isShown(name)) << name;
    click(find("unfoldSettings"));
    for (const char* name : folded)
        EXPECT_FALSE(isShown(name)) << name;
}

TEST_F(AutomatchConfigurationTest, theCardIsAsHighAsWhatItShows) {
    openTab();
    panel->resize(400, 1200);
    const auto bottoms = [this] {
        QCoreApplication::processEvents();
        const QWidget* card = pause()->parentWidget()->parentWidget();
        return card->height() - pause()->parentWidget()->geometry().bottom();
    };
    const int margin = bottoms();
    click(find("engine1Limit"));
    click(find("engine2Limit"));
    EXPECT_EQ(bottoms(), margin);
    click(find("engine1Limit"));
    EXPECT_EQ(bottoms(), margin);
    automatch->startAutomatch();
    EXPECT_EQ(bottoms(), margin);
}

TEST_F(AutomatchConfigurationTest, everyControlIsNamedAndNoTwoAlike) {
    openTab();
    click(find("engine1Limit"));
    click(find("engine2Limit"));
    for (const Language language : allLanguages) {
        loc->setCurrentLanguage(language);
        QSet<QString> names;
        for (const QWidget* widget : panel->findChild<AutomatchTab*>()->findChildren<QWidget*>()) {
            if (!widget->isVisible() || widget->focusPolicy() == Qt::NoFocus || widget->focusProxy())
                continue;
            const QString name = widget->accessibleName();
            EXPECT_FALSE(name.isEmpty()) << utf8(widget->objectName());
            // The two engines' named strengths follow the switch and the slider that name the engine.
            const bool isChip = qobject_cast<const ChoiceGroup*>(widget->parentWidget()) != nullptr;
            EXPECT_TRUE(isChip || !names.contains(name)) << utf8(name);
            names.insert(name);
        }
        EXPECT_GE(names.size(), 10);
        EXPECT_EQ(pause()->accessibleName(), loc->text("automatch_pause_sec"));
        EXPECT_EQ(games()->field()->accessibleName(), loc->text("automatch_games_count"));
    }
}

TEST_F(AutomatchConfigurationTest, tabReachesEveryControl) {
    openTab();
    click(find("engine1Limit"));
    QSet<QWidget*> reached;
    find("startAutomatch")->setFocus(Qt::TabFocusReason);
    for (int step = 0; step < 100; ++step) {
        reached.insert(QApplication::focusWidget());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    for (QWidget* widget : panel->findChild<AutomatchTab*>()->findChildren<QWidget*>()) {
        const bool isStop = widget->isVisible() && widget->isEnabled() && !widget->focusProxy() &&
                            (widget->focusPolicy() & Qt::TabFocus);
        EXPECT_TRUE(!isStop || reached.contains(widget)) << utf8(widget->objectName());
    }
}

}  // namespace
}  // namespace orlix::test
