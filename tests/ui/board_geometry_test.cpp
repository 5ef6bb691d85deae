#include "ui/board_geometry.h"

#include <gtest/gtest.h>

#include <QtMath>

#include "ui/board_view.h"

namespace orlix {
namespace {

BoardGeometry geometryOf(qreal width, qreal height, qreal ratio, bool isFlipped = false) {
    return BoardGeometry::fitting(QSizeF(width, height), ratio, QPointF(), isFlipped);
}

TEST(BoardGeometry, squaresAreTheLargestWholeDevicePixelsThatFit) {
    for (const qreal ratio : {1.0, 1.25, 1.5, 2.0, 3.0}) {
        for (int size = 8; size < 900; size += 7) {
            const BoardGeometry geometry = geometryOf(size, size + 13, ratio);
            EXPECT_LE(geometry.boardSide(), size * ratio + 1e-3);
            EXPECT_GT(geometry.boardSide() + 8, size * ratio - 1e-3);
        }
    }
}

TEST(BoardGeometry, theBoardStandsInTheMiddleOfItsRoom) {
    const BoardGeometry wide = geometryOf(1000, 805, 1);
    EXPECT_EQ(wide.squareSide, 100);
    EXPECT_EQ(wide.origin, QPoint(100, 2));
}

TEST(BoardGeometry, neighboursMeetWithoutGapOrOverlap) {
    for (const bool isFlipped : {false, true}) {
        const BoardGeometry geometry = geometryOf(677, 677, 1.25, isFlipped);
        QRegion covered;
        for (const Square square : Square::allSquares()) {
            const QRect rect = geometry.deviceRect(square);
            EXPECT_FALSE(covered.intersects(rect));
            covered += rect;
        }
        EXPECT_EQ(covered.rectCount(), 1);
        EXPECT_EQ(covered.boundingRect(),
                  QRect(geometry.origin, QSize(geometry.boardSide(), geometry.boardSide())));
    }
}

TEST(BoardGeometry, a1StandsAtTheBottomLeftAndFlippedAtTheTopRight) {
    const Square a1{0, 0};
    const Square h1{7, 0};
    const BoardGeometry plain = geometryOf(800, 800, 1);
    EXPECT_EQ(plain.deviceRect(a1), QRect(0, 700, 100, 100));
    EXPECT_EQ(plain.deviceRect(h1), QRect(700, 700, 100, 100));
    const BoardGeometry flipped = geometryOf(800, 800, 1, true);
    EXPECT_EQ(flipped.deviceRect(a1), QRect(700, 0, 100, 100));
    EXPECT_EQ(flipped.deviceRect(h1), QRect(0, 0, 100, 100));
}

TEST(BoardGeometry, everyPointOfASquareBelongsToIt) {
    for (const bool isFlipped : {false, true}) {
        for (const qreal ratio : {1.0, 1.5, 2.0}) {
            const BoardGeometry geometry = geometryOf(650, 700, ratio, isFlipped);
            for (const Square square : Square::allSquares()) {
                const QRectF rect = geometry.rect(square);
                EXPECT_EQ(geometry.squareAt(rect.center()), square);
                EXPECT_EQ(geometry.squareAt(rect.topLeft() + QPointF(0.01, 0.01)), square);
                EXPECT_EQ(geometry.squareAt(rect.bottomRight() - QPointF(0.01, 0.01)), square);
            }
        }
    }
}

TEST(BoardGeometry, pointsBesideTheBoardBelongToNoSquare) {
    const BoardGeometry geometry = geometryOf(1000, 800, 1);
    EXPECT_EQ(geometry.squareAt({99.5, 400}), std::nullopt);
    EXPECT_EQ(geometry.squareAt({900.5, 400}), std::nullopt);
    EXPECT_EQ(geometry.squareAt({500, -0.5}), std::nullopt);
    EXPECT_EQ(geometry.squareAt({500, 800.5}), std::nullopt);
    EXPECT_EQ(geometryOf(3, 3, 1).squareAt({1, 1}), std::nullopt);
}

TEST(BoardGeometry, aCornerBetweenTwoPixelsMovesTheBoardToTheNextOne) {
    const BoardGeometry geometry = BoardGeometry::fitting(QSizeF(101, 101), 1.5, QPointF(10.5, 3.0), false);
    EXPECT_EQ(geometry.shift, QPointF(0.5, 0));
    for (const Square square : Square::allSquares()) {
        const QPointF corner = geometry.rect(square).topLeft() * 1.5 + QPointF(10.5, 3.0);
        EXPECT_NEAR(corner.x(), qRound(corner.x()), 1e-9);
        EXPECT_NEAR(corner.y(), qRound(corner.y()), 1e-9);
    }
    EXPECT_LE(geometry.boardRect().right(), 101 + 1e-9);
}

TEST(BoardGeometry, theFittingSizeHoldsTheBoardAndNoMore) {
    EXPECT_EQ(BoardView::fittingSize(679, 1), 672);
    EXPECT_EQ(BoardView::fittingSize(672, 1), 672);
    EXPECT_EQ(BoardView::fittingSize(671, 1), 664);
    EXPECT_EQ(BoardView::fittingSize(679, 2), 676);
    EXPECT_EQ(BoardView::fittingSize(7, 1), 0);
    for (const qreal ratio : {1.0, 1.25, 1.5, 1.75, 2.0}) {
        for (int available = 300; available < 340; ++available) {
            const int size = BoardView::fittingSize(available, ratio);
            EXPECT_LE(size, available);
            EXPECT_EQ(geometryOf(size, size, ratio).squareSide,
                      geometryOf(available, available, ratio).squareSide);
            EXPECT_EQ(BoardView::fittingSize(size, ratio), size);
        }
    }
}

}  // namespace
}  // namespace orlix
