#include "ui/panel/figure_row.h"

#include <QPaintEvent>
#include <QPainter>
#include <numeric>

#include "ui/controls/column_widths.h"
#include "ui/theme.h"

namespace orlix {

namespace {

constexpr int captionHeight = 16;
constexpr int valueHeight = 22;
constexpr int gap = 6;
constexpr int smallestType = 9;

QRectF captionRoom(const QRectF& column) {
    return {column.left(), 0, column.width(), captionHeight};
}

QRectF valueRoom(const QRectF& column) {
    return {column.left(), captionHeight, column.width(), valueHeight};
}

QFont captionFont(const QString& caption, const QRectF& room) {
    return fittingFont(caption, Theme::font(TextStyle::caption), room.size(), smallestType);
}

QFont valueFont(const QString& value, const QRectF& room) {
    return fittingFont(value, Theme::font(TextStyle::sectionHead), room.size(), smallestType);
}

}  // namespace

FigureRow::FigureRow(int count, Theme& theme, QWidget* parent) : QWidget(parent), theme_(theme) {
    for (int index = 0; index < count; ++index) {
        captions_.append(QString());
        values_.append(QString());
    }
    share();
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void FigureRow::setCaptions(const QStringList& captions) {
    Q_ASSERT(captions.size() == captions_.size());
    if (captions == captions_) return;
    captions_ = captions;
    share();
    describe();
    update();
}

void FigureRow::setValue(int index, const QString& value) {
    if (value == values_[index]) return;
    values_[index] = value;
    describe();
    update(valueRoom(column(index)).toAlignedRect());
}

void FigureRow::describe() {
    QStringList parts;
    for (qsizetype index = 0; index < captions_.size(); ++index)
        parts.append(captions_[index] + u' ' + values_[index]);
    setAccessibleName(parts.join(QStringLiteral(", ")));
}

void FigureRow::share() {
    QList<qreal> needs;
    for (const QString& caption : captions_)
        needs.append(wrappedSize(caption, Theme::font(TextStyle::caption), 10000).width() + 1);
    widths_ = columnWidths(needs, width() - gap * static_cast<qreal>(captions_.size() - 1));
}

QRectF FigureRow::column(int index) const {
    const qreal left = std::accumulate(widths_.begin(), widths_.begin() + index, 0.0) + gap * index;
    return {left, 0, widths_[index], captionHeight + valueHeight};
}

QList<ShownText> FigureRow::shownTexts() const {
    QList<ShownText> texts;
    for (int index = 0; index < captions_.size(); ++index) {
        const QRectF caption = captionRoom(column(index));
        const QRectF value = valueRoom(column(index));
        texts.append({captions_[index],
                      wrappedSize(captions_[index], captionFont(captions_[index], caption), 10000),
                      caption.size()});
        texts.append({values_[index],
                      QSizeF(tabularWidth(valueFont(values_[index], value), values_[index]), 1),
                      value.size()});
    }
    return texts;
}

QSize FigureRow::sizeHint() const {
    return {300, captionHeight + valueHeight};
}

QSize FigureRow::minimumSizeHint() const {
    return {0, sizeHint().height()};
}

void FigureRow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    share();
}

void FigureRow::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    for (int index = 0; index < captions_.size(); ++index) {
        const QRectF cell = column(index);
        if (!QRectF(event->rect()).intersects(cell)) continue;
        const QRectF caption = captionRoom(cell);
        painter.setFont(captionFont(captions_[index], caption));
        painter.setPen(theme_.color(ColorRole::secondary));
        painter.drawText(caption, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, captions_[index]);
        const QRectF value = valueRoom(cell);
        painter.setFont(valueFont(values_[index], value));
        painter.setPen(theme_.color(ColorRole::text));
        drawTabularText(painter, value, Qt::AlignLeft | Qt::AlignVCenter, values_[index]);
    }
}

}  // namespace orlix
