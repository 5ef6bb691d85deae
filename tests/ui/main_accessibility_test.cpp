#include <QAccessible>

#include "shell_fixture.h"
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

}  // namespace
}  // namespace orlix
