// What both colours of a type of piece have in common: body, edge and soft shadow. Drawing them is what costs
// the time of a piece; colouring them does not. Values; for any thread.
#pragma once

#include <QColor>
#include <QImage>

#include "core/piece.h"

namespace orlix {

class PieceShape {
  public:
    struct Colors {
        QColor body;
        QColor edge;
        QColor shadow;
    };

    /// The shape in a square of `side` pixels, the symbol centred in it.
    PieceShape(PieceType type, int side);

    /// The shape in colours: the body over the edge over the shadow. As large as the square.
    QImage colored(const Colors& colors) const;

    /// The symbol's font size for a square of side `size`.
    static qreal fontSize(qreal size) { return 0.85 * size; }

  private:
    QImage coverage_;  ///< how much each layer covers of a pixel: the body in red, the edge in green, the
                       ///< shadow in blue
};

}  // namespace orlix
