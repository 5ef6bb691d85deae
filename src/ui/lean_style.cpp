#include "ui/lean_style.h"

namespace orlix {

QIcon LeanStyle::standardIcon(StandardPixmap pixmap, const QStyleOption* option,
                              const QWidget* widget) const {
    // The arrow of a menu bar that is too narrow for its titles; ours has one title.
    if (pixmap == SP_ToolBarHorizontalExtensionButton) return {};
    return QProxyStyle::standardIcon(pixmap, option, widget);
}

}  // namespace orlix
