// The board as assistive technology sees it: a table of eight by eight cells in the order shown, each named
// after its square, and what happens on it told as it happens. Qt asks for it and owns it; main thread only.
#pragma once

#include "core/square.h"
#include "ui/board_picture.h"

namespace orlix {

class BoardView;

namespace board_accessibility {

/// Makes Qt give every board view its table; any number of calls.
void install();

// None of these does anything while no assistive technology is active.

/// The cursor stands on `square`, and the board has the focus.
void tellFocus(BoardView& view, Square square);
/// The board's announcement is another one.
void tellAnnouncement(BoardView& view);
/// Selection, and what the name of the cursor's square says.
void tellChanges(BoardView& view, const BoardPicture& before, const BoardPicture& after);

}  // namespace board_accessibility
}  // namespace orlix
