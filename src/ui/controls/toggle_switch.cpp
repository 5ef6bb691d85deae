#include "ui/controls/toggle_switch.h"

#include <QPainter>

#include "ui/theme.h"

namespace orlix {

ToggleSwitch::ToggleSwitch(Theme& theme, QWidget* parent) : ControlButton(theme, parent) {
    setCheckable(true);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize ToggleSwitch::sizeHint() const {
    return {36, 24};
}

void ToggleSwitch::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF track = QRectF(rect()).adjusted(0, 2, 0, -2);
    const qreal strength = underMouse() ? 0.34 : 0.26;
    painter.setPen(Qt::NoPen);
    painter.setBrush(isChecked() ? theme().color(ColorRole::accent)
                                 : theme().tint(ColorRole::text, ColorRole::card, strength));
    painter.drawRoundedRect(track, track.height() / 2, track.height() / 2);
    const qreal side = track.height() - 4;
    const qreal left = isChecked() ? track.right() - 2 - side : track.left() + 2;
    painter.setBrush(QColor(Qt::white));
    painter.drawEllipse(QRectF(left, track.top() + 2, side, side));
    if (showsFocus()) paintFocusRing(painter, theme(), rect(), height() / 2.0);
}

}  // namespace orlix
