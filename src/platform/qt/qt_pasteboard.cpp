#include "platform/qt/qt_pasteboard.h"

#include <QClipboard>
#include <QGuiApplication>

namespace orlix {

void QtPasteboard::setText(const QString& text) {
    // Setting a text replaces all formats that were there before; clearing first would only announce an
    // empty clipboard to every listening program.
    QGuiApplication::clipboard()->setText(text);
}

}  // namespace orlix
