#include "ui/move_stepping.h"

#include <QLineEdit>

#include "shell_fixture.h"
#include "ui/move_list_view.h"
#include "ui/right_panel_view.h"

namespace orlix {
namespace {

using Index = std::optional<qint64>;

class MoveStepping : public test::ShellTest {
  protected:
    void showGameOf(int plies) {
        showWindowForTwoPeople();
        const char* tours[] = {"g1", "f3", "g8", "f6", "f3", "g1", "f6", "g8"};
        for (int ply = 0; ply < plies; ++ply) {
            game->handleSquareClick(*Square::fromText(tours[2 * (ply % 4)]));
            game->handleSquareClick(*Square::fromText(tours[2 * (ply % 4) + 1]));
        }
        ASSERT_EQ(game->board().history.size(), static_cast<std::size_t>(plies));
    }
    static void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        ASSERT_NE(QApplication::focusWidget(), nullptr);
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }
    Index shown() const { return game->inspectingMoveIndex(); }
    void checkEveryKey(const char* where) {
        press(Qt::Key_Left);
        EXPECT_EQ(shown(), Index(2)) << where << ": the ply before the last";
        press(Qt::Key_Left);
        EXPECT_EQ(shown(), Index(1)) << where;
        press(Qt::Key_Right);
        EXPECT_EQ(shown(), Index(2)) << where;
        press(Qt::Key_Home);
        EXPECT_EQ(shown(), Index(0)) << where;
        press(Qt::Key_End);
        EXPECT_EQ(shown(), Index()) << where;
        EXPECT_FALSE(game->isInspectingPast()) << where;
    }
};

TEST_F(MoveStepping, theKeysStepWhileTheWindowHasTheFocus) {
    showGameOf(4);
    checkEveryKey("window");
}

TEST_F(MoveStepping, theKeysStepWhileTheMoveListHasTheFocus) {
    showGameOf(4);
    find<MoveListView>()->setFocus(Qt::TabFocusReason);
    ASSERT_TRUE(find<MoveListView>()->hasFocus());
    checkEveryKey("move list");
}

TEST_F(MoveStepping, theKeysStepAfterAClickOnTheBoard) {
    showGameOf(4);
    click("e5");
    ASSERT_TRUE(find<BoardView>()->hasFocus());
    checkEveryKey("board");
}

TEST_F(MoveStepping, nothingLiesBeforeTheFirstPlyNorAfterTheGame) {
    showGameOf(3);
    for (int step = 0; step < 5; ++step)
        press(Qt::Key_Left);
    EXPECT_EQ(shown(), Index(0));
    press(Qt::Key_Right);
    EXPECT_EQ(shown(), Index(1));
    press(Qt::Key_Right);
    EXPECT_EQ(shown(), Index()) << "the last ply is the game as it stands";
    press(Qt::Key_Right);
    EXPECT_EQ(shown(), Index());
}

TEST_F(MoveStepping, aGameOfNoneOrOnePlyHasNowhereToGo) {
    for (const int plies : {0, 1}) {
        window.reset();
        showGameOf(plies);
        for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Right, Qt::Key_Home, Qt::Key_End}) {
            press(key);
            EXPECT_EQ(shown(), Index()) << plies;
        }
    }
}

TEST_F(MoveStepping, anIndexOutsideTheGameIsSteppedFromItsEnd) {
    showGameOf(4);
    for (const qint64 outside :
         {qint64(-5), qint64(99), std::numeric_limits<qint64>::max(), std::numeric_limits<qint64>::min()}) {
        for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Right}) {
            game->inspectMove(outside);
            press(key);
            EXPECT_TRUE(!shown() || (*shown() >= 0 && *shown() < 4)) << outside;
        }
    }
}

TEST_F(MoveStepping, theTextOfAFieldKeepsItsKeys) {
    showGameOf(4);
    QLineEdit field(QStringLiteral("abc"), find<MainView>());
    field.show();
    field.setFocus();
    for (const Qt::Key key : {Qt::Key_Home, Qt::Key_Left, Qt::Key_Left, Qt::Key_End, Qt::Key_Right}) {
        press(key);
        EXPECT_EQ(shown(), Index());
    }
    field.setReadOnly(true);
    for (const Qt::Key key : {Qt::Key_Home, Qt::Key_Left, Qt::Key_End, Qt::Key_Right}) {
        press(key);
        EXPECT_EQ(shown(), Index());
    }
}

TEST_F(MoveStepping, theBoardsCursorKeepsTheArrowsAndLeavesHomeAndEnd) {
    showGameOf(4);
    auto* board = find<BoardView>();
    board->setFocus(Qt::TabFocusReason);
    const Square before = board->cursorSquare();
    press(Qt::Key_Left);
    EXPECT_EQ(board->cursorSquare().file, before.file - 1);
    EXPECT_EQ(shown(), Index());
    press(Qt::Key_Home);
    EXPECT_EQ(shown(), Index(0));
    press(Qt::Key_End);
    EXPECT_EQ(shown(), Index());
}

TEST_F(MoveStepping, keysWithModifiersAreOthers) {
    showGameOf(4);
    press(Qt::Key_Left, Qt::ControlModifier);
    press(Qt::Key_Home, Qt::ShiftModifier);
    EXPECT_EQ(shown(), Index());
}

TEST_F(MoveStepping, spaceOnTheBoardPausesAndNothingElse) {
    showGameOf(0);
    find<BoardView>()->setFocus(Qt::TabFocusReason);
    press(Qt::Key_Space);
    EXPECT_TRUE(game->isPaused());
    EXPECT_FALSE(game->selectedSquare());
}

}  // namespace
}  // namespace orlix
