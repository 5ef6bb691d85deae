#include "ui/window_shade.h"

#include <QEvent>
#include <QPaintEvent>
#include <QPainter>

namespace orlix {

namespace {
constexpr QColor shade(0, 0, 0, 72);
}

WindowShade::WindowShade(QWidget* window) : QWidget(window) {
    hide();
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setGeometry(window->rect());
    window->installEventFilter(this);
}

bool WindowShade::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize) setGeometry(parentWidget()->rect());
    return QWidget::eventFilter(watched, event);
}

void WindowShade::paintEvent(QPaintEvent* event) {
    QPainter(this).fillRect(event->rect(), shade);
}

}  // namespace orlix
