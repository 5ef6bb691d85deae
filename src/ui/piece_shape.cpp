#include "ui/piece_shape.h"

#include <QPainter>
#include <QPainterPath>
#include <QtMath>

#include "ui/piece_glyph.h"

namespace orlix {

namespace {

// Shares of the square's side.
constexpr qreal edgeWidth = 0.016;
constexpr qreal shadowOffset = 0.022;
constexpr qreal shadowSoftness = 0.022;
// Below this many pixels an edge breaks up into grey.
constexpr qreal thinnestEdge = 0.6;

// The outline scaled to the square and centred in it: each symbol by its own width, all of them by the height
// of the king, so that they stand on one line.
QPainterPath centredOutline(PieceType type, qreal size) {
    const qreal scale = PieceShape::fontSize(size);
    const QPainterPath& glyph = pieceGlyph(solidPieceSymbol(type));
    const QRectF own = glyph.boundingRect();
    const QRectF tallest = pieceGlyph(solidPieceSymbol(PieceType::king)).boundingRect();
    QTransform transform;
    transform.translate(size / 2, size / 2);
    transform.scale(scale, scale);
    transform.translate(-own.center().x(), -tallest.center().y());
    return transform.map(glyph);
}

// A soft copy of the outline: drawn small and stretched, which blurs it at next to no cost.
void paintSoftShadow(QPainter& painter, const QPainterPath& path, const QColor& color, qreal size) {
    const qreal reduction = qMax(1.0, size * shadowSoftness);
    const int side = qCeil(size / reduction) + 2;
    QImage small(side, side, QImage::Format_ARGB32_Premultiplied);
    small.fill(Qt::transparent);
    QPainter smallPainter(&small);
    smallPainter.setRenderHint(QPainter::Antialiasing);
    smallPainter.translate(1, 1);
    smallPainter.scale(1 / reduction, 1 / reduction);
    smallPainter.fillPath(path, color);
    smallPainter.end();
    painter.drawImage(QRectF(-reduction, size * shadowOffset - reduction, side * reduction, side * reduction),
                      small);
}

// Pixels are premultiplied, two of their bytes in each half; `coverage` is 0..255.
QRgb scaled(QRgb color, uint coverage) {
    constexpr QRgb every2nd = 0x00FF00FF;
    constexpr QRgb half = 0x00800080;
    const auto divided = [](QRgb product) { return product + ((product >> 8) & every2nd) + half; };
    const QRgb low = divided((color & every2nd) * coverage) >> 8 & every2nd;
    const QRgb high = divided((color >> 8 & every2nd) * coverage) & ~every2nd;
    return high | low;
}

QRgb over(QRgb top, QRgb ground) {
    return top + scaled(ground, 255U - static_cast<uint>(qAlpha(top)));
}

}  // namespace

PieceShape::PieceShape(PieceType type, int side)
    : coverage_(side, side, QImage::Format_ARGB32_Premultiplied) {
    coverage_.fill(Qt::transparent);
    const QPainterPath body = centredOutline(type, side);
    const qreal edge = qMax(thinnestEdge, side * edgeWidth);
    QPainter painter(&coverage_);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    // Each layer in a channel of its own, whatever the others have there.
    painter.setCompositionMode(QPainter::CompositionMode_Plus);
    paintSoftShadow(painter, body, Qt::blue, side);
    painter.strokePath(body, QPen(Qt::green, 2 * edge, Qt::SolidLine, Qt::FlatCap, Qt::BevelJoin));
    painter.fillPath(body, Qt::red);
}

QImage PieceShape::colored(const Colors& colors) const {
    const QRgb body = qPremultiply(colors.body.rgba());
    const QRgb edge = qPremultiply(colors.edge.rgba());
    const QRgb shadow = qPremultiply(colors.shadow.rgba());
    QImage image(coverage_.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    for (int y = 0; y < image.height(); ++y) {
        const auto* coverage = reinterpret_cast<const QRgb*>(coverage_.constScanLine(y));
        auto* pixels = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const QRgb here = coverage[x];
            // Nothing, and nothing but body, are what most of a square is.
            if (here == 0) continue;
            if (qRed(here) == 255) {
                pixels[x] = body;
                continue;
            }
            pixels[x] = over(scaled(body, static_cast<uint>(qRed(here))),
                             over(scaled(edge, static_cast<uint>(qGreen(here))),
                                  scaled(shadow, static_cast<uint>(qBlue(here)))));
        }
    }
    return image;
}

}  // namespace orlix
