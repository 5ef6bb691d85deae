#include "ui/controls/thin_scroll_bar.h"

#include <QMouseEvent>
#include <QPainter>

namespace orlix {

namespace {
constexpr int breadth = 10;
constexpr qreal shortestHandle = 28;
}  // namespace

ThinScrollBar::ThinScrollBar(ColorRole ground, Theme& theme, QWidget* parent)
    : QScrollBar(Qt::Vertical, parent), ground_(ground), theme_(theme) {
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

QSize ThinScrollBar::sizeHint() const {
    return {breadth, 40};
}

QRectF ThinScrollBar::handle() const {
    const qreal whole = maximum() - minimum() + pageStep();
    if (whole <= 0 || maximum() <= minimum()) return {};
    const qreal length = qMax(shortestHandle, height() * pageStep() / whole);
    const qreal way = height() - length;
    return {2, way * (sliderPosition() - minimum()) / (maximum() - minimum()), width() - 4.0, length};
}

void ThinScrollBar::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.fillRect(event->rect(), theme_.color(ground_));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const qreal strength = isSliderDown() ? 0.45 : (underMouse() ? 0.35 : 0.22);
    // The console is dark in both schemes.
    const ColorRole ink = ground_ == ColorRole::console ? ColorRole::consoleText : ColorRole::text;
    painter.setBrush(theme_.tint(ink, ground_, strength));
    if (const QRectF shown = handle(); !shown.isEmpty()) painter.drawRoundedRect(shown, 3, 3);
}

void ThinScrollBar::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    const QRectF held = handle();
    const qreal y = event->position().y();
    if (held.contains(held.center().x(), y)) {
        grip_ = y - held.top();
        setSliderDown(true);
    } else {
        triggerAction(y < held.top() ? SliderPageStepSub : SliderPageStepAdd);
    }
    update();
}

void ThinScrollBar::mouseMoveEvent(QMouseEvent* event) {
    if (!isSliderDown()) return;
    const qreal way = height() - handle().height();
    if (way <= 0) return;
    const qreal share = qBound(0.0, (event->position().y() - grip_) / way, 1.0);
    setSliderPosition(minimum() + qRound(share * (maximum() - minimum())));
}

void ThinScrollBar::mouseReleaseEvent(QMouseEvent*) {
    setSliderDown(false);
    update();
}

}  // namespace orlix
