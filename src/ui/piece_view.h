// One piece as its chess symbol: the body filled in the piece's colour, with an edge and two shadows, so that
// it reads on both square colours. Values; main thread only.
#pragma once

#include <QColor>
#include <QImage>
#include <QPixmap>
#include <array>
#include <future>

#include "core/piece.h"

class QPainter;

namespace orlix {

class PieceView {
  public:
    /// `size` is the side length of the square in device pixels.
    PieceView(PieceType type, PieceColor color, int size) : type_(type), color_(color), size_(size) {}
    PieceView(const Piece& piece, int size) : PieceView(piece.type, piece.color, size) {}

    /// Paints the piece into the square whose top left corner is `topLeft`, the symbol centred in it.
    void paint(QPainter& painter, const QPointF& topLeft = {}) const;

    static QColor bodyColor(PieceColor color);

  private:
    PieceType type_;
    PieceColor color_;
    int size_;
};

/// The rendered pieces of one square size, each rendered when it is first asked for. Another size drops them.
class PiecePixmaps {
  public:
    /// The piece in a square of `side` device pixels; the pixmap's own pixel ratio is 1.
    const QPixmap& pixmap(PieceType type, PieceColor color, int side);

    /// Begins to render all twelve pieces for squares of `side` device pixels, unless that is the size they
    /// have, and returns at once. Who asks for one of them too early waits.
    void prepare(int side);

  private:
    /// One picture for each colour and type.
    template <class Picture>
    using Both = std::array<std::array<Picture, allPieceTypes.size()>, allPieceColors.size()>;
    using Sets = Both<QImage>;

    static Sets renderedSets(int side);
    void setSide(int side);
    void takePrepared();

    int side_ = 0;
    Both<QPixmap> pixmaps_;
    std::future<Sets> coming_;  ///< valid from `prepare` until taken
};

}  // namespace orlix
