// The square that the keys act on. It is shown while the board has the focus and was last used by key:
// whoever plays by mouse never sees it. A value, owned by the board view.
#pragma once

#include "core/square.h"

namespace orlix {

struct BoardCursor {
    Square square{4, 1};
    bool isByKey = true;     ///< false from a press of the mouse until the keys are used again
    bool wasPlaced = false;  ///< until then it waits before the king of the side that sits at the board

    /// One step as the board is seen; at the edge it stays.
    void move(int columns, int rows, bool isFlipped);
    /// Puts a cursor that nobody has placed yet where the side at the bottom begins.
    void placeFirst(bool isFlipped);
    void place(Square to);
};

}  // namespace orlix
