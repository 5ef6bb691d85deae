#include "ui/controls/text_label.h"

#include <QPainter>
#include <QtMath>

namespace orlix {

namespace {
constexpr int smallestType = 10;
}

TextLabel::TextLabel(TextStyle style, ColorRole role, Theme& theme, QWidget* parent)
    : QWidget(parent), style_(style), role_(role), theme_(theme) {
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void TextLabel::setText(const QString& text) {
    if (text == text_) return;
    text_ = text;
    setAccessibleName(text);
    updateGeometry();
    update();
}

void TextLabel::setRole(ColorRole role) {
    if (role == role_) return;
    role_ = role;
    update();
}

void TextLabel::setAlignment(Qt::Alignment alignment) {
    alignment_ = alignment;
    update();
}

void TextLabel::setSingleLine(bool isSingleLine) {
    isSingleLine_ = isSingleLine;
    QSizePolicy policy(isSingleLine ? QSizePolicy::Minimum : QSizePolicy::Preferred, QSizePolicy::Minimum);
    policy.setHeightForWidth(!isSingleLine);
    setSizePolicy(policy);
}

QFont TextLabel::fittedFont() const {
    return fittingFont(text_, Theme::font(style_), QSizeF(width(), 100000), smallestType);
}

QList<ShownText> TextLabel::shownTexts() const {
    return {{text_, wrappedSize(text_, fittedFont(), width()), QSizeF(size())}};
}

QSize TextLabel::sizeHint() const {
    const QSizeF natural = wrappedSize(text_, Theme::font(style_), 10000);
    return {qCeil(natural.width()) + 1, qCeil(natural.height())};
}

QSize TextLabel::minimumSizeHint() const {
    if (isSingleLine_) return sizeHint();
    return {0, qCeil(QFontMetricsF(Theme::font(style_)).height())};
}

int TextLabel::heightForWidth(int width) const {
    const QFont font = fittingFont(text_, Theme::font(style_), QSizeF(width, 100000), smallestType);
    return qCeil(wrappedSize(text_, font, width).height());
}

void TextLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (!isEnabled()) painter.setOpacity(0.45);
    painter.setFont(fittedFont());
    painter.setPen(theme_.color(role_));
    painter.drawText(QRectF(rect()), static_cast<int>(alignment_) | Qt::TextWordWrap, text_);
}

}  // namespace orlix
