// The console as its reader uses it: keys, the wheel's bar, and a selection that is dragged beyond its edge.
#include <QScrollBar>

#include "panel_tabs_fixture.h"
#include "ui/panel/uci_console_view.h"

namespace orlix::test {
namespace {

class ConsoleTest : public PanelTabsTest {
  protected:
    void SetUp() override {
        PanelTabsTest::SetUp();
        registerEngines();
        game->setGameMode(GameMode::humanVsEngine);
        game->startNewGame();
        settle();
        panel->setSelectedTab(1);
        QByteArray lines;
        for (int number = 1; number <= 120; ++number)
            lines += "info string line " + QByteArray::number(number) + '\n';
        puppets.say(lines.chopped(1));
        settle();
        ASSERT_EQ(console()->lines().last(), QStringLiteral("< info string line 120"));
        ASSERT_GT(bar()->maximum(), 0);
    }
    UciConsoleView* console() const { return find<UciConsoleView>("console"); }
    QScrollBar* bar() const { return console()->verticalScrollBar(); }
    int lastLine() const { return static_cast<int>(console()->lines().size()) - 1; }
    /// The left edge of character `column`.
    QPoint at(int line, int column) const {
        const QRectF place = console()->characterRect(line, column);
        return {qRound(place.left()) + 1, qRound(place.center().y())};
    }
};

TEST_F(ConsoleTest, homeAndEndScrollItAndNotTheGame) {
    game->handleSquareClick(*Square::fromText("e2"));
    game->handleSquareClick(*Square::fromText("e4"));
    puppets.say("bestmove e7e5");
    settle();
    ASSERT_EQ(game->board().history.size(), 2U);
    console()->setFocus();
    QTest::keyClick(console(), Qt::Key_Home);
    EXPECT_EQ(bar()->value(), 0);
    EXPECT_TRUE(console()->isHeld());
    QTest::keyClick(console(), Qt::Key_End);
    EXPECT_EQ(bar()->value(), bar()->maximum());
    EXPECT_FALSE(console()->isHeld());
    QTest::keyClick(console(), Qt::Key_PageUp);
    EXPECT_LT(bar()->value(), bar()->maximum());
    EXPECT_GT(bar()->value(), 0);
    EXPECT_FALSE(game->inspectingMoveIndex());
}

TEST_F(ConsoleTest, aSelectionDraggedBeyondAnEdgeScrollsOnUntilItIsLetGo) {
    QWidget* view = console()->viewport();
    QTest::mousePress(view, Qt::LeftButton, {}, at(lastLine(), 6));
    QTest::mouseMove(view, QPoint(20, -60));
    EXPECT_TRUE(QTest::qWaitFor([&] { return bar()->value() == 0; }, 30000));
    EXPECT_TRUE(console()->selectedText().contains(QStringLiteral("line 2\n")));
    QTest::mouseMove(view, QPoint(20, view->height() + 60));
    EXPECT_TRUE(QTest::qWaitFor([&] { return bar()->value() == bar()->maximum(); }, 30000));
    QTest::mouseMove(view, at(lastLine() - 1, 4));
    QTest::mouseRelease(view, Qt::LeftButton, {}, at(lastLine() - 1, 4));
    EXPECT_EQ(console()->selectedText(), QStringLiteral("fo string line 119\n< info"));
}

TEST_F(ConsoleTest, shiftAndAClickMoveTheEndOfASelection) {
    QWidget* view = console()->viewport();
    QTest::mousePress(view, Qt::LeftButton, {}, at(lastLine() - 2, 2));
    QTest::mouseMove(view, at(lastLine() - 2, 6));
    QTest::mouseRelease(view, Qt::LeftButton, {}, at(lastLine() - 2, 6));
    EXPECT_EQ(console()->selectedText(), QStringLiteral("info"));
    QTest::mouseClick(view, Qt::LeftButton, Qt::ShiftModifier, at(lastLine() - 1, 6));
    EXPECT_EQ(console()->selectedText(), QStringLiteral("info string line 118\n< info"));
}

TEST_F(ConsoleTest, theOtherButtonsLeaveTheSelectionAlone) {
    QWidget* view = console()->viewport();
    QTest::mouseDClick(view, Qt::LeftButton, {}, at(lastLine(), 4));
    const QString selected = console()->selectedText();
    ASSERT_FALSE(selected.isEmpty());
    QTest::mouseClick(view, Qt::RightButton, {}, at(lastLine() - 3, 4));
    QTest::mouseDClick(view, Qt::RightButton, {}, at(lastLine() - 3, 4));
    EXPECT_EQ(console()->selectedText(), selected);
}

TEST_F(ConsoleTest, copyingWithoutASelectionKeepsThePasteboard) {
    pasteboard.text = QStringLiteral("kept");
    QTest::keyClick(console(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(pasteboard.text, QStringLiteral("kept"));
}

}  // namespace
}  // namespace orlix::test
