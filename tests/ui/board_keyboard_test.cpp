#include <gtest/gtest.h>

#include <QTest>
#include <vector>

#include "board_clicks.h"
#include "board_test_support.h"
#include "ui/board_view.h"
#include "ui/theme.h"

namespace orlix {
namespace {

using test::at;
using test::clicks;
using test::isNear;
using test::pictureOf;
using test::TestGame;
using Squares = std::vector<Square>;

/// Keeps the keys that the board leaves to its parents.
class KeyTaker : public QWidget {
  public:
    std::vector<int> keys;

  protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() != Qt::Key_Control) keys.push_back(event->key());
    }
};

class BoardKeyboardTest : public ::testing::Test {
  protected:
    BoardKeyboardTest() {
        theme_.setScheme(Theme::Scheme::light);
        game_.system.reducedMotion = true;
        window_.resize(400, 400);
        window_.setFocusPolicy(Qt::StrongFocus);
        view_.setGeometry(0, 0, 400, 400);
        window_.show();
        window_.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window_));
        window_.setFocus();
        clicks().clear();
    }

    void focusByKey() { view_.setFocus(Qt::TabFocusReason); }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }
    void keys(std::initializer_list<Qt::Key> list) {
        for (const Qt::Key each : list)
            key(each);
    }
    void clickMouse(const char* square) {
        QTest::mouseClick(&view_, Qt::LeftButton, {}, view_.squareRect(at(square)).center().toPoint());
    }
    bool hasCursorOn(const char* square) {
        const QRectF rect = view_.squareRect(at(square));
        const QPoint edge(qRound(rect.left()) + 1, qRound(rect.center().y()));
        return isNear(pictureOf(view_, 1).pixelColor(edge), theme_.color(ColorRole::accent), 2);
    }

    TestGame game_;
    Theme theme_;
    KeyTaker window_;
    BoardView& view_ = *new BoardView(game_.game, game_.loc, theme_, game_.system, &window_);
};

TEST_F(BoardKeyboardTest, theCursorShowsOnlyWhileTheBoardHasTheFocus) {
    EXPECT_FALSE(view_.showsCursor());
    EXPECT_FALSE(hasCursorOn("e2"));
    focusByKey();
    EXPECT_TRUE(view_.showsCursor());
    EXPECT_TRUE(hasCursorOn("e2"));
    EXPECT_FALSE(hasCursorOn("e4"));
    window_.setFocus();
    EXPECT_FALSE(hasCursorOn("e2"));
}

TEST_F(BoardKeyboardTest, theKeysMoveTheCursorAsTheBoardIsSeen) {
    focusByKey();
    keys({Qt::Key_Up, Qt::Key_Up, Qt::Key_Right});
    EXPECT_EQ(view_.cursorSquare(), at("f4"));
    EXPECT_TRUE(hasCursorOn("f4"));
    EXPECT_FALSE(hasCursorOn("e4"));
    game_.game.flipBoard();
    EXPECT_EQ(view_.cursorSquare(), at("f4")) << "it stays on its square";
    EXPECT_TRUE(hasCursorOn("f4"));
    key(Qt::Key_Up);
    EXPECT_EQ(view_.cursorSquare(), at("f3"));
    key(Qt::Key_Right);
    EXPECT_EQ(view_.cursorSquare(), at("e3"));
    key(Qt::Key_Down);
    EXPECT_EQ(view_.cursorSquare(), at("e4"));
    key(Qt::Key_Left);
    EXPECT_EQ(view_.cursorSquare(), at("f4"));
}

TEST_F(BoardKeyboardTest, theCursorStopsAtTheEdges) {
    focusByKey();
    for (int step = 0; step < 9; ++step)
        keys({Qt::Key_Down, Qt::Key_Left});
    EXPECT_EQ(view_.cursorSquare(), at("a1"));
    for (int step = 0; step < 9; ++step)
        keys({Qt::Key_Up, Qt::Key_Right});
    EXPECT_EQ(view_.cursorSquare(), at("h8"));
}

TEST_F(BoardKeyboardTest, onAFlippedBoardItBeginsBeforeTheOtherKing) {
    game_.game.flipBoard();
    focusByKey();
    EXPECT_EQ(view_.cursorSquare(), at("e7"));
}

TEST_F(BoardKeyboardTest, returnSelectsAndPlays) {
    focusByKey();
    key(Qt::Key_Return);
    EXPECT_EQ(game_.game.selectedSquare(), at("e2"));
    keys({Qt::Key_Up, Qt::Key_Up, Qt::Key_Enter});
    EXPECT_EQ(game_.game.lastMove(), Move::fromUci("e2e4"));
    EXPECT_TRUE(window_.keys.empty());
}

TEST_F(BoardKeyboardTest, theKeypadsKeysDoTheSame) {
    focusByKey();
    key(Qt::Key_Enter, Qt::KeypadModifier);
    key(Qt::Key_Up, Qt::KeypadModifier);
    key(Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_EQ(game_.game.lastMove(), Move::fromUci("e2e3"));
}

#ifdef __linux__
TEST_F(BoardKeyboardTest, everyReturnIsExactlyOneClickWhateverTheSquare) {
    focusByKey();
    for (const Square square : Square::allSquares()) {
        view_.focusSquare(square);
        clicks().clear();
        key(Qt::Key_Return);
        EXPECT_EQ(clicks(), Squares{square}) << square.algebraic();
    }
}

TEST_F(BoardKeyboardTest, aReturnHeldDownIsOneClick) {
    focusByKey();
    for (const bool isRepeat : {false, true, true}) {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QString(), isRepeat);
        QApplication::sendEvent(&view_, &press);
    }
    EXPECT_EQ(clicks(), Squares{at("e2")});
}

TEST_F(BoardKeyboardTest, escapeClicksTheSelectedSquareAndNothingElse) {
    focusByKey();
    key(Qt::Key_Escape);
    EXPECT_TRUE(clicks().empty());
    EXPECT_EQ(window_.keys, std::vector<int>{Qt::Key_Escape}) << "left to the window";
    game_.click("g1");
    clicks().clear();
    key(Qt::Key_Escape);
    EXPECT_EQ(clicks(), Squares{at("g1")});
    EXPECT_FALSE(game_.game.selectedSquare());
    EXPECT_TRUE(game_.game.legalDestinationSquares().empty());
}

TEST_F(BoardKeyboardTest, aCursorThatNobodySeesDoesNotPlay) {
    clickMouse("g1");
    clicks().clear();
    key(Qt::Key_Return);
    EXPECT_TRUE(clicks().empty());
    EXPECT_TRUE(hasCursorOn("g1"));
    key(Qt::Key_Return);
    EXPECT_EQ(clicks(), Squares{at("g1")});
}
#endif  // __linux__

TEST_F(BoardKeyboardTest, spaceHomeEndAndModifiedKeysAreLeftToTheWindow) {
    focusByKey();
    keys({Qt::Key_Space, Qt::Key_Home, Qt::Key_End});
    key(Qt::Key_Left, Qt::ControlModifier);
    key(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(window_.keys,
              (std::vector<int>{Qt::Key_Space, Qt::Key_Home, Qt::Key_End, Qt::Key_Left, Qt::Key_Return}));
    EXPECT_EQ(view_.cursorSquare(), at("e2"));
    EXPECT_FALSE(game_.game.selectedSquare());
}

TEST_F(BoardKeyboardTest, aClickTakesTheFocusAndHidesTheCursor) {
    focusByKey();
    clickMouse("d2");
    EXPECT_TRUE(view_.hasFocus());
    EXPECT_FALSE(view_.showsCursor());
    EXPECT_FALSE(hasCursorOn("e2"));
    EXPECT_FALSE(hasCursorOn("d2"));
}

TEST_F(BoardKeyboardTest, afterAClickLeftAndRightAreTheWindowsAndUpBringsTheCursor) {
    clickMouse("d2");
    keys({Qt::Key_Left, Qt::Key_Right});
    EXPECT_EQ(window_.keys, (std::vector<int>{Qt::Key_Left, Qt::Key_Right}));
    EXPECT_FALSE(view_.showsCursor());
    key(Qt::Key_Up);
    EXPECT_EQ(view_.cursorSquare(), at("d3"));
    EXPECT_TRUE(hasCursorOn("d3"));
    key(Qt::Key_Left);
    EXPECT_EQ(view_.cursorSquare(), at("c3"));
}

TEST_F(BoardKeyboardTest, aPromotionIsPlayedByKeyAndTheCursorComesBack) {
    game_.game.loadFEN(QStringLiteral("8/4P3/8/8/8/k7/8/4K3 w - - 0 1"));
    view_.focusSquare(at("e7"));
    keys({Qt::Key_Return, Qt::Key_Up, Qt::Key_Return});
    ASSERT_TRUE(game_.game.pendingPromotion());
    EXPECT_FALSE(view_.hasFocus()) << "the picker has it";
    keys({Qt::Key_Right, Qt::Key_Return});
    EXPECT_EQ(game_.game.lastMove(), Move::fromUci("e7e8r"));
    EXPECT_TRUE(view_.hasFocus());
    EXPECT_TRUE(hasCursorOn("e8"));
}

}  // namespace
}  // namespace orlix
