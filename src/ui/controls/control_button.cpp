#include "ui/controls/control_button.h"

#include <QKeyEvent>
#include <QPainter>

#include "ui/theme.h"

namespace orlix {

void paintFocusRing(QPainter& painter, const Theme& theme, const QRectF& rect, qreal radius) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    // Two rings: the inner one keeps the outer one visible on a button in the accent colour.
    painter.setPen(QPen(theme.color(ColorRole::accent), 2));
    painter.drawRoundedRect(rect.adjusted(1, 1, -1, -1), radius, radius);
    painter.setPen(QPen(theme.color(ColorRole::panel), 1));
    painter.drawRoundedRect(rect.adjusted(2.5, 2.5, -2.5, -2.5), radius - 1.5, radius - 1.5);
    painter.restore();
}

ControlButton::ControlButton(Theme& theme, QWidget* parent) : QAbstractButton(parent), theme_(theme) {
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void ControlButton::focusInEvent(QFocusEvent* event) {
    // A window that comes back shows its mark again, for it was not taken away.
    if (event->reason() != Qt::ActiveWindowFocusReason) showsFocus_ = true;
    QAbstractButton::focusInEvent(event);
}

void ControlButton::focusOutEvent(QFocusEvent* event) {
    const bool comesBack =
        event->reason() == Qt::ActiveWindowFocusReason || event->reason() == Qt::PopupFocusReason;
    if (!comesBack) showsFocus_ = false;
    QAbstractButton::focusOutEvent(event);
}

void ControlButton::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (!event->isAutoRepeat()) click();
            event->accept();
            return;
        case Qt::Key_Left:
        case Qt::Key_Right:
        case Qt::Key_Up:
        case Qt::Key_Down:
            // Among alternatives the arrows choose; elsewhere they belong to whoever holds the button.
            if (autoExclusive()) {
                QAbstractButton::keyPressEvent(event);
            } else {
                event->ignore();
            }
            return;
        default: event->ignore(); return;
    }
}

void ControlButton::keyReleaseEvent(QKeyEvent* event) {
    event->ignore();
}

void ControlButton::enterEvent(QEnterEvent* event) {
    QAbstractButton::enterEvent(event);
    update();
}

void ControlButton::leaveEvent(QEvent* event) {
    QAbstractButton::leaveEvent(event);
    update();
}

}  // namespace orlix
