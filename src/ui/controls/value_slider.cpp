#include "ui/controls/value_slider.h"

#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include "ui/controls/control_button.h"
#include "ui/theme.h"

namespace orlix {

namespace {
constexpr qreal knobRadius = 8;
constexpr qreal inset = knobRadius + 2;  // leaves room for the ring of the focus
}  // namespace

ValueSlider::ValueSlider(Theme& theme, QWidget* parent) : QAbstractSlider(parent), theme_(theme) {
    setOrientation(Qt::Horizontal);
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

QSize ValueSlider::sizeHint() const {
    return {160, 24};
}

QPointF ValueSlider::knobCenter(int value) const {
    const qreal share = maximum() > minimum() ? qreal(value - minimum()) / (maximum() - minimum()) : 0;
    return {inset + share * (width() - 2 * inset), height() / 2.0};
}

int ValueSlider::valueAt(qreal x) const {
    const qreal share = qBound(0.0, (x - inset) / (width() - 2 * inset), 1.0);
    const int steps = qRound(share * (maximum() - minimum()) / singleStep());
    return qMin(minimum() + steps * singleStep(), maximum());
}

void ValueSlider::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (!isEnabled()) painter.setOpacity(0.45);
    const QPointF knob = knobCenter(sliderPosition());
    // From edge to edge, in line with the controls above and below.
    const QRectF groove(0, height() / 2.0 - 2, width(), 4);
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme_.tint(ColorRole::text, ColorRole::card, 0.16));
    painter.drawRoundedRect(groove, 2, 2);
    QRectF filled = groove;
    filled.setRight(knob.x());
    painter.setBrush(theme_.color(ColorRole::accent));
    painter.drawRoundedRect(filled, 2, 2);
    painter.setPen(QPen(theme_.tint(ColorRole::text, ColorRole::card, 0.28), 1));
    painter.setBrush(QColor(Qt::white));
    painter.drawEllipse(knob, knobRadius - 0.5, knobRadius - 0.5);
    painter.setOpacity(1);
    if (hasFocus()) paintFocusRing(painter, theme_, rect(), metrics::controlRadius);
}

void ValueSlider::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    setSliderDown(true);
    setSliderPosition(valueAt(event->position().x()));
}

void ValueSlider::mouseMoveEvent(QMouseEvent* event) {
    if (isSliderDown()) setSliderPosition(valueAt(event->position().x()));
}

void ValueSlider::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) setSliderDown(false);
}

void ValueSlider::wheelEvent(QWheelEvent* event) {
    event->ignore();
}

}  // namespace orlix
