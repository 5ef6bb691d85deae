#include "ui/controls/activity_bar.h"

#include <QPainter>
#include <QPainterPath>
#include <QTimerEvent>

#include "ui/theme.h"

namespace orlix {

namespace {
constexpr int stepMs = 40;
constexpr int stepsOfAWay = 45;      // 1.8 seconds from one end to the other
constexpr qreal partOfTheBar = 0.3;  // that glides
}  // namespace

ActivityBar::ActivityBar(Theme& theme, QWidget* parent) : QWidget(parent), theme_(theme) {
    setFixedHeight(thickness);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void ActivityBar::setAnimated(bool isAnimated) {
    isAnimated_ = isAnimated;
    startOrStop();
    update();
}

// Shown and hidden with the window too: also when it goes to the dock.
void ActivityBar::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    startOrStop();
}

void ActivityBar::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    timer_.stop();
}

void ActivityBar::startOrStop() {
    if (isAnimated_ && isVisible()) {
        if (!timer_.isActive()) timer_.start(stepMs, this);
    } else {
        timer_.stop();
    }
}

void ActivityBar::timerEvent(QTimerEvent* event) {
    if (event->timerId() != timer_.timerId()) {
        QWidget::timerEvent(event);
        return;
    }
    step_ = (step_ + 1) % stepsOfAWay;
    update();
}

void ActivityBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath bar;
    bar.addRoundedRect(rect(), thickness / 2.0, thickness / 2.0);
    painter.fillPath(bar, theme_.tint(ColorRole::text, ColorRole::panel, 0.09));
    painter.setClipPath(bar);
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme_.color(ColorRole::accent));
    if (!isAnimated_) {
        painter.setOpacity(0.5);
        painter.drawRect(rect());
        return;
    }
    // It comes in at one end and leaves at the other.
    const qreal length = width() * partOfTheBar;
    const qreal left = (width() + length) * step_ / stepsOfAWay - length;
    painter.drawRoundedRect(QRectF(left, 0, length, height()), thickness / 2.0, thickness / 2.0);
}

}  // namespace orlix
