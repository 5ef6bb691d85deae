#include "ui/panel/figure_label.h"

#include <QPainter>
#include <QtMath>

namespace orlix {

namespace {
constexpr int symbolSize = 14;
constexpr int gap = 4;
constexpr int smallestType = 10;
}  // namespace

FigureLabel::FigureLabel(TextStyle style, ColorRole role, Theme& theme, QWidget* parent)
    : QWidget(parent), style_(style), role_(role), theme_(theme) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void FigureLabel::setText(const QString& text) {
    if (text == text_) return;
    const int before = sizeHint().width();
    text_ = text;
    if (sizeHint().width() != before) updateGeometry();
    describe();
    update();
}

void FigureLabel::setCaption(const QString& caption) {
    caption_ = caption;
    setToolTip(plainToolTip(caption));
    describe();
}

void FigureLabel::setSymbol(Icon symbol) {
    symbol_ = symbol;
    updateGeometry();
    update();
}

void FigureLabel::setAlignment(Qt::Alignment alignment) {
    alignment_ = alignment;
    update();
}

void FigureLabel::setShrinkable(bool isShrinkable) {
    isShrinkable_ = isShrinkable;
    setSizePolicy(isShrinkable ? QSizePolicy::Preferred : QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void FigureLabel::describe() {
    const QString words = text_.trimmed();
    setAccessibleName(caption_.isEmpty() ? words : caption_ + QStringLiteral(": ") + words);
}

QRectF FigureLabel::textRoom() const {
    return QRectF(rect()).adjusted(symbol_ ? symbolSize + gap : 0, 0, 0, 0);
}

QFont FigureLabel::fittedFont() const {
    return fittingLineFont(text_, Theme::font(style_), textRoom().width(), smallestType, tabularWidth);
}

QList<ShownText> FigureLabel::shownTexts() const {
    const QFont font = fittedFont();
    return {{text_, QSizeF(tabularWidth(font, text_), QFontMetricsF(font).height()), textRoom().size()}};
}

QSize FigureLabel::sizeHint() const {
    const QFont font = Theme::font(style_);
    const int symbol = symbol_ ? symbolSize + gap : 0;
    return {qCeil(tabularWidth(font, text_)) + symbol, qMax(qCeil(QFontMetricsF(font).height()), symbol)};
}

QSize FigureLabel::minimumSizeHint() const {
    return isShrinkable_ ? QSize(0, sizeHint().height()) : sizeHint();
}

void FigureLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (symbol_) {
        painter.drawPixmap(QPointF(0, (height() - symbolSize) / 2.0),
                           iconPixmap(*symbol_, theme_.color(role_), symbolSize, devicePixelRatioF()));
    }
    painter.setFont(fittedFont());
    painter.setPen(theme_.color(role_));
    drawTabularText(painter, textRoom(), alignment_, text_);
}

}  // namespace orlix
