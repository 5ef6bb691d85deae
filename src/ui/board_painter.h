// Paints single squares of the board in device pixels, layer by layer. Owned by the board view, which decides
// what is painted when.
#pragma once

#include <QFont>

#include "ui/board_geometry.h"
#include "ui/board_picture.h"
#include "ui/piece_view.h"

class QPainter;

namespace orlix {

class BoardPainter {
  public:
    /// What the pointer adds to a square while it is there.
    struct Touch {
        bool isPressed = false;
        bool isHoveredTarget = false;
    };

    static QColor baseColor(bool isLight);

    /// Everything that stands on the square. `painter` counts in device pixels from the geometry's shifted
    /// corner. A piece that is drawn elsewhere just now is left out with `showsPiece` false.
    void paintSquare(QPainter& painter, const BoardGeometry& geometry, Square square,
                     const BoardPicture::Cell& cell, Touch touch, bool showsPiece = true);
    /// Has the pieces rendered for the geometry while other work goes on.
    void prepare(const BoardGeometry& geometry) { pixmaps_.prepare(geometry.squareSide); }
    /// A piece with its square's top left corner at `corner`, device pixels.
    void paintPiece(QPainter& painter, const BoardGeometry& geometry, const BoardPicture::PieceLook& piece,
                    const QPointF& corner);

    /// The frame of the square that the keys act on.
    static void paintCursor(QPainter& painter, const BoardGeometry& geometry, Square square,
                            const QColor& accent);

  private:
    void paintCoordinates(QPainter& painter, const BoardGeometry& geometry, Square square);

    PiecePixmaps pixmaps_;
    QFont coordinateFont_;
    int coordinatePixels_ = 0;
};

}  // namespace orlix
