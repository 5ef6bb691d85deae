// Where the squares lie: the largest board of eight whole device pixels a square that fits, centred. A value.
#pragma once

#include <QPoint>
#include <QRect>
#include <QSizeF>
#include <optional>

#include "core/square.h"

namespace orlix {

struct BoardGeometry {
    int squareSide = 0;  ///< device pixels
    QPoint origin;       ///< the board's top left corner, device pixels from the (shifted) widget corner
    qreal ratio = 1;     ///< device pixels to one of the widget's units
    /// From the widget's corner to the next whole device pixel, 0 up to 1. It differs from zero only where a
    /// fractional pixel ratio puts the widget between two pixels.
    QPointF shift;
    bool isFlipped = false;

    bool operator==(const BoardGeometry&) const = default;

    /// `size` in the widget's units; `corner` is the widget's corner in device pixels.
    static BoardGeometry fitting(const QSizeF& size, qreal ratio, const QPointF& corner, bool isFlipped);
    /// Side length of the largest square for a room of `available` device pixels.
    static int squareSideFor(qreal available);

    int boardSide() const { return 8 * squareSide; }
    /// Column 0 is at the left, row 0 at the top, as displayed.
    int column(Square square) const;
    int row(Square square) const;
    QRect deviceRect(Square square) const;                          ///< device pixels from the shifted corner
    QRectF rect(Square square) const;                               ///< the widget's units
    QRectF boardRect() const;                                       ///< the widget's units
    std::optional<Square> squareAt(const QPointF& position) const;  ///< from the widget's units
};

}  // namespace orlix
