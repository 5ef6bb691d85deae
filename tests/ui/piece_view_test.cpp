#include "ui/piece_view.h"

#include <gtest/gtest.h>

#include <QPainterPath>

#include "board_test_support.h"
#include "ui/board_painter.h"
#include "ui/piece_glyph.h"
#include "ui/piece_shape.h"

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
    EXPECT_DOUBLE_EQ(PieceShape::fontSize(100), 85);
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

TEST(PieceShape, layersLieOverEachOtherInTheirColours) {
    const PieceShape shape(PieceType::rook, 84);
    const PieceShape::Colors onlyBody{QColor(10, 20, 30), Qt::transparent, Qt::transparent};
    const PieceShape::Colors onlyEdge{Qt::transparent, QColor(0, 200, 0, 128), Qt::transparent};
    const PieceShape::Colors onlyShadow{Qt::transparent, Qt::transparent, Qt::black};
    const QImage body = shape.colored(onlyBody);
    const QImage edge = shape.colored(onlyEdge);
    const QImage shadow = shape.colored(onlyShadow);
    const QImage all = shape.colored({onlyBody.body, onlyEdge.edge, onlyShadow.shadow});
    int bodyPixels = 0;
    int edgePixels = 0;
    int shadowPixels = 0;
    for (int y = 0; y < 84; ++y) {
        for (int x = 0; x < 84; ++x) {
            // Painting the layers one over the other gives the same, but for rounding.
            QImage layered(1, 1, QImage::Format_ARGB32_Premultiplied);
            layered.fill(Qt::transparent);
            QPainter painter(&layered);
            for (const QImage& layer : {shadow, edge, body})
                painter.drawImage(QPointF(-x, -y), layer);
            painter.end();
            ASSERT_TRUE(isNear(all.pixelColor(x, y), layered.pixelColor(0, 0), 3)) << x << ", " << y;
            ASSERT_NEAR(qAlpha(all.pixel(x, y)), qAlpha(layered.pixel(0, 0)), 3) << x << ", " << y;
            bodyPixels += body.pixelColor(x, y) == onlyBody.body ? 1 : 0;
            edgePixels += edge.pixelColor(x, y).alpha() == 128 && qAlpha(body.pixel(x, y)) == 0 ? 1 : 0;
            shadowPixels += qAlpha(shadow.pixel(x, y)) > 0 && qAlpha(body.pixel(x, y)) == 0 ? 1 : 0;
        }
    }
    EXPECT_GT(bodyPixels, 500);
    EXPECT_GT(edgePixels, 50);
    EXPECT_GT(shadowPixels, 50);
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
