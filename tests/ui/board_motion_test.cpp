#include "ui/board_motion.h"

#include <gtest/gtest.h>

#include <QTest>
#include <QTimer>
#include <string>

#include "board_test_support.h"
#include "support/event_pump.h"
#include "ui/board_view.h"
#include "ui/piece_view.h"
#include "ui/theme.h"

namespace orlix {
namespace {

using test::at;
using test::isNear;
using test::PaintWatch;
using test::pictureOf;
using test::settle;
using test::TestGame;
using Look = BoardPicture::PieceLook;
using Travellers = std::vector<BoardMotion::Traveller>;
using Fadings = std::vector<BoardMotion::Fading>;

constexpr Look whitePawn{PieceType::pawn, PieceColor::white};
constexpr Look blackPawn{PieceType::pawn, PieceColor::black};

BoardMotion motionOf(ChessBoard board, std::initializer_list<const char*> moves) {
    const BoardMotion::Placement before = board.squares;
    for (const char* move : moves)
        EXPECT_TRUE(board.play(*Move::fromUci(move))) << move;
    return BoardMotion::between(before, board.squares);
}

TEST(BoardMotion, aMoveIsOneTraveller) {
    const BoardMotion motion = motionOf(ChessBoard(), {"e2e4"});
    EXPECT_EQ(motion.travellers, (Travellers{{whitePawn, at("e2"), at("e4")}}));
    EXPECT_TRUE(motion.fading.empty());
}

TEST(BoardMotion, nothingChangedIsNoMotion) {
    EXPECT_TRUE(motionOf(ChessBoard(), {}).isEmpty());
}

TEST(BoardMotion, aCapturedPieceFadesWhereItStood) {
    const BoardMotion motion = motionOf(ChessBoard::fromFen("4k3/8/8/3p4/4P3/8/8/4K3 w - - 0 1"), {"e4d5"});
    EXPECT_EQ(motion.travellers, (Travellers{{whitePawn, at("e4"), at("d5")}}));
    EXPECT_EQ(motion.fading, (Fadings{{blackPawn, at("d5")}}));
}

TEST(BoardMotion, enPassantFadesThePawnBesideTheTarget) {
    const BoardMotion motion = motionOf(ChessBoard::fromFen("4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1"), {"e5d6"});
    EXPECT_EQ(motion.travellers, (Travellers{{whitePawn, at("e5"), at("d6")}}));
    EXPECT_EQ(motion.fading, (Fadings{{blackPawn, at("d5")}}));
}

TEST(BoardMotion, castlingMovesBoth) {
    const BoardMotion motion = motionOf(ChessBoard::fromFen("4k3/8/8/8/8/8/8/4K2R w K - 0 1"), {"e1g1"});
    EXPECT_EQ(motion.travellers, (Travellers{{{PieceType::rook, PieceColor::white}, at("h1"), at("f1")},
                                             {{PieceType::king, PieceColor::white}, at("e1"), at("g1")}}));
}

TEST(BoardMotion, aTakeBackTravelsBack) {
    ChessBoard board;
    board.play(*Move::fromUci("e2e4"));
    const BoardMotion::Placement before = board.squares;
    board.undo();
    EXPECT_EQ(BoardMotion::between(before, board.squares).travellers,
              (Travellers{{whitePawn, at("e4"), at("e2")}}));
}

TEST(BoardMotion, identityDecidesBetweenTwoPiecesOfOneType) {
    // Both knights could have come to d2; the one that did is the one with the identity.
    const BoardMotion motion = motionOf(ChessBoard::fromFen("4k3/8/8/8/8/5N2/8/1N2K3 w - - 0 1"), {"f3d2"});
    EXPECT_EQ(motion.travellers, (Travellers{{{PieceType::knight, PieceColor::white}, at("f3"), at("d2")}}));
}

TEST(BoardMotion, rebuiltPositionsAreMatchedByTypeAndSquare) {
    const ChessBoard before;
    ChessBoard rebuilt;
    rebuilt.play(*Move::fromUci("g1f3"));
    EXPECT_EQ(BoardMotion::between(before.squares, rebuilt.squares).travellers,
              (Travellers{{{PieceType::knight, PieceColor::white}, at("g1"), at("f3")}}));
}

TEST(BoardMotion, aWhollyOtherPositionSimplyStandsThere) {
    const ChessBoard before;
    const ChessBoard other = ChessBoard::fromFen("4k3/8/8/8/8/8/8/4K3 w - - 0 1");
    EXPECT_TRUE(BoardMotion::between(before.squares, other.squares).isEmpty());
}

class BoardTravelTest : public ::testing::Test {
  protected:
    BoardTravelTest() {
        game_.game.loadFEN(QStringLiteral("4k3/8/8/8/8/8/4P3/4K3 w - - 0 1"));
        view_.resize(400, 400);
        view_.show();
        settle();
    }

    bool travels() {
        for (const QTimer* timer : view_.findChildren<QTimer*>()) {
            if (timer->isActive()) return true;
        }
        return false;
    }
    bool hasPieceOn(const char* square) {
        const QImage image = pictureOf(view_, 1);
        const QRectF rect = view_.squareRect(at(square));
        const QPointF body(rect.center().x(), rect.top() + 0.7 * rect.height());
        return isNear(image.pixelColor(body.toPoint()), PieceView::bodyColor(PieceColor::white), 3);
    }

    TestGame game_;
    Theme theme_;
    BoardView view_{game_.game, game_.loc, theme_, game_.system};
};

TEST_F(BoardTravelTest, aMovedPieceLeavesItsSquareAndArrives) {
    game_.play("e2", "e4");
    EXPECT_TRUE(travels());
    EXPECT_TRUE(hasPieceOn("e2")) << "it begins where it stood";
    EXPECT_FALSE(hasPieceOn("e4"));
    EXPECT_TRUE(pumpUntil([this] { return !travels(); }));
    EXPECT_FALSE(hasPieceOn("e2"));
    EXPECT_TRUE(hasPieceOn("e4"));
}

TEST_F(BoardTravelTest, theWayIsPaintedAndNothingBesideIt) {
    PaintWatch paints(view_);
    game_.play("e2", "e4");
    EXPECT_TRUE(pumpUntil([this] { return !travels(); }));
    settle();
    QRegion way;
    for (const char* square : {"e2", "e3", "e4"})
        way += view_.squareRect(at(square)).toRect();
    EXPECT_EQ(paints.region, way);
    EXPECT_GE(paints.count, 2);
    paints.clear();
    settle();
    EXPECT_EQ(paints.count, 0) << "at rest";
}

TEST_F(BoardTravelTest, theNextPositionEndsTheMotionAtOnce) {
    game_.play("e2", "e4");
    game_.play("e8", "d8");
    EXPECT_TRUE(hasPieceOn("e4"));
    EXPECT_TRUE(travels()) << "now the king does";
    game_.game.flipBoard();
    EXPECT_FALSE(travels());
}

TEST_F(BoardTravelTest, aSelectionDoesNotDisturbTheMotion) {
    game_.play("e2", "e4");
    game_.click("e8");
    EXPECT_TRUE(travels());
    EXPECT_FALSE(hasPieceOn("e4"));
}

TEST_F(BoardTravelTest, reducedMotionShowsThePositionAtOnce) {
    game_.system.reducedMotion = true;
    game_.play("e2", "e4");
    EXPECT_FALSE(travels());
    EXPECT_TRUE(hasPieceOn("e4"));
}

TEST_F(BoardTravelTest, aHiddenBoardDoesNotTravel) {
    view_.hide();
    game_.play("e2", "e4");
    EXPECT_FALSE(travels());
}

TEST_F(BoardTravelTest, inspectingTravelsToo) {
    game_.game.startNewGame();
    game_.game.inspectMove(std::nullopt);
    game_.play("e2", "e4");
    game_.play("e7", "e5");
    EXPECT_TRUE(pumpUntil([this] { return !travels(); }));
    game_.game.inspectMove(0);
    EXPECT_TRUE(travels());
}

/// What the view shows must be what a new view of the same game shows.
class BoardRushTest : public BoardTravelTest {
  protected:
    BoardRushTest() { game_.game.startNewGame(); }

    void expectShownRight(const char* when) {
        EXPECT_TRUE(pumpUntil([this] { return !travels(); })) << when;
        BoardView fresh(game_.game, game_.loc, theme_, game_.system);
        fresh.resize(view_.size());
        EXPECT_EQ(pictureOf(view_, 1), pictureOf(fresh, 1)) << when;
    }
};

TEST_F(BoardRushTest, twentyMovesWithinATenthOfASecondLeaveTheBoardRightAndAreNeverHeldUp) {
    view_.clearFocus();
    const char* moves[] = {"e2e4", "e7e5", "g1f3", "b8c6", "f1b5", "a7a6", "b5c6", "d7c6", "e1g1", "f7f6",
                           "d2d4", "e5d4", "f3d4", "c6c5", "d4b3", "d8d1", "f1d1", "c8g4", "f2f3", "g4e6"};
    std::size_t plies = 0;
    for (const char* move : moves) {
        const std::string text = move;
        game_.play(text.substr(0, 2).c_str(), text.substr(2).c_str());
        EXPECT_EQ(game_.game.board().history.size(), ++plies) << "at once: " << move;
        EXPECT_TRUE(travels()) << "nobody waits for its end: " << move;
        QCoreApplication::processEvents();  // frames and repaints come in between
    }
    expectShownRight("after the moves");
    for (int step = 0; step < 20; ++step) {
        game_.game.undoMove();
        QCoreApplication::processEvents();
    }
    EXPECT_TRUE(game_.game.board().history.empty());
    expectShownRight("after all were taken back");
}

TEST_F(BoardRushTest, inspectingBackAndForthLeavesTheBoardRight) {
    view_.clearFocus();
    for (const char* move : {"e2e4", "d7d5", "e4d5", "d8d5", "b1c3"}) {
        const std::string text = move;
        game_.play(text.substr(0, 2).c_str(), text.substr(2).c_str());
    }
    for (const qint64 index : {3, 0, 2, 1, 3, 2, 0}) {
        game_.game.inspectMove(index);
        QCoreApplication::processEvents();
    }
    expectShownRight("inspecting");
    game_.game.inspectMove(std::nullopt);
    expectShownRight("live again");
}

TEST_F(BoardRushTest, aPromotionTravelsAsItsNewPieceAndComesBackAsAPawn) {
    view_.clearFocus();
    ChessBoard board = ChessBoard::fromFen("3r4/4P3/8/8/8/k7/8/4K3 w - - 0 1");
    const BoardMotion::Placement pawnStands = board.squares;
    board.play(*Move::fromUci("e7d8q"));
    EXPECT_EQ(BoardMotion::between(board.squares, pawnStands).travellers,
              (Travellers{{whitePawn, at("d8"), at("e7")}}));
    EXPECT_EQ(BoardMotion::between(pawnStands, board.squares),
              (BoardMotion{{{{PieceType::queen, PieceColor::white}, at("e7"), at("d8")}},
                           {{{PieceType::rook, PieceColor::black}, at("d8")}}}));
    game_.game.loadFEN(QStringLiteral("3r4/4P3/8/8/8/k7/8/4K3 w - - 0 1"));
    game_.play("e7", "d8");
    game_.game.confirmPromotion(PieceType::queen);
    EXPECT_TRUE(travels());
    expectShownRight("promoted");
    game_.game.undoMove();
    expectShownRight("taken back");
}

}  // namespace
}  // namespace orlix
