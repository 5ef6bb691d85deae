#include "ui/board_view.h"

#include <gtest/gtest.h>

#include <QTest>
#include <array>
#include <functional>
#include <string>
#include <vector>

#include "board_clicks.h"
#include "board_test_support.h"
#include "l10n/extra_texts.h"
#include "ui/board_painter.h"
#include "ui/theme.h"

namespace orlix {
namespace {

using test::at;
using test::clicks;
using test::isNear;
using test::PaintWatch;
using test::pictureOf;
using test::settle;
using test::TestGame;

const QColor light(240, 219, 189);
const QColor dark(181, 135, 97);

QColor mixed(const QColor& ground, const QColor& over, double opacity) {
    const auto channel = [opacity](int under, int top) {
        return qRound(under * (1 - opacity) + top * opacity);
    };
    return {channel(ground.red(), over.red()), channel(ground.green(), over.green()),
            channel(ground.blue(), over.blue())};
}

const QColor yellow(0xFF, 0xCC, 0x00);
const QColor blue(0x00, 0x7A, 0xFF);
const QColor red(0xFF, 0x3B, 0x30);

class BoardViewTest : public ::testing::Test {
  protected:
    BoardViewTest() {
        theme_.setScheme(Theme::Scheme::light);
        game_.system.reducedMotion = true;  // every picture shows its position at once
        view_.resize(400, 400);
#ifdef __linux__
        clicks().clear();
#endif
    }

    /// The colour at the given shares of the square's width and height, from its top left corner.
    QColor colorAt(const char* square, double across, double down, qreal ratio = 1) {
        const QImage image = pictureOf(view_, ratio);
        const QRectF rect = view_.squareRect(at(square));
        const QPointF point(rect.left() + across * rect.width(), rect.top() + down * rect.height());
        return image.pixelColor((point * ratio).toPoint());
    }
    /// A corner that no piece, mark or coordinate reaches.
    QColor groundOf(const char* square, qreal ratio = 1) {
        return colorAt(square, 0.94, 0.06, ratio);
    }
    /// Runs `check` at both pixel ratios, for both orientations; the board stands as before afterwards.
    void forEveryRatioAndOrientation(const std::function<void(qreal ratio)>& check) {
        for (const char* orientation : {"upright", "flipped"}) {
            for (const qreal ratio : {1.0, 2.0}) {
                SCOPED_TRACE(testing::Message() << orientation << ", ratio " << ratio);
                check(ratio);
            }
            game_.game.flipBoard();
        }
    }
    void show() {
        view_.show();
        settle();
    }
    QPoint centreOf(const char* square) {
        return view_.squareRect(at(square)).center().toPoint();
    }

    TestGame game_;
    Theme theme_;
    BoardView view_{game_.game, game_.loc, theme_, game_.system};
};

TEST_F(BoardViewTest, squaresHaveTheirBaseColoursAndA1IsDark) {
    for (const qreal ratio : {1.0, 2.0}) {
        for (const bool flips : {false, true}) {
            if (flips) game_.game.flipBoard();
            for (const Square square : Square::allSquares()) {
                const QColor expected = (square.file + square.rank) % 2 == 0 ? dark : light;
                EXPECT_EQ(groundOf(square.algebraic().c_str(), ratio), expected) << square.algebraic();
            }
        }
        game_.game.flipBoard();
    }
}

TEST_F(BoardViewTest, flippedA1StandsAtTheTopRightAndIsStillDark) {
    EXPECT_EQ(view_.squareRect(at("a1")), QRectF(0, 350, 50, 50));
    game_.game.flipBoard();
    EXPECT_EQ(view_.squareRect(at("a1")), QRectF(350, 0, 50, 50));
    EXPECT_EQ(groundOf("a1"), dark);
}

TEST_F(BoardViewTest, edgesBetweenSquaresAreCrispAtAnySizeAndRatio) {
    game_.game.loadFEN(QStringLiteral("8/8/8/8/8/8/8/K1k5 w - - 0 1"));
    for (const qreal ratio : {1.0, 1.25, 1.5, 2.0}) {
        for (const int size : {397, 400, 403, 411}) {
            view_.resize(size, size);
            const QImage image = pictureOf(view_, ratio);
            // Ranks 4 and 5 are empty: along a line through them only the two colours stand, and as many
            // changes as edges.
            const int y = qRound(view_.squareRect(at("d5")).center().y() * ratio);
            int edges = 0;
            for (int x = 0; x < image.width(); ++x) {
                const QColor color = image.pixelColor(x, y);
                const bool isMargin = color == theme_.color(ColorRole::window);
                EXPECT_TRUE(isMargin || color == light || color == dark) << ratio << " " << size << " " << x;
                if (x > 0 && color != image.pixelColor(x - 1, y) && !isMargin) ++edges;
            }
            EXPECT_GE(edges, 7);
            EXPECT_LE(edges, 8);
        }
    }
}

TEST_F(BoardViewTest, theLastMoveIsYellowOnBothSquares) {
    game_.play("e2", "e4");
    forEveryRatioAndOrientation([this](qreal ratio) {
        EXPECT_TRUE(isNear(groundOf("e2", ratio), mixed(light, yellow, 0.32)));
        EXPECT_TRUE(isNear(groundOf("e4", ratio), mixed(light, yellow, 0.32)));
        EXPECT_EQ(groundOf("e3", ratio), dark);
    });
}

TEST_F(BoardViewTest, theSelectedSquareIsBlue) {
    game_.play("e2", "e4");
    game_.play("e7", "e5");
    game_.click("g1");
    forEveryRatioAndOrientation(
        [this](qreal ratio) { EXPECT_TRUE(isNear(groundOf("g1", ratio), mixed(dark, blue, 0.38))); });
    game_.click("b1");
    EXPECT_EQ(groundOf("g1"), dark);
    EXPECT_TRUE(isNear(groundOf("b1"), mixed(light, blue, 0.38)));
}

TEST_F(BoardViewTest, marksLieOnEachOtherInTheirOrder) {
    QImage image(800, 800, QImage::Format_RGB32);
    const BoardGeometry geometry = BoardGeometry::fitting(QSizeF(800, 800), 1, QPointF(), false);
    BoardPicture::Cell cell;
    cell.isLastMove = cell.isSelected = cell.isInCheck = true;
    cell.piece = BoardPicture::PieceLook{PieceType::pawn, PieceColor::white};
    cell.target = BoardPicture::Target::dot;
    QPainter painter(&image);
    BoardPainter().paintSquare(painter, geometry, Square{4, 4}, cell, {});
    painter.end();
    const QPoint corner = geometry.deviceRect(Square{4, 4}).topLeft();
    const QColor yellowed = mixed(dark, yellow, 0.32);
    const QColor blued = mixed(yellowed, blue, 0.38);
    EXPECT_TRUE(isNear(image.pixelColor(corner + QPoint(3, 3)), blued, 2));
    EXPECT_TRUE(isNear(image.pixelColor(corner + QPoint(50, 7)), mixed(blued, red, 0.55), 2));
    const QColor body = PieceView::bodyColor(PieceColor::white);
    EXPECT_TRUE(isNear(image.pixelColor(corner + QPoint(50, 75)), body, 1)) << "the piece stands on the disc";
    EXPECT_TRUE(isNear(image.pixelColor(corner + QPoint(50, 57)), mixed(body, Qt::black, 0.22), 2))
        << "the dot lies on the piece";
}

TEST_F(BoardViewTest, aCheckedKingStandsOnARedDiscOfNineTenths) {
    game_.game.loadFEN(QStringLiteral("4k3/8/8/8/8/8/4r3/4K3 w - - 0 1"));
    view_.resize(800, 800);
    const QColor expected = mixed(dark, red, 0.55);
    forEveryRatioAndOrientation([&](qreal ratio) {
        EXPECT_TRUE(isNear(colorAt("e1", 0.5, 0.065, ratio), expected));
        EXPECT_TRUE(isNear(colorAt("e1", 0.935, 0.5, ratio), expected));
        EXPECT_EQ(colorAt("e1", 0.5, 0.03, ratio), dark);
        EXPECT_EQ(colorAt("e1", 0.1, 0.1, ratio), dark) << "the corners stay free";
    });
    EXPECT_EQ(colorAt("e8", 0.5, 0.065), light) << "the other king is not marked";
}

TEST_F(BoardViewTest, aQuietTargetIsADotOfTheStatedDiameter) {
    view_.resize(800, 800);
    game_.click("g1");
    const QColor dot = mixed(light, Qt::black, 0.22);
    forEveryRatioAndOrientation([&](qreal ratio) {
        EXPECT_TRUE(isNear(colorAt("f3", 0.5, 0.5, ratio), dot));
        EXPECT_TRUE(isNear(colorAt("f3", 0.5 + 0.12, 0.5, ratio), dot));
        EXPECT_EQ(colorAt("f3", 0.5 + 0.16, 0.5, ratio), light);
    });
}

TEST_F(BoardViewTest, aCaptureIsARingOfFourAtTheStatedDiameter) {
    view_.resize(800, 800);
    game_.game.loadFEN(QStringLiteral("4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1"));
    game_.click("e5");
    const QColor ring = mixed(dark, Qt::black, 0.3);
    forEveryRatioAndOrientation([&](qreal ratio) {
        // d6 is empty: the en-passant target. The stroke's middle runs 42.5 from the centre.
        EXPECT_TRUE(isNear(colorAt("d6", 0.925, 0.5, ratio), ring));
        EXPECT_TRUE(isNear(colorAt("d6", 0.915, 0.5, ratio), ring));
        EXPECT_EQ(colorAt("d6", 0.5, 0.5, ratio), dark) << "no dot";
        EXPECT_EQ(colorAt("d6", 0.89, 0.5, ratio), dark);
        EXPECT_EQ(colorAt("d6", 0.96, 0.5, ratio), dark);
    });
}

TEST_F(BoardViewTest, piecesHaveTheirBodyColours) {
    view_.resize(800, 800);
    EXPECT_TRUE(isNear(colorAt("e2", 0.5, 0.7), QColor(250, 250, 245)));
    EXPECT_TRUE(isNear(colorAt("e7", 0.5, 0.7), QColor(31, 33, 38)));
    EXPECT_EQ(colorAt("e4", 0.5, 0.7), light);
}

/// Where a corner of the square holds anything in `ink`: the coordinates' corners are free of pieces.
QRect inkIn(const QImage& image, const QRect& corner, const QColor& ink) {
    QRect found;
    for (int y = corner.top(); y <= corner.bottom(); ++y) {
        for (int x = corner.left(); x <= corner.right(); ++x) {
            if (isNear(image.pixelColor(x, y), ink, 40)) found |= QRect(x, y, 1, 1);
        }
    }
    return found;
}

QRect scaledBy(int ratio, const QRect& rect) {
    return {rect.topLeft() * ratio, rect.size() * ratio};
}

TEST_F(BoardViewTest, coordinatesStandOnTheBottomRowAndTheLeftColumnAsDisplayed) {
    view_.resize(800, 800);
    game_.game.loadFEN(QStringLiteral("8/8/8/3k4/8/3K4/8/8 w - - 0 1"));
    for (const bool isFlipped : {false, true}) {
        if (isFlipped) game_.game.flipBoard();
        const std::array pictures{pictureOf(view_, 1), pictureOf(view_, 2)};
        for (const Square square : Square::allSquares()) {
            const QRect rect = view_.squareRect(square).toRect();
            const QColor ink = square.isLight() ? dark : light;
            const QRect lowerRight(rect.right() - 13, rect.bottom() - 14, 14, 15);
            const QRect upperLeft(rect.left(), rect.top(), 14, 15);
            const bool isBottom = square.rank == (isFlipped ? 7 : 0);
            const bool isLeft = square.file == (isFlipped ? 7 : 0);
            for (const int ratio : {1, 2}) {
                const QImage& picture = pictures[static_cast<std::size_t>(ratio - 1)];
                EXPECT_EQ(!inkIn(picture, scaledBy(ratio, lowerRight), ink).isNull(), isBottom)
                    << square.algebraic() << isFlipped << ratio;
                EXPECT_EQ(!inkIn(picture, scaledBy(ratio, upperLeft), ink).isNull(), isLeft)
                    << square.algebraic() << isFlipped << ratio;
            }
        }
    }
}

TEST_F(BoardViewTest, coordinatesAreAsLargeAndAsFarFromTheEdgeOnADenseScreen) {
    view_.resize(800, 800);
    game_.game.loadFEN(QStringLiteral("8/8/8/3k4/8/3K4/8/8 w - - 0 1"));
    // The digit 8 and the letter d, each in the square's own corner.
    const QRect digitRoom(0, 0, 14, 15);
    const QRect letterRoom(4 * 100 - 14, 800 - 15, 14, 15);
    const QImage plain = pictureOf(view_, 1);
    const QImage dense = pictureOf(view_, 2);
    for (const auto& [room, square] : {std::pair(digitRoom, "a8"), std::pair(letterRoom, "d1")}) {
        const QColor ink = at(square).isLight() ? dark : light;
        const QRect one = inkIn(plain, room, ink);
        const QRect two = inkIn(dense, scaledBy(2, room), ink);
        EXPECT_NEAR(one.height(), 8, 1) << square;
        EXPECT_NEAR(two.height(), 2 * one.height(), 2) << square;
        EXPECT_NEAR(two.width(), 2 * one.width(), 2) << square;
        EXPECT_NEAR(two.left(), 2 * one.left(), 3) << square;
        EXPECT_NEAR(two.top(), 2 * one.top(), 3) << square;
    }
}

TEST_F(BoardViewTest, fileLettersRunBackwardsOnAFlippedBoard) {
    game_.game.loadFEN(QStringLiteral("8/8/8/3k4/8/3K4/8/8 w - - 0 1"));
    const auto letterOn = [this](const char* square) {
        const QImage image = pictureOf(view_, 1);
        const QRect rect = view_.squareRect(at(square)).toRect();
        return image.copy(QRect(rect.right() - 12, rect.bottom() - 13, 12, 13));
    };
    // A file's squares on ranks 1 and 8 differ in colour: the letters are compared by where their ink is.
    const auto shapeOn = [&letterOn](const char* square) {
        const QImage image = letterOn(square);
        QByteArray shape;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                shape += isNear(image.pixelColor(x, y), at(square).isLight() ? light : dark, 60) ? '.' : '#';
            }
        }
        return shape;
    };
    std::vector<QByteArray> shapes;
    for (const char* square : {"a1", "b1", "c1", "d1", "e1", "f1", "g1", "h1"})
        shapes.push_back(shapeOn(square));
    game_.game.flipBoard();
    EXPECT_EQ(view_.squareRect(at("h8")).topLeft(), QPointF(0, 350));
    std::size_t file = 0;
    for (const char* square : {"a8", "b8", "c8", "d8", "e8", "f8", "g8", "h8"}) {
        EXPECT_EQ(shapeOn(square), shapes[file]) << square;
        EXPECT_NE(shapeOn(square), shapes[(file + 1) % 8]) << square;
        ++file;
    }
}

#ifdef __linux__
TEST_F(BoardViewTest, everySquareTurnsOneClickIntoOneCall) {
    show();
    for (const bool hasSelection : {false, true}) {
        for (const bool isFlipped : {false, true}) {
            for (const Square square : Square::allSquares()) {
                game_.game.startNewGame();
                if (isFlipped) game_.game.flipBoard();
                if (hasSelection) game_.game.handleSquareClick(at("e2"));
                clicks().clear();
                QTest::mouseClick(&view_, Qt::LeftButton, {}, view_.squareRect(square).center().toPoint());
                EXPECT_EQ(clicks(), std::vector<Square>{square}) << square.algebraic();
            }
        }
    }
}

TEST_F(BoardViewTest, clicksReachTheManagerWhileItIgnoresThem) {
    show();
    game_.play("e2", "e4");
    game_.play("e7", "e5");
    game_.game.inspectMove(0);
    clicks().clear();
    QTest::mouseClick(&view_, Qt::LeftButton, {}, centreOf("g1"));
    EXPECT_EQ(clicks(), std::vector<Square>{at("g1")});
    EXPECT_FALSE(game_.game.selectedSquare());
}

TEST_F(BoardViewTest, aDoubleClickIsTwoClicks) {
    show();
    QTest::mouseClick(&view_, Qt::LeftButton, {}, centreOf("e2"));
    // The system tells the second press as a double click; its release is an ordinary one.
    const QPointF position = centreOf("e2");
    QMouseEvent second(QEvent::MouseButtonDblClick, position, view_.mapToGlobal(position), Qt::LeftButton,
                       Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&view_, &second);
    QTest::mouseRelease(&view_, Qt::LeftButton, {}, centreOf("e2"));
    EXPECT_EQ(clicks(), (std::vector<Square>{at("e2"), at("e2")}));
    EXPECT_FALSE(game_.game.selectedSquare()) << "selected and put back";
}

TEST_F(BoardViewTest, theCallComesOnRelease) {
    show();
    QTest::mousePress(&view_, Qt::LeftButton, {}, centreOf("e2"));
    EXPECT_TRUE(clicks().empty());
    QTest::mouseMove(&view_, centreOf("e2") + QPoint(5, 5));
    QTest::mouseRelease(&view_, Qt::LeftButton, {}, centreOf("e2") + QPoint(5, 5));
    EXPECT_EQ(clicks(), std::vector<Square>{at("e2")});
}

TEST_F(BoardViewTest, aPressThatLeavesItsSquareIsNoClickOnIt) {
    show();
    // Nothing that a click would select: a pawn of the other side, and an empty square.
    for (const char* square : {"e7", "e4"}) {
        QTest::mousePress(&view_, Qt::LeftButton, {}, centreOf(square));
        QTest::mouseMove(&view_, centreOf("d5"));
        QTest::mouseMove(&view_, centreOf(square));
        QTest::mouseRelease(&view_, Qt::LeftButton, {}, centreOf(square));
        EXPECT_TRUE(clicks().empty()) << square;
    }
}

TEST_F(BoardViewTest, otherButtonsAndTheMarginAreNoClicks) {
    view_.resize(500, 400);
    show();
    QTest::mouseClick(&view_, Qt::RightButton, {}, centreOf("e2"));
    QTest::mouseClick(&view_, Qt::LeftButton, {}, QPoint(10, 200));
    EXPECT_TRUE(clicks().empty());
}

#endif  // __linux__

TEST_F(BoardViewTest, aPressShowsAtOnce) {
    show();
    const QColor before = groundOf("e4");
    QTest::mousePress(&view_, Qt::LeftButton, {}, centreOf("e4"));
    EXPECT_LT(groundOf("e4").lightness(), before.lightness());
    QTest::mouseRelease(&view_, Qt::LeftButton, {}, centreOf("e4"));
    EXPECT_EQ(groundOf("e4"), before);
}

TEST_F(BoardViewTest, thePointerOverALegalTargetShows) {
    show();
    game_.click("g1");
    QTest::mouseMove(&view_, centreOf("f3"));
    EXPECT_NE(groundOf("f3"), light);
    EXPECT_EQ(groundOf("h3"), light);
    QTest::mouseMove(&view_, centreOf("f4"));
    EXPECT_EQ(groundOf("f3"), light);
    EXPECT_EQ(groundOf("f4"), dark) << "no target, no mark";
    QTest::mouseMove(&view_, centreOf("h3"));
    EXPECT_NE(groundOf("h3"), light);
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&view_, &leave);
    EXPECT_EQ(groundOf("h3"), light);
}

TEST_F(BoardViewTest, onlySquaresThatDifferArePaintedAgain) {
    show();
    PaintWatch paints(view_);
    game_.click("g1");
    settle();
    EXPECT_EQ(paints.count, 1);
    QRegion expected;
    for (const char* square : {"g1", "f3", "h3"})
        expected += view_.squareRect(at(square)).toRect();
    EXPECT_EQ(paints.region, expected);
}

TEST_F(BoardViewTest, whatTheBoardDoesNotShowNeverPaintsIt) {
    show();
    game_.play("e2", "e4");
    settle();
    PaintWatch paints(view_);
    Q_EMIT game_.game.changed();
    Q_EMIT game_.game.liveEvaluationChanged();
    game_.time.advance(std::chrono::milliseconds(500));
    game_.game.togglePause();
    game_.game.togglePause();
    settle();
    EXPECT_EQ(paints.count, 0);
    game_.game.flipBoard();
    settle();
    EXPECT_EQ(paints.count, 1);
    EXPECT_EQ(paints.region.boundingRect(), view_.rect());
}

TEST_F(BoardViewTest, itsNameIsReadInTheChosenLanguage) {
    EXPECT_EQ(view_.accessibleName(), extraText(Language::english, ExtraText::board));
    game_.loc.setCurrentLanguage(Language::german);
    EXPECT_EQ(view_.accessibleName(), extraText(Language::german, ExtraText::board));
}

}  // namespace
}  // namespace orlix
