#include "ui/panel/icon_button.h"

#include <QPainter>

#include "ui/theme.h"

namespace orlix {

namespace {
constexpr int symbolSize = 18;
constexpr qreal openStrength = 0.14;
constexpr qreal hoverStrength = 0.08;
}  // namespace

IconButton::IconButton(Icon icon, Look look, Theme& theme, QWidget* parent)
    : ControlButton(theme, parent), icon_(icon), look_(look) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void IconButton::setCaption(const QString& caption, const QString& object) {
    setToolTip(caption);
    setAccessibleName(object.isEmpty() ? caption : caption + QStringLiteral(": ") + object);
}

void IconButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool isHovered = (underMouse() || showsFocus()) && isEnabled();
    if (!isEnabled()) painter.setOpacity(0.45);
    const ColorRole tone = look_ == Look::destructive ? ColorRole::bad : ColorRole::accent;
    if (isChecked() || isHovered) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(theme().tint(isChecked() || look_ == Look::destructive ? tone : ColorRole::text,
                                      ColorRole::card, isChecked() ? openStrength : hoverStrength));
        painter.drawRoundedRect(rect(), metrics::controlRadius, metrics::controlRadius);
    }
    ColorRole ink = ColorRole::secondary;
    if (isChecked() || look_ == Look::destructive) ink = tone;
    painter.drawPixmap(QPointF((width() - symbolSize) / 2.0, (height() - symbolSize) / 2.0),
                       iconPixmap(icon_, theme().color(ink), symbolSize, devicePixelRatioF()));
    painter.setOpacity(1);
    if (showsFocus()) paintFocusRing(painter, theme(), rect(), metrics::controlRadius);
}

}  // namespace orlix
