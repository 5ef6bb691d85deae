#include <gtest/gtest.h>

#include <QTest>
#include <QTimer>
#include <functional>
#include <string>
#include <vector>

#include "board_clicks.h"
#include "board_test_support.h"
#include "support/event_pump.h"
#include "ui/board_view.h"
#include "ui/piece_view.h"
#include "ui/theme.h"

namespace orlix {
namespace {

using test::at;
using test::clicks;
using test::isNear;
using test::pictureOf;
using test::settle;
using test::TestGame;
using Squares = std::vector<Square>;

class BoardDragTest : public ::testing::Test {
  protected:
    BoardDragTest() {
        view_.resize(400, 400);
        view_.show();
        settle();
        clicks().clear();
    }

    QPoint centreOf(const char* square) { return view_.squareRect(at(square)).center().toPoint(); }
    void press(const char* square) { QTest::mousePress(&view_, Qt::LeftButton, {}, centreOf(square)); }
    void moveTo(QPoint place) { QTest::mouseMove(&view_, place); }
    void moveTo(const char* square) { moveTo(centreOf(square)); }
    void releaseAt(QPoint place) { QTest::mouseRelease(&view_, Qt::LeftButton, {}, place); }
    void release(const char* square) { releaseAt(centreOf(square)); }
    void drag(const char* from, const char* to) {
        press(from);
        moveTo(to);
        release(to);
    }
    bool travels() const {
        for (const QTimer* timer : view_.findChildren<QTimer*>()) {
            if (timer->isActive()) return true;
        }
        return false;
    }
    bool isAtRest() {
        return pumpUntil([this] { return !travels(); });
    }
    /// The colour in the body of a pawn that stands on the square.
    QColor pawnColorOn(const char* square) {
        const QRectF rect = view_.squareRect(at(square));
        const QPointF body(rect.center().x(), rect.top() + 0.7 * rect.height());
        return pictureOf(view_, 1).pixelColor(body.toPoint());
    }
    bool hasWhitePawnOn(const char* square) {
        return isNear(pawnColorOn(square), PieceView::bodyColor(PieceColor::white), 3);
    }

    TestGame game_;
    Theme theme_;
    BoardView view_{game_.game, game_.loc, theme_, game_.system};
};

#ifdef __linux__
TEST_F(BoardDragTest, aDraggedPieceIsTwoClicks) {
    drag("e2", "e4");
    EXPECT_EQ(clicks(), (Squares{at("e2"), at("e4")}));
    EXPECT_EQ(game_.game.board().history.size(), 1u);
    EXPECT_FALSE(game_.game.selectedSquare());
}

TEST_F(BoardDragTest, theFirstClickComesWhenThePieceLeavesItsSquareAndTheSecondOnRelease) {
    press("e2");
    moveTo(centreOf("e2") + QPoint(20, 0));
    EXPECT_TRUE(clicks().empty());
    moveTo("f3");
    EXPECT_EQ(clicks(), Squares{at("e2")});
    moveTo("e3");
    moveTo("e4");
    EXPECT_EQ(clicks(), Squares{at("e2")});
    release("e4");
    EXPECT_EQ(clicks(), (Squares{at("e2"), at("e4")}));
}

TEST_F(BoardDragTest, aPieceSelectedAlreadyIsNotClickedAgain) {
    game_.click("e2");
    clicks().clear();
    drag("e2", "e4");
    EXPECT_EQ(clicks(), Squares{at("e4")});
    EXPECT_EQ(game_.game.board().history.size(), 1u);
}

TEST_F(BoardDragTest, anotherPieceThanTheSelectedOneIsSelectedFirst) {
    game_.click("d2");
    clicks().clear();
    drag("e2", "e4");
    EXPECT_EQ(clicks(), (Squares{at("e2"), at("e4")}));
    EXPECT_EQ(game_.game.lastMove(), Move::fromUci("e2e4"));
}

TEST_F(BoardDragTest, releasedOffTheBoardItMakesNoSecondClickAndStaysSelected) {
    press("e2");
    moveTo("e4");
    moveTo(QPoint(200, 430));
    releaseAt(QPoint(200, 430));
    EXPECT_EQ(clicks(), Squares{at("e2")});
    EXPECT_EQ(game_.game.selectedSquare(), at("e2"));
    EXPECT_TRUE(game_.game.board().history.empty());
}

TEST_F(BoardDragTest, aPressThatWandersInsideItsSquareStaysOneClick) {
    press("e2");
    for (const QPoint step : {QPoint(20, 0), QPoint(-20, 0), QPoint(0, 20), QPoint(0, -20)})
        moveTo(centreOf("e2") + step);
    releaseAt(centreOf("e2") + QPoint(0, -20));
    EXPECT_EQ(clicks(), Squares{at("e2")});
    EXPECT_EQ(game_.game.selectedSquare(), at("e2"));
}

TEST_F(BoardDragTest, droppedOnItsOwnSquareAfterLeavingItIsTwoClicks) {
    press("e2");
    moveTo("e3");
    moveTo("e2");
    release("e2");
    EXPECT_EQ(clicks(), (Squares{at("e2"), at("e2")}));
    EXPECT_FALSE(game_.game.selectedSquare());
}

TEST_F(BoardDragTest, aReleaseElsewhereWithoutAMoveInBetweenIsADragToo) {
    press("e2");
    release("e4");
    EXPECT_EQ(clicks(), (Squares{at("e2"), at("e4")}));
}

TEST_F(BoardDragTest, anIllegalDropIsTwoClicksAndPlaysNothing) {
    drag("e2", "e5");
    EXPECT_EQ(clicks(), (Squares{at("e2"), at("e5")}));
    EXPECT_TRUE(game_.game.board().history.empty());
    EXPECT_FALSE(game_.game.selectedSquare());
}

TEST_F(BoardDragTest, onlyAPieceThatAClickWouldSelectCanBeDragged) {
    struct Case {
        const char* name;
        const char* square;
        void (*prepare)(GameManager&);
    };
    const Case cases[] = {
        {"an empty square", "e4", [](GameManager&) {}},
        {"the other side's piece", "e7", [](GameManager&) {}},
        {"paused", "e2", [](GameManager& game) { game.togglePause(); }},
        {"over", "e2", [](GameManager& game) { game.resign(PieceColor::black); }},
        {"two engines", "e2", [](GameManager& game) { game.setGameMode(GameMode::engineVsEngine); }},
        {"the engine's turn", "e2",
         [](GameManager& game) {
             game.setColorChoice(PlayerColorChoice::black);
             game.setGameMode(GameMode::humanVsEngine);
             game.startNewGame();
         }},
        {"inspecting", "d2",
         [](GameManager& game) {
             for (const char* square : {"e2", "e4", "e7", "e5"})
                 game.handleSquareClick(at(square));
             game.inspectMove(0);
         }},
    };
    for (const Case& each : cases) {
        game_.game.setGameMode(GameMode::humanVsHuman);
        game_.game.startNewGame();
        each.prepare(game_.game);
        clicks().clear();
        drag(each.square, "d5");
        EXPECT_TRUE(clicks().empty()) << each.name;
        drag(each.square, "d4");
        EXPECT_TRUE(clicks().empty()) << each.name;
    }
}

TEST_F(BoardDragTest, aPositionThatChangesEndsTheDragWithoutHarm) {
    press("e2");
    moveTo("e3");
    game_.game.startNewGame();
    clicks().clear();
    moveTo("e4");
    release("e4");
    EXPECT_TRUE(clicks().empty());
    EXPECT_TRUE(game_.game.board().history.empty());
}

TEST_F(BoardDragTest, whateverTakesThePieceAwayEndsTheDrag) {
    struct Case {
        const char* name;
        std::function<void()> change;
    };
    const Case cases[] = {
        {"flipped", [this] { game_.game.flipBoard(); }},
        {"paused", [this] { game_.game.togglePause(); }},
        {"resigned", [this] { game_.game.resign(PieceColor::white); }},
        {"taken back", [this] { game_.game.undoMove(); }},
        {"inspecting", [this] { game_.game.inspectMove(0); }},
        {"deselected", [this] { game_.game.handleSquareClick(at("e2")); }},
        {"mouse taken",
         [this] {
             QEvent ungrab(QEvent::UngrabMouse);
             QApplication::sendEvent(&view_, &ungrab);
         }},
        {"window left",
         [this] {
             QEvent deactivate(QEvent::WindowDeactivate);
             QApplication::sendEvent(&view_, &deactivate);
         }},
        {"hidden",
         [this] {
             view_.hide();
             view_.show();
         }},
        {"release lost",
         [this] {
             const QPointF place = centreOf("e3");
             QMouseEvent move(QEvent::MouseMove, place, view_.mapToGlobal(place), Qt::NoButton, Qt::NoButton,
                              Qt::NoModifier);
             QApplication::sendEvent(&view_, &move);
         }},
    };
    for (const Case& each : cases) {
        game_.game.startNewGame();
        game_.play("a2", "a4");
        game_.play("a7", "a5");
        game_.play("b2", "b4");
        game_.play("b7", "b5");
        press("e2");
        moveTo("e3");
        ASSERT_EQ(game_.game.selectedSquare(), at("e2")) << each.name;
        each.change();
        clicks().clear();
        const std::size_t plies = game_.game.board().history.size();
        release("e4");
        EXPECT_TRUE(clicks().empty()) << each.name;
        EXPECT_EQ(game_.game.board().history.size(), plies) << each.name;
        if (game_.game.isFlipped()) game_.game.flipBoard();
    }
}

TEST_F(BoardDragTest, aPressBeforeAMoveOfTheOtherSideIsStillAClick) {
    game_.click("e2");
    press("d7");
    game_.click("e4");
    clicks().clear();
    release("d7");
    EXPECT_EQ(clicks(), Squares{at("d7")});
    EXPECT_EQ(game_.game.selectedSquare(), at("d7"));
}

TEST_F(BoardDragTest, aPromotionThatOpensEndsThePress) {
    game_.game.loadFEN(QStringLiteral("8/4P3/8/8/8/k7/8/4K3 w - - 0 1"));
    game_.click("e7");
    press("e1");
    game_.click("e8");
    ASSERT_TRUE(game_.game.pendingPromotion());
    clicks().clear();
    release("e1");
    EXPECT_TRUE(clicks().empty());
}

TEST_F(BoardDragTest, escapePutsADraggedPieceBack) {
    press("e2");
    moveTo("e4");
    QTest::keyClick(&view_, Qt::Key_Escape);
    EXPECT_FALSE(game_.game.selectedSquare());
    clicks().clear();
    release("e4");
    EXPECT_TRUE(clicks().empty());
}
#endif  // __linux__

TEST_F(BoardDragTest, aPawnDraggedToTheLastRankAsksForItsPiece) {
    game_.game.loadFEN(QStringLiteral("8/4P3/8/8/8/k7/8/4K3 w - - 0 1"));
    drag("e7", "e8");
    ASSERT_TRUE(game_.game.pendingPromotion());
    EXPECT_EQ(game_.game.pendingPromotion()->to, at("e8"));
    game_.game.confirmPromotion(PieceType::queen);
    EXPECT_EQ(game_.game.lastMove(), Move::fromUci("e7e8q"));
}

TEST_F(BoardDragTest, thePieceHangsOnThePointerAndFadesOnItsSquare) {
    press("e2");
    moveTo("e4");
    EXPECT_TRUE(hasWhitePawnOn("e4"));
    EXPECT_FALSE(hasWhitePawnOn("e2"));
    // The ground under the faded piece is the selected square's.
    const QRectF rect = view_.squareRect(at("e2"));
    const QColor ground = pictureOf(view_, 1).pixelColor(rect.topLeft().toPoint() + QPoint(46, 3));
    EXPECT_NE(pawnColorOn("e2"), ground) << "faded, not gone";
    moveTo("g5");
    EXPECT_FALSE(hasWhitePawnOn("e4"));
    EXPECT_TRUE(hasWhitePawnOn("g5"));
    release("e4");
}

TEST_F(BoardDragTest, aPieceThatFollowsThePointerInsideItsSquareIsThereAfterTheClick) {
    press("e2");
    moveTo(centreOf("e2") + QPoint(15, 0));
    EXPECT_FALSE(hasWhitePawnOn("e2"));
    releaseAt(centreOf("e2") + QPoint(15, 0));
    EXPECT_TRUE(hasWhitePawnOn("e2"));
    EXPECT_EQ(game_.game.selectedSquare(), at("e2"));
}

TEST_F(BoardDragTest, aDropThatPlaysDoesNotTravelAgain) {
    drag("e2", "e4");
    EXPECT_FALSE(travels());
    EXPECT_TRUE(hasWhitePawnOn("e4"));
    EXPECT_FALSE(hasWhitePawnOn("e2"));
}

TEST_F(BoardDragTest, theRookStillTravelsWhenTheKingIsDroppedToCastle) {
    game_.game.loadFEN(QStringLiteral("4k3/8/8/8/8/8/8/4K2R w K - 0 1"));
    EXPECT_TRUE(isAtRest());
    drag("e1", "g1");
    EXPECT_TRUE(travels());
    EXPECT_TRUE(isAtRest());
    EXPECT_EQ(game_.game.lastMove(), Move::fromUci("e1g1"));
}

TEST_F(BoardDragTest, anIllegalDropFliesHome) {
    drag("e2", "e6");
    EXPECT_TRUE(travels());
    EXPECT_TRUE(hasWhitePawnOn("e6")) << "it begins where it was let go";
    EXPECT_TRUE(isAtRest());
    EXPECT_TRUE(hasWhitePawnOn("e2"));
    EXPECT_FALSE(hasWhitePawnOn("e6"));
}

TEST_F(BoardDragTest, reducedMotionPutsItBackAtOnce) {
    game_.system.reducedMotion = true;
    drag("e2", "e6");
    EXPECT_FALSE(travels());
    EXPECT_TRUE(hasWhitePawnOn("e2"));
}

TEST_F(BoardDragTest, whereThePieceWasAndWhereItIsArePaintedAndNothingElse) {
    press("e2");
    moveTo("e4");
    settle();
    test::PaintWatch paints(view_);
    moveTo("g5");
    settle();
    for (const char* square : {"e4", "g5"}) {
        const QRect place = view_.squareRect(at(square)).toRect();
        EXPECT_EQ(paints.region.intersected(place), QRegion(place)) << square;
    }
    EXPECT_FALSE(paints.region.intersects(view_.squareRect(at("b4")).toRect()));
    paints.clear();
    game_.game.undoMove();
    game_.game.startNewGame();  // ends the drag
    settle();
    const QRect last = view_.squareRect(at("g5")).toRect();
    EXPECT_EQ(paints.region.intersected(last), QRegion(last));
    EXPECT_FALSE(hasWhitePawnOn("g5"));
    EXPECT_TRUE(hasWhitePawnOn("e2"));
}

}  // namespace
}  // namespace orlix
