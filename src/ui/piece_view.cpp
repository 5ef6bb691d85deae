#include "ui/piece_view.h"

#include <QPainter>
#include <QThreadPool>
#include <memory>
#include <thread>
#include <utility>

#include "ui/piece_shape.h"

namespace orlix {

namespace {

QColor shade(QRgb rgb, qreal opacity) {
    QColor color = QColor::fromRgb(rgb);
    color.setAlphaF(static_cast<float>(opacity));
    return color;
}

PieceShape::Colors colorsOf(PieceColor color) {
    if (color == PieceColor::white)
        return {PieceView::bodyColor(color), shade(0x000000, 0.85), shade(0x000000, 0.4)};
    return {PieceView::bodyColor(color), shade(0xFFFFFF, 0.35), shade(0x000000, 0.6)};
}

}  // namespace

QColor PieceView::bodyColor(PieceColor color) {
    return color == PieceColor::white ? QColor::fromRgbF(0.98f, 0.98f, 0.96f)
                                      : QColor::fromRgbF(0.12f, 0.13f, 0.15f);
}

void PieceView::paint(QPainter& painter, const QPointF& topLeft) const {
    painter.drawImage(topLeft, PieceShape(type_, size_).colored(colorsOf(color_)));
}

PiecePixmaps::Sets PiecePixmaps::renderedSets(int side) {
    Sets sets;
    for (const PieceType type : allPieceTypes) {
        // Whoever waits for this processor, a display server before all, need not wait for the whole set.
        std::this_thread::yield();
        const PieceShape shape(type, side);
        for (const PieceColor color : allPieceColors)
            sets[static_cast<std::size_t>(color)][static_cast<std::size_t>(type)] =
                shape.colored(colorsOf(color));
    }
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
    if (pixmap.isNull() && side > 0)
        pixmap = QPixmap::fromImage(PieceShape(type, side).colored(colorsOf(color)));
    return pixmap;
}

}  // namespace orlix
