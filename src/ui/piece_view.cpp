#include "ui/piece_view.h"

#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QThreadPool>
#include <QtMath>
#include <memory>
#include <utility>

#include "ui/piece_glyph.h"

namespace orlix {

namespace {

// Shares of the square's side.
constexpr qreal edgeWidth = 0.017;
constexpr qreal haloWidth = 0.014;
constexpr qreal shadowOffset = 0.022;
constexpr qreal shadowSoftness = 0.022;
// Below this many pixels an edge breaks up into grey.
constexpr qreal thinnestEdge = 0.6;

QColor shade(QRgb rgb, qreal opacity) {
    QColor color = QColor::fromRgb(rgb);
    color.setAlphaF(static_cast<float>(opacity));
    return color;
}

// The outline scaled to the square and centred in it: each symbol by its own width, all of them by the height
// of the king, so that they stand on one line.
QPainterPath centredOutline(PieceType type, qreal size) {
    const qreal scale = PieceView::fontSize(size);
    const QPainterPath& glyph = pieceGlyph(solidPieceSymbol(type));
    const QRectF own = glyph.boundingRect();
    const QRectF tallest = pieceGlyph(solidPieceSymbol(PieceType::king)).boundingRect();
    QTransform transform;
    transform.translate(size / 2, size / 2);
    transform.scale(scale, scale);
    transform.translate(-own.center().x(), -tallest.center().y());
    return transform.map(glyph);
}

void paintContour(QPainter& painter, const QPainterPath& path, const QColor& color, qreal width) {
    painter.strokePath(path, QPen(color, 2 * width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
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

}  // namespace

QColor PieceView::bodyColor(PieceColor color) {
    return color == PieceColor::white ? QColor::fromRgbF(0.98f, 0.98f, 0.96f)
                                      : QColor::fromRgbF(0.12f, 0.13f, 0.15f);
}

void PieceView::paint(QPainter& painter, const QPointF& topLeft) const {
    const QPainterPath body = centredOutline(type_, size_);
    painter.save();
    painter.translate(topLeft);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    if (color_ == PieceColor::white) {
        paintSoftShadow(painter, body, shade(0x000000, 0.4), size_);
        paintContour(painter, body, shade(0x000000, 0.85), qMax(thinnestEdge, size_ * edgeWidth));
    } else {
        paintSoftShadow(painter, body, shade(0x000000, 0.6), size_);
        paintContour(painter, body, shade(0xFFFFFF, 0.35), qMax(thinnestEdge, size_ * haloWidth));
    }
    painter.fillPath(body, bodyColor(color_));
    painter.restore();
}

namespace {

QImage rendered(PieceType type, PieceColor color, int side) {
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    PieceView(type, color, side).paint(painter);
    return image;
}

}  // namespace

PiecePixmaps::Sets PiecePixmaps::renderedSets(int side) {
    Sets sets;
    for (const PieceColor color : allPieceColors)
        for (const PieceType type : allPieceTypes)
            sets[static_cast<std::size_t>(color)][static_cast<std::size_t>(type)] =
                rendered(type, color, side);
    return sets;
}

void PiecePixmaps::setSide(int side) {
    if (side == side_) return;
    pixmaps_ = {};
    coming_ = {};
    side_ = side;
}

void PiecePixmaps::prepare(int side) {
    if (side == side_ || side <= 0) return;
    setSide(side);
    // In a thread of the pool: there Qt fills a shape in one go. On the main thread it would hand out every
    // few lines of it to the same pool and wait, hundreds of times for one set of pieces. In one thread: two
    // would keep a machine of two cores from what the main thread does meanwhile.
    const auto task = std::make_shared<std::packaged_task<Sets()>>([side] { return renderedSets(side); });
    coming_ = task->get_future();
    QThreadPool::globalInstance()->start([task] { (*task)(); });
}

void PiecePixmaps::takePrepared() {
    if (!coming_.valid()) return;
    Sets sets = coming_.get();
    for (std::size_t color = 0; color < sets.size(); ++color)
        for (std::size_t type = 0; type < sets[color].size(); ++type)
            pixmaps_[color][type] = QPixmap::fromImage(std::move(sets[color][type]));
}

const QPixmap& PiecePixmaps::pixmap(PieceType type, PieceColor color, int side) {
    setSide(side);
    takePrepared();
    QPixmap& pixmap = pixmaps_[static_cast<std::size_t>(color)][static_cast<std::size_t>(type)];
    if (pixmap.isNull() && side > 0) pixmap = QPixmap::fromImage(rendered(type, color, side));
    return pixmap;
}

}  // namespace orlix
