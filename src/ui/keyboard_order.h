// The way of the Tab key through the window: as it is read, whatever order its parts were built in. Main
// thread only.
#pragma once

#include <QList>

class QWidget;

namespace orlix {

/// The controls below `root` that Tab reaches now: part by part, and inside each part row by row from the
/// top, every row from the left.
QList<QWidget*> keyboardOrder(const QWidget& root);

/// Gives the focus to the control after the one that has it, or to the one before, going round at the ends;
/// scrolls to it where it lies out of sight. False when there is none to go to.
bool moveKeyboardFocus(const QWidget& root, bool next);

}  // namespace orlix
