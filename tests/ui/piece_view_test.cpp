#include "ui/piece_view.h"

#include <gtest/gtest.h>

#include <QPainterPath>

#include "board_test_support.h"
#include "ui/board_painter.h"
#include "ui/piece_glyph.h"

namespace orlix {
namespace {

using test::isNear;

QImage drawn(PieceType type, PieceColor color, const QColor& ground, int size) {
    QImage image(size, size, QImage::Format_RGB32);
    image.fill(ground);
    QPainter painter(&image);
    PieceView(type, color, size).paint(painter);
    return image;
}

QRect changedArea(const QImage& image, const QColor& ground) {
    QRect area;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (!isNear(image.pixelColor(x, y), ground, 12)) area |= QRect(x, y, 1, 1);
        }
    }
    return area;
}

int countNear(const QImage& image, const QColor& color) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += isNear(image.pixelColor(x, y), color) ? 1 : 0;
    }
    return count;
}

TEST(PieceGlyph, everySymbolHasAnOutlineInTextForm) {
    for (char32_t symbol = 0x2654; symbol <= 0x265F; ++symbol) {
        EXPECT_FALSE(pieceGlyph(symbol).isEmpty()) << std::hex << static_cast<unsigned>(symbol);
        EXPECT_LT(pieceGlyph(symbol).boundingRect().height(), 1.3);
        EXPECT_GT(pieceGlyph(symbol).boundingRect().height(), 0.4);
    }
    EXPECT_TRUE(pieceGlyph(U'A').isEmpty());
}

TEST(PieceGlyph, symbolsAreThoseOfThePieces) {
    for (const PieceColor color : allPieceColors) {
        for (const PieceType type : allPieceTypes) {
            const char32_t symbol = pieceSymbol(type, color);
            const std::string_view expected = Piece::make(type, color).unicodeSymbol();
            EXPECT_EQ(QString::fromUcs4(&symbol, 1).toStdString(), expected);
        }
        EXPECT_EQ(solidPieceSymbol(PieceType::queen), pieceSymbol(PieceType::queen, PieceColor::black));
    }
}

TEST(PieceView, bodiesHaveTheirColours) {
    EXPECT_TRUE(isNear(PieceView::bodyColor(PieceColor::black), QColor(31, 33, 38)));
    EXPECT_TRUE(isNear(PieceView::bodyColor(PieceColor::white), QColor(250, 250, 245)));
    for (const PieceColor color : allPieceColors) {
        for (const PieceType type : allPieceTypes) {
            const QImage image = drawn(type, color, QColor(181, 135, 97), 84);
            EXPECT_GT(countNear(image, PieceView::bodyColor(color)), 84 * 84 / 20);
        }
    }
}

TEST(PieceView, fontSizeIsTheStatedShareOfTheSquare) {
    EXPECT_DOUBLE_EQ(PieceView::fontSize(100), 85);
    const QRectF outline = pieceGlyph(solidPieceSymbol(PieceType::king)).boundingRect();
    const QColor ground(128, 128, 128);
    const QRect area = changedArea(drawn(PieceType::king, PieceColor::white, ground, 400), ground);
    // The edge and the shadows stand around the outline.
    EXPECT_NEAR(area.width(), outline.width() * 340 + 2 * 0.017 * 400, 12);
}

TEST(PieceView, symbolsStandInTheMiddleAndInsideTheSquare) {
    const QColor ground(128, 128, 128);
    for (const PieceColor color : allPieceColors) {
        for (const PieceType type : allPieceTypes) {
            const QRect area = changedArea(drawn(type, color, ground, 168), ground);
            EXPECT_NEAR(area.center().x(), 83.5, 2);
            EXPECT_NEAR(area.center().y(), 84, 9);
            EXPECT_TRUE(QRect(2, 2, 164, 164).contains(area));
        }
    }
}

TEST(PieceView, aWhitePieceHasADarkEdgeOnTheLightSquareAndABlackOneALightEdgeOnTheDark) {
    const QImage white = drawn(PieceType::pawn, PieceColor::white, BoardPainter::baseColor(true), 168);
    const QImage black = drawn(PieceType::pawn, PieceColor::black, BoardPainter::baseColor(false), 168);
    // Along the middle row from the left: ground, edge, body.
    int darkest = 255;
    int lightest = 0;
    for (int x = 0; x < 84; ++x) {
        darkest = qMin(darkest, qGray(white.pixel(x, 110)));
        lightest = qMax(lightest, qGray(black.pixel(x, 110)));
    }
    EXPECT_LT(darkest, 70);
    EXPECT_GT(lightest, qGray(BoardPainter::baseColor(false).rgb()) + 25);
}

TEST(PieceView, shadowsFallBelow) {
    for (const PieceColor color : allPieceColors) {
        const QColor ground(200, 200, 200);
        const QImage image = drawn(PieceType::rook, color, ground, 168);
        const QRect area = changedArea(image, ground);
        const int below = qGray(image.pixel(84, area.bottom()));
        EXPECT_LT(below, 195);
        EXPECT_EQ(image.pixelColor(84, area.top() - 4), ground);
    }
}

TEST(PiecePixmaps, aPieceIsRenderedOnceForASize) {
    PiecePixmaps pixmaps;
    const qint64 key = pixmaps.pixmap(PieceType::king, PieceColor::white, 84).cacheKey();
    EXPECT_EQ(pixmaps.pixmap(PieceType::king, PieceColor::white, 84).cacheKey(), key);
    EXPECT_NE(pixmaps.pixmap(PieceType::king, PieceColor::black, 84).cacheKey(), key);
    EXPECT_EQ(pixmaps.pixmap(PieceType::king, PieceColor::white, 85).size(), QSize(85, 85));
    EXPECT_NE(pixmaps.pixmap(PieceType::king, PieceColor::white, 84).cacheKey(), key);
}

TEST(PiecePixmaps, aPreparedSetShowsWhatEachPieceAloneShows) {
    PiecePixmaps prepared;
    prepared.prepare(84);
    for (const PieceType type : allPieceTypes) {
        for (const PieceColor color : allPieceColors) {
            PiecePixmaps alone;
            EXPECT_EQ(prepared.pixmap(type, color, 84).toImage(), alone.pixmap(type, color, 84).toImage());
        }
    }
}

TEST(PiecePixmaps, aSetIsPreparedOnceForASize) {
    PiecePixmaps pixmaps;
    pixmaps.prepare(84);
    const qint64 key = pixmaps.pixmap(PieceType::king, PieceColor::white, 84).cacheKey();
    pixmaps.prepare(84);
    EXPECT_EQ(pixmaps.pixmap(PieceType::king, PieceColor::white, 84).cacheKey(), key);
    pixmaps.prepare(85);
    EXPECT_EQ(pixmaps.pixmap(PieceType::king, PieceColor::white, 85).size(), QSize(85, 85));
}

TEST(PieceView, takesTypeAndColourFromThePiece) {
    const Piece piece = Piece::make(PieceType::knight, PieceColor::black);
    QImage image(84, 84, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    PieceView(piece, 84).paint(painter);
    painter.end();
    EXPECT_EQ(image, drawn(PieceType::knight, PieceColor::black, Qt::white, 84));
}

}  // namespace
}  // namespace orlix
