#include <QAccessible>
#include <QSignalSpy>

#include "l10n/extra_texts.h"
#include "panel_fixture.h"
#include "support/event_pump.h"
#include "ui/controls/text_label.h"
#include "ui/move_list_view.h"
#include "ui/panel/bottom_bar.h"
#include "ui/panel/new_game_tab.h"
#include "ui/panel/tab_bar.h"
#include "ui/panel/toast.h"

namespace orlix::test {
namespace {

class PanelCommands : public PanelTest {
  protected:
    Toast* toast() const { return panel->findChild<Toast*>(); }
    BottomBar* bar() const { return panel->findChild<BottomBar*>(); }
};

TEST_F(PanelCommands, everyButtonOfTheBarCallsItsCommand) {
    playAgainstPerson();
    click(find("flipBoard"));
    EXPECT_TRUE(game->isFlipped());
    play("e2", "e4");
    click(find("undoMove"));
    EXPECT_TRUE(game->board().history.empty());
    click(find("pauseGame"));
    EXPECT_TRUE(game->isPaused());
    click(find("pauseGame"));
    EXPECT_FALSE(game->isPaused());
    click(find("resignGame"));
    EXPECT_TRUE(game->isGameOver());
    click(find("newGame"));
    EXPECT_FALSE(game->isGameOver());
}

TEST_F(PanelCommands, theSideToMoveResigns) {
    playAgainstPerson();
    play("e2", "e4");
    click(find("resignGame"));
    EXPECT_EQ(game->gameEndReason(), GameEndReason::resignation(PieceColor::white));
    click(find("newGame"));
    click(find("resignGame"));
    EXPECT_EQ(game->gameEndReason(), GameEndReason::resignation(PieceColor::black));
}

TEST_F(PanelCommands, returnPressesTheFocusedButtonAndSpaceNeverDoes) {
    playAgainstPerson();
    auto* flip = find("flipBoard");
    flip->setFocus(Qt::TabFocusReason);
    ASSERT_TRUE(flip->hasFocus());
    QTest::keyClick(flip, Qt::Key_Space);
    EXPECT_FALSE(game->isFlipped());
    QTest::keyClick(flip, Qt::Key_Return);
    EXPECT_TRUE(game->isFlipped());
    QTest::keyClick(flip, Qt::Key_Enter);
    EXPECT_FALSE(game->isFlipped());
}

TEST_F(PanelCommands, spaceTravelsOnToTheWindow) {
    class KeyWatch : public QWidget {
      public:
        int spaces = 0;
        void keyPressEvent(QKeyEvent* event) override { spaces += event->key() == Qt::Key_Space; }
    } window;
    panel->setParent(&window);
    window.show();
    panel->setSelectedTab(3);
    for (QAbstractButton* button : panel->findChildren<QAbstractButton*>()) {
        const int before = window.spaces;
        const QSignalSpy presses(button, &QAbstractButton::clicked);
        QTest::keyClick(button, Qt::Key_Space);
        EXPECT_EQ(window.spaces, before + 1) << utf8(button->accessibleName());
        EXPECT_EQ(presses.count(), 0) << utf8(button->accessibleName());
    }
    panel->setParent(nullptr);
}

TEST_F(PanelCommands, threeTextsOfTheBarAreTheSameInEveryLanguage) {
    for (const Language language : allLanguages) {
        loc->setCurrentLanguage(language);
        EXPECT_EQ(find<PanelButton>("flipBoard")->label(), QStringLiteral("Flip Board"));
        EXPECT_EQ(find<PanelButton>("undoMove")->label(), QStringLiteral("Undo Move"));
        EXPECT_EQ(find<PanelButton>("pauseGame")->label(), QStringLiteral("Pause"));
        game->togglePause();
        EXPECT_EQ(find<PanelButton>("pauseGame")->label(), QStringLiteral("Resume"));
        game->togglePause();
        EXPECT_EQ(find<PanelButton>("resignGame")->label(), loc->text("btn_resign"));
        EXPECT_EQ(find<PanelButton>("newGame")->label(), loc->text("btn_new_game"));
    }
}

TEST_F(PanelCommands, aFinishedGameOffersNeitherUndoNorResignation) {
    playAgainstPerson();
    auto* resign = find("resignGame");
    resign->setFocus(Qt::TabFocusReason);
    QTest::keyClick(resign, Qt::Key_Return);
    EXPECT_FALSE(resign->isEnabled());
    EXPECT_FALSE(find("undoMove")->isEnabled());
    // Another Return must not start a game by accident.
    EXPECT_FALSE(find("newGame")->hasFocus());
    click(find("newGame"));
    EXPECT_TRUE(resign->isEnabled());
    EXPECT_TRUE(find("undoMove")->isEnabled());
}

TEST_F(PanelCommands, tabsShowTheirPageAndAreBuiltWhenFirstShown) {
    EXPECT_EQ(panel->selectedTab(), 0);
    EXPECT_TRUE(panel->findChild<MoveListView*>());
    EXPECT_FALSE(panel->findChild<NewGameTab*>());
    click(find("tab_new_game"));
    EXPECT_EQ(panel->selectedTab(), 3);
    EXPECT_TRUE(find<NewGameTab>("")->isVisible());
    EXPECT_FALSE(panel->findChild<MoveListView*>()->isVisible());
    click(find("tab_game"));
    EXPECT_EQ(panel->selectedTab(), 0);
    EXPECT_TRUE(panel->findChild<MoveListView*>()->isVisible());
    EXPECT_FALSE(panel->findChild<NewGameTab*>()->isVisible());
}

TEST_F(PanelCommands, aTabIsBuiltWithoutAWindowOfItsOwnInBetween) {
    class WindowWatch : public QObject {
      public:
        WindowWatch() { qApp->installEventFilter(this); }
        QStringList shown;
        bool eventFilter(QObject* watched, QEvent* event) override {
            const auto* widget = qobject_cast<QWidget*>(watched);
            const bool isShown = event->type() == QEvent::Show && widget && widget->isWindow();
            if (isShown) shown.append(QString::fromLatin1(widget->metaObject()->className()));
            return false;
        }
    };
    game->setGameMode(GameMode::engineVsEngine);
    game->startNewGame();
    ASSERT_TRUE(game->whiteEngineProcess() && game->blackEngineProcess());
    WindowWatch watch;
    for (int index = 0; index < RightPanelView::tabCount; ++index)
        panel->setSelectedTab(index);
    EXPECT_TRUE(watch.shown.isEmpty()) << utf8(watch.shown.join(u' '));
    EXPECT_TRUE(panel->isActiveWindow());
}

TEST_F(PanelCommands, assistiveTechnologyReadsTheTabBeforeTheBottomBar) {
    const QAccessibleInterface* read = QAccessible::queryAccessibleInterface(panel.get());
    for (int index = 0; index < RightPanelView::tabCount; ++index) {
        panel->setSelectedTab(index);
        int place = 0;
        int bottomPlace = 0;
        for (int child = 0; child < read->childCount(); ++child) {
            const auto* part = qobject_cast<QWidget*>(read->child(child)->object());
            if (qobject_cast<const BottomBar*>(part)) bottomPlace = child;
            if (part->isVisible() && !qobject_cast<const BottomBar*>(part)) place = child;
        }
        EXPECT_GT(place, 1) << index;
        EXPECT_GT(bottomPlace, place) << index;
    }
}

TEST_F(PanelCommands, anIndexThatNoTabHasIsIgnored) {
    panel->setSelectedTab(5);
    for (const int index : {-1, 6, 1000}) {
        panel->setSelectedTab(index);
        EXPECT_EQ(panel->selectedTab(), 5);
    }
}

TEST_F(PanelCommands, theArrowsMoveAmongTheTabs) {
    auto* tabs = panel->findChild<TabBar*>();
    tabs->button(0)->setFocus(Qt::TabFocusReason);
    QTest::keyClick(tabs->button(0), Qt::Key_Right);
    EXPECT_EQ(panel->selectedTab(), 1);
    EXPECT_TRUE(tabs->button(1)->hasFocus());
    QTest::keyClick(tabs->button(1), Qt::Key_Left);
    EXPECT_EQ(panel->selectedTab(), 0);
}

TEST_F(PanelCommands, tabReachesEveryControlOfEveryTab) {
    for (const int index : {0, 3}) {
        panel->setSelectedTab(index);
        QSet<QWidget*> reached;
        panel->findChild<TabBar*>()->button(index)->setFocus(Qt::TabFocusReason);
        for (int step = 0; step < 100; ++step) {
            reached.insert(QApplication::focusWidget());
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        for (QWidget* widget : panel->findChildren<QWidget*>()) {
            if (!widget->isVisible() || !widget->isEnabled() || widget->focusPolicy() == Qt::NoFocus)
                continue;
            if (widget->focusProxy()) continue;
            EXPECT_TRUE(reached.contains(widget)) << utf8(widget->accessibleName());
        }
    }
}

TEST_F(PanelCommands, focusIsMarkedOnceTheUserMovedItAndNotWhenTheWindowOpens) {
    auto* flip = find("flipBoard");
    const QImage plain = flip->grab().toImage();
    flip->setFocus(Qt::ActiveWindowFocusReason);
    ASSERT_TRUE(flip->hasFocus());
    EXPECT_EQ(flip->grab().toImage(), plain);
    for (QWidget* widget :
         {static_cast<QWidget*>(flip), static_cast<QWidget*>(find("resignGame")),
          static_cast<QWidget*>(find("languagePicker")), static_cast<QWidget*>(find("tab_game"))}) {
        panel->setFocus();
        const QImage before = widget->grab().toImage();
        widget->setFocus(Qt::TabFocusReason);
        EXPECT_NE(widget->grab().toImage(), before) << utf8(widget->objectName());
    }
}

TEST_F(PanelCommands, everyControlHasAnAccessibleName) {
    for (int index = 0; index < RightPanelView::tabCount; ++index) {
        panel->setSelectedTab(index);
        for (const QWidget* widget : panel->findChildren<QWidget*>()) {
            const bool isControl = qobject_cast<const QAbstractButton*>(widget) ||
                                   (widget->isVisible() && widget->focusPolicy() != Qt::NoFocus);
            if (isControl) {
                EXPECT_FALSE(widget->accessibleName().isEmpty())
                    << index << " " << widget->metaObject()->className() << utf8(widget->objectName());
            }
        }
    }
}

TEST_F(PanelCommands, aToastGoesAwayAfterTwoAndAHalfSeconds) {
    panel->showToast(QStringLiteral("Copied"));
    EXPECT_EQ(panel->toastMessage(), QStringLiteral("Copied"));
    EXPECT_TRUE(toast()->isVisible());
    time.advance(2499ms);
    EXPECT_EQ(panel->toastMessage(), QStringLiteral("Copied"));
    time.advance(1ms);
    EXPECT_EQ(panel->toastMessage(), QString());
    EXPECT_TRUE(pumpUntil([this] { return !toast()->isVisible(); }));
}

TEST_F(PanelCommands, aSecondToastStartsTheTimeAnew) {
    panel->showToast(QStringLiteral("One"));
    time.advance(2000ms);
    panel->showToast(QStringLiteral("Two"));
    time.advance(2499ms);
    EXPECT_EQ(panel->toastMessage(), QStringLiteral("Two"));
    time.advance(1ms);
    EXPECT_EQ(panel->toastMessage(), QString());
    EXPECT_EQ(time.pendingTimers(), 0U);
    // One that comes while the last one fades stays as well.
    panel->showToast(QStringLiteral("Three"));
    QTest::qWait(200);  // longer than a fade takes; on a slow machine it is under way still
    EXPECT_TRUE(toast()->isVisible());
}

TEST_F(PanelCommands, theToastStandsCentredAboveTheBottomBar) {
    const QString texts[] = {QStringLiteral("Short"), QStringLiteral("word ").repeated(60)};
    for (const int width : {400, 460}) {
        panel->resize(width, panelHeight);
        for (const QString& text : texts) {
            panel->showToast(text);
            const QRect place = toast()->geometry();
            EXPECT_LT(place.bottom(), bar()->y());
            EXPECT_GT(place.bottom(), bar()->y() - 40);
            EXPECT_NEAR(place.center().x(), width / 2, 1);
            EXPECT_GE(place.left(), 16);
        }
    }
}

TEST_F(PanelCommands, theToastCoversNoCommandBelowWhatScrolls) {
    panel->showToast(QStringLiteral("Short"));
    const auto topOf = [this](const char* name) { return find(name)->mapTo(panel.get(), QPoint(0, 0)).y(); };
    panel->setSelectedTab(4);
    EXPECT_LT(toast()->geometry().bottom(), topOf("scanEngines"));
    EXPECT_GT(toast()->geometry().bottom(), topOf("scanEngines") - 40);
    panel->showToast(QStringLiteral("word ").repeated(60));
    EXPECT_LT(toast()->geometry().bottom(), topOf("scanEngines"));
    panel->setSelectedTab(3);
    EXPECT_LT(toast()->geometry().bottom(), topOf("startGame"));
    panel->setSelectedTab(0);
    EXPECT_GT(toast()->geometry().bottom(), bar()->y() - 40);
}

TEST_F(PanelCommands, aToastLetsThePanelBelowBeClicked) {
    panel->setSelectedTab(3);
    panel->showToast(QStringLiteral("x ").repeated(300));
    QWidget* choice = find<ChoiceGroup>("modes")->button(1);
    toast()->move(choice->mapTo(panel.get(), QPoint(0, 0)) - QPoint(100, 10));
    const QPoint at = choice->mapTo(panel.get(), choice->rect().center());
    ASSERT_TRUE(toast()->geometry().contains(at));
    EXPECT_EQ(panel->childAt(at), choice);
}

TEST_F(PanelCommands, theSymbolsOfTheBarStandOnOneLineInEveryLanguage) {
    // The row of pixels in which a button's symbol begins, in the middle of the button.
    const auto firstInk = [](QAbstractButton* button) {
        const QImage image = button->grab().toImage();
        const int center = image.width() / 2;
        const QRgb ground = image.pixel(center, 3);
        for (int y = 3; y < image.height(); ++y) {
            for (int x = center - 9; x < center + 9; ++x)
                if (image.pixel(x, y) != ground) return y;
        }
        return -1;
    };
    for (const Language language : allLanguages) {
        loc->setCurrentLanguage(language);
        QCoreApplication::sendPostedEvents();
        int first = 1000;
        int last = 0;
        for (const char* name : {"flipBoard", "undoMove", "pauseGame", "resignGame", "newGame"}) {
            const int at = firstInk(find(name));
            first = qMin(first, at);
            last = qMax(last, at);
        }
        // The drawings do not all begin at the same line of their grid.
        EXPECT_LE(last - first, 3) << utf8(rawValue(language));
    }
}

TEST_F(PanelCommands, anEngineThatWritesEvaluationsAndAClockThatTicksRepaintNothing) {
    game->startNewGame();
    QCoreApplication::processEvents();
    std::vector<std::unique_ptr<PaintWatch>> watches;
    for (QWidget* widget : panel->findChildren<QWidget*>()) {
        watches.push_back(std::make_unique<PaintWatch>(widget));
    }
    time.advance(2s);
    Q_EMIT game->liveEvaluationChanged();
    Q_EMIT game->changed();
    QCoreApplication::processEvents();
    for (const auto& watch : watches)
        EXPECT_EQ(watch->count, 0);
}

TEST_F(PanelCommands, theSchemeSwitchesLive) {
    panel->setSelectedTab(3);
    const QImage light = panel->grab().toImage();
    theme.setScheme(Theme::Scheme::dark);
    const QImage dark = panel->grab().toImage();
    EXPECT_EQ(light.pixelColor(3, 3), Theme::color(ColorRole::panel, Theme::Scheme::light));
    EXPECT_EQ(dark.pixelColor(3, 3), Theme::color(ColorRole::panel, Theme::Scheme::dark));
    qint64 bright = 0;
    for (int y = 0; y < dark.height(); ++y) {
        for (int x = 0; x < dark.width(); ++x)
            bright += dark.pixelColor(x, y).lightness() > 200;
    }
    // Only texts, the switch's and the slider's knobs are bright.
    EXPECT_LT(bright, dark.width() * dark.height() / 20);
}

}  // namespace
}  // namespace orlix::test
