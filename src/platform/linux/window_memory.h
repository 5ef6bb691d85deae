// The memory that a window's first picture is painted into.
#pragma once

class QWidget;

namespace orlix {

/// Has the system provide the memory of `window`'s picture in the background, while what is in the window is
/// built. Else the first picture pays for it page by page, which takes as long as painting it. Creates the
/// native window, in the size that the widget has; a window that is shown in another size gains nothing.
void provideWindowMemory(QWidget& window);

}  // namespace orlix
