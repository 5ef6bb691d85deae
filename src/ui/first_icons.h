// The icons of the window's first picture, drawn on another thread while the main thread reads the list of
// fonts.
#pragma once

#include <QtGlobal>

namespace orlix {

/// Begins to draw them for screens of `devicePixelRatio`, in Qt's thread pool, and returns at once.
void startDrawingFirstIcons(qreal devicePixelRatio);

}  // namespace orlix
