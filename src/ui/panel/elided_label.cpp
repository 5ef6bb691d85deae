#include "ui/panel/elided_label.h"

#include <QFontMetrics>
#include <QPainter>
#include <QtMath>

#include "ui/controls/text_fit.h"

namespace orlix {

ElidedLabel::ElidedLabel(TextStyle style, ColorRole role, Theme& theme, QWidget* parent)
    : QWidget(parent), style_(style), role_(role), theme_(theme) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void ElidedLabel::setText(const QString& text) {
    if (text == text_) return;
    text_ = text;
    setAccessibleName(text);
    refreshToolTip();
    update();
}

QString ElidedLabel::shownText() const {
    // A name is one line whatever it holds.
    const QString line = text_.simplified();
    return QFontMetrics(Theme::font(style_)).elidedText(line, Qt::ElideMiddle, width());
}

void ElidedLabel::refreshToolTip() {
    setToolTip(shownText() == text_ ? QString() : wrappedToolTip(text_));
}

QSize ElidedLabel::sizeHint() const {
    return {QFontMetrics(Theme::font(style_)).horizontalAdvance(text_) + 1, minimumSizeHint().height()};
}

QSize ElidedLabel::minimumSizeHint() const {
    // As high as a TextLabel, so that texts of both beside each other stand on one line.
    return {0, qCeil(QFontMetricsF(Theme::font(style_)).height())};
}

void ElidedLabel::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    refreshToolTip();
}

void ElidedLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setFont(Theme::font(style_));
    painter.setPen(theme_.color(role_));
    painter.drawText(QRectF(rect()), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, shownText());
}

}  // namespace orlix
