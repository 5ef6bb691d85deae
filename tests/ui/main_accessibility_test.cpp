#include <QAccessible>
#include <algorithm>

#include "shell_fixture.h"
#include "ui/engine_notice_view.h"
#include "ui/evaluation_bar_view.h"
#include "ui/panel/bottom_bar.h"
#include "ui/panel/panel_header.h"
#include "ui/panel/tab_bar.h"
#include "ui/player_banner_view.h"
#include "ui/right_panel_view.h"

namespace orlix {
namespace {

class MainAccessibility : public test::ShellTest {
  protected:
    /// Everything below `node`, parents first. What is not shown is left out.
    static std::vector<QAccessibleInterface*> shownBelow(QAccessibleInterface* node) {
        std::vector<QAccessibleInterface*> all;
        for (int index = 0; index < node->childCount(); ++index) {
            QAccessibleInterface* child = node->child(index);
            EXPECT_NE(child, nullptr) << index << " of " << qPrintable(node->text(QAccessible::Name));
            if (child == nullptr || child->state().invisible) continue;
            all.push_back(child);
            const auto below = shownBelow(child);
            all.insert(all.end(), below.begin(), below.end());
        }
        return all;
    }
    std::vector<QAccessibleInterface*> shown() const {
        return shownBelow(QAccessible::queryAccessibleInterface(window.get()));
    }
    static bool isControl(const QAccessibleInterface& node) {
        switch (node.role()) {
            case QAccessible::PushButton:
            case QAccessible::RadioButton:
            case QAccessible::CheckBox:
            case QAccessible::ComboBox:
            case QAccessible::Slider:
            case QAccessible::SpinBox:
            case QAccessible::EditableText:
            case QAccessible::ButtonMenu:
            case QAccessible::ButtonDropDown:
            case QAccessible::MenuItem:
            case QAccessible::PageTab:
            case QAccessible::Table:
            case QAccessible::Cell:
            case QAccessible::List: return true;
            default: return node.state().focusable;
        }
    }
};

TEST_F(MainAccessibility, everyControlOfEveryTabHasAName) {
    installEngine();
    showWindowForTwoPeople();
    engines->scanDefaultPaths();
    for (const GameMode mode : {GameMode::humanVsHuman, GameMode::humanVsEngine, GameMode::engineVsEngine}) {
        game->setGameMode(mode);
        game->startNewGame();
        for (int tab = 0; tab < RightPanelView::tabCount; ++tab) {
            find<RightPanelView>()->setSelectedTab(tab);
            QCoreApplication::processEvents();
            int controls = 0;
            for (QAccessibleInterface* node : shown()) {
                if (!isControl(*node)) continue;
                ++controls;
                const QObject* object = node->object();
                EXPECT_FALSE(node->text(QAccessible::Name).trimmed().isEmpty())
                    << "tab " << tab << ": " << (object ? object->metaObject()->className() : "no object")
                    << " " << (object ? qPrintable(object->objectName()) : "") << " in "
                    << (object && object->parent() ? object->parent()->metaObject()->className() : "");
            }
            EXPECT_GT(controls, 64 + 6) << "the squares, the tabs and more";
        }
    }
}

TEST_F(MainAccessibility, theBoardIsReachedFromTheWindowAndFollowsTheGame) {
    showWindowForTwoPeople();
    click("e2");
    bool isFound = false;
    for (QAccessibleInterface* node : shown())
        isFound = isFound || node->text(QAccessible::Name) == QLatin1String("e2, white pawn, selected");
    EXPECT_TRUE(isFound);
}

TEST_F(MainAccessibility, theBannersReadTheirClocksWhenAsked) {
    showWindowForTwoPeople();
    const auto texts = [this] {
        QStringList all;
        for (PlayerBannerView* banner : window->findChildren<PlayerBannerView*>())
            all += QAccessible::queryAccessibleInterface(banner)->text(QAccessible::Name);
        all.sort();
        return all;
    };
    EXPECT_EQ(texts(), (QStringList{QStringLiteral("Player 1, 5:00"), QStringLiteral("Player 2, 5:00")}));
    time.advance(std::chrono::seconds(61));
    EXPECT_EQ(texts(), (QStringList{QStringLiteral("Player 1, 3:59"), QStringLiteral("Player 2, 5:00")}));
}

TEST_F(MainAccessibility, theScoreIsNamedInTheChosenLanguage) {
    showWindowForTwoPeople();
    const auto* bar = QAccessible::queryAccessibleInterface(find<EvaluationBarView>());
    EXPECT_EQ(bar->text(QAccessible::Name), QStringLiteral("Evaluation: 0.00"));
    loc.setCurrentLanguage(Language::german);
    EXPECT_EQ(bar->text(QAccessible::Name), QStringLiteral("Bewertung: 0.00"));
}

TEST_F(MainAccessibility, tabReachesTheBoardAndLeavesItAgain) {
    showWindowForTwoPeople();
    bool wasReached = false;
    for (int step = 0; step < 100 && !wasReached; ++step) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        wasReached = find<BoardView>()->hasFocus();
    }
    ASSERT_TRUE(wasReached);
    EXPECT_TRUE(find<BoardView>()->showsCursor());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_FALSE(find<BoardView>()->hasFocus());
}

/// Where Tab stops, from the board once round.
class KeyboardWay : public test::ShellTest {
  protected:
    QList<QWidget*> walk(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QList<QWidget*> stops;
        QWidget* board = find<BoardView>();
        board->setFocus();
        do {
            stops.append(QApplication::focusWidget());
            QTest::keyClick(QApplication::focusWidget(), key, modifiers);
        } while (QApplication::focusWidget() && QApplication::focusWidget() != board && stops.size() < 100);
        return stops;
    }
    /// Which part of the window `stop` belongs to, from the first to be read.
    int part(const QWidget* stop) const {
        if (stop == find<BoardView>()) return 0;
        if (find<EngineNoticeView>()->isAncestorOf(stop)) return 1;
        if (find<PanelHeader>()->isAncestorOf(stop)) return 2;
        if (find<TabBar>()->isAncestorOf(stop)) return 3;
        return find<BottomBar>()->isAncestorOf(stop) ? 5 : 4;
    }
    std::string describe(const QWidget* stop) const {
        return (stop->accessibleName() + u' ' + stop->objectName()).toStdString();
    }
};

TEST_F(KeyboardWay, goesAsTheWindowIsReadOnEveryTab) {
    installEngine();
    showWindowForTwoPeople();
    game->setGameMode(GameMode::humanVsEngine);
    game->startNewGame();
    auto* panel = find<RightPanelView>();
    for (const int tab : {0, 1, 2, 3, 4, 5, 4, 3, 1, 0}) {
        panel->setSelectedTab(tab);
        // What comes into a tab later stands in its place too.
        if (tab == 4) engines->scanDefaultPaths();
        QCoreApplication::processEvents();
        const QList<QWidget*> stops = walk(Qt::Key_Tab);
        ASSERT_LT(stops.size(), 100);
        for (qsizetype index = 1; index < stops.size(); ++index) {
            const QWidget* before = stops[index - 1];
            const QWidget* stop = stops[index];
            ASSERT_LE(part(before), part(stop)) << tab << ": " << describe(before) << ", " << describe(stop);
            if (part(before) != 4 || part(stop) != 4) continue;
            const QRect above(before->mapTo(panel, QPoint()), before->size());
            const QRect below(stop->mapTo(panel, QPoint()), stop->size());
            EXPECT_TRUE(above.center().y() < below.top() || above.right() < below.left())
                << tab << ": " << describe(before) << ", " << describe(stop);
        }
        QList<QWidget*> back = walk(Qt::Key_Tab, Qt::ShiftModifier);
        std::reverse(back.begin() + 1, back.end());
        EXPECT_EQ(back, stops) << tab;
    }
}

TEST_F(KeyboardWay, leadsToTheNoticeOnTheBoardBeforeThePanel) {
    showWindow();
    ASSERT_TRUE(find<EngineNoticeView>()->isVisible());
    const QList<QWidget*> stops = walk(Qt::Key_Tab);
    ASSERT_GT(stops.size(), 3);
    EXPECT_EQ(part(stops[1]), 1);
    EXPECT_EQ(part(stops[2]), 1);
    EXPECT_EQ(part(stops[3]), 2);
}

TEST_F(KeyboardWay, leavesOutWhatIsDisabled) {
    showWindowForTwoPeople();
    auto* resign = window->findChild<QWidget*>(QStringLiteral("resignGame"));
    EXPECT_TRUE(walk(Qt::Key_Tab).contains(resign));
    game->resign(PieceColor::white);
    EXPECT_FALSE(walk(Qt::Key_Tab).contains(resign));
}

TEST_F(KeyboardWay, beginsAtTheBoardAndBackwardsAtTheEnd) {
    showWindowForTwoPeople();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_TRUE(find<BoardView>()->hasFocus());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
    EXPECT_EQ(QApplication::focusWidget()->objectName(), QStringLiteral("newGame"));
}

TEST_F(KeyboardWay, bringsWhatItReachesIntoSight) {
    showWindowForTwoPeople();
    window->resize(MainView::smallestSize);
    auto* panel = find<RightPanelView>();
    game->setGameMode(GameMode::engineVsEngine);
    for (const QString& path :
         {QStringLiteral("/engines/a"), QStringLiteral("/engines/b"), QStringLiteral("/engines/c"),
          QStringLiteral("/engines/d"), QStringLiteral("/engines/e"), QStringLiteral("/engines/f")}) {
        fileTests.executables.insert(path);
        system.enginePaths.append(path);
    }
    engines->scanDefaultPaths();
    panel->setSelectedTab(4);
    QCoreApplication::processEvents();
    const auto isInSight = [](const QWidget* control) {
        return control->visibleRegion().boundingRect() == control->rect();
    };
    const QList<QWidget*> way = walk(Qt::Key_Tab);
    ASSERT_TRUE(std::any_of(way.begin(), way.end(), [&](const QWidget* stop) { return !isInSight(stop); }));
    // Backwards the list is entered from outside, at its far end.
    for (const bool forward : {true, false}) {
        find<BoardView>()->setFocus();
        for (qsizetype step = 0; step < way.size(); ++step) {
            EXPECT_TRUE(isInSight(QApplication::focusWidget())) << describe(QApplication::focusWidget());
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab,
                            forward ? Qt::NoModifier : Qt::ShiftModifier);
        }
    }
}

}  // namespace
}  // namespace orlix
