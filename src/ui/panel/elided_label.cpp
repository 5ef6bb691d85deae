#include "ui/panel/elided_label.h"

#include <QFontMetrics>
#include <QPainter>

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
    const QFontMetrics metrics(Theme::font(style_));
    return {metrics.horizontalAdvance(text_) + 1, metrics.height()};
}

QSize ElidedLabel::minimumSizeHint() const {
    return {0, QFontMetrics(Theme::font(style_)).height()};
}

void ElidedLabel::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    refreshToolTip();
}

void ElidedLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setFont(Theme::font(style_));
    painter.setPen(theme_.color(role_));
    painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, shownText());
}

}  // namespace orlix
