#include "ui/board_geometry.h"

#include <QtMath>

namespace orlix {

namespace {

// Absorbs the rounding of ratios such as 1.1, which would otherwise cost a whole pixel a square.
constexpr qreal roundingSlack = 1e-6;

qreal distanceToNextPixel(qreal position) {
    return qMax(0.0, qCeil(position - roundingSlack) - position);
}

}  // namespace

int BoardGeometry::squareSideFor(qreal available) {
    return qMax(0, qFloor((available + roundingSlack) / 8));
}

BoardGeometry BoardGeometry::fitting(const QSizeF& size, qreal ratio, const QPointF& corner, bool isFlipped) {
    BoardGeometry geometry;
    geometry.ratio = ratio;
    geometry.isFlipped = isFlipped;
    geometry.shift = {distanceToNextPixel(corner.x()), distanceToNextPixel(corner.y())};
    const qreal width = size.width() * ratio - geometry.shift.x();
    const qreal height = size.height() * ratio - geometry.shift.y();
    geometry.squareSide = squareSideFor(qMin(width, height));
    geometry.origin = {qFloor((width - geometry.boardSide() + roundingSlack) / 2),
                       qFloor((height - geometry.boardSide() + roundingSlack) / 2)};
    return geometry;
}

int BoardGeometry::column(Square square) const {
    return static_cast<int>(isFlipped ? 7 - square.file : square.file);
}

int BoardGeometry::row(Square square) const {
    return static_cast<int>(isFlipped ? square.rank : 7 - square.rank);
}

QRect BoardGeometry::deviceRect(Square square) const {
    return {origin.x() + column(square) * squareSide, origin.y() + row(square) * squareSide, squareSide,
            squareSide};
}

QRectF BoardGeometry::rect(Square square) const {
    const QRectF device = QRectF(deviceRect(square)).translated(shift);
    return {device.topLeft() / ratio, device.size() / ratio};
}

QRectF BoardGeometry::boardRect() const {
    return {(QPointF(origin) + shift) / ratio, QSizeF(boardSide(), boardSide()) / ratio};
}

std::optional<Square> BoardGeometry::squareAt(const QPointF& position) const {
    if (squareSide == 0) return std::nullopt;
    const QPointF device = position * ratio - shift - origin;
    const int shownColumn = qFloor(device.x() / squareSide);
    const int shownRow = qFloor(device.y() / squareSide);
    if (shownColumn < 0 || shownColumn > 7 || shownRow < 0 || shownRow > 7) return std::nullopt;
    return isFlipped ? Square{7 - shownColumn, shownRow} : Square{shownColumn, 7 - shownRow};
}

}  // namespace orlix
