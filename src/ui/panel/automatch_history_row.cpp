#include "ui/panel/automatch_history_row.h"

#include <QPainter>

#include "ui/icons.h"
#include "ui/theme.h"

namespace orlix {

namespace {

constexpr int padding = 6;
constexpr qreal mostTitleWidth = 76;
constexpr int titleGap = 10;
constexpr int badgeWidth = 50;
constexpr int badgeHeight = 18;
constexpr int lineHeight = 18;
constexpr int topPadding = 5;
constexpr int buttonSide = 28;
constexpr int buttonInset = 2;  ///< its symbol stands below those of the card's head
constexpr int symbolSize = 18;
constexpr int gap = 6;
constexpr int smallestType = 10;
constexpr qreal selectedStrength = 0.16;
constexpr qreal hoverStrength = 0.06;
constexpr qreal badgeStrength = 0.08;

struct Places {
    QRectF title;
    QRectF names;
    QRectF reason;
    QRectF badge;
};

Places placesIn(const QRect& row, const QString& title) {
    Places places;
    const QRect button = AutomatchHistoryRow::button(row);
    const qreal left = row.left() + padding;
    const qreal right = button.left() - gap;
    const qreal top = row.top() + topPadding;
    const qreal second = top + lineHeight + 1;
    const qreal titleWidth = qMin(mostTitleWidth, tabularWidth(Theme::font(TextStyle::body), title));
    places.title = QRectF(left, top, titleWidth, lineHeight);
    places.names =
        QRectF(left + titleWidth + titleGap, top, right - left - titleWidth - titleGap, lineHeight);
    places.badge = QRectF(right - badgeWidth, second, badgeWidth, badgeHeight);
    places.reason = QRectF(left, second, places.badge.left() - gap - left, lineHeight);
    return places;
}

QFont fitted(const QString& text, TextStyle style, const QRectF& room) {
    return fittingLineFont(text, Theme::font(style), room.width(), smallestType);
}

/// Both names on one line: each gets half of the room, or what the other one leaves of it.
void paintNames(QPainter& painter, const QRectF& room, const AutomatchHistoryModel::Row& row) {
    const QFont plain = Theme::font(TextStyle::body);
    const QFont strong = Theme::font(TextStyle::bodyStrong);
    const QFont& whiteFont = row.whiteWon ? strong : plain;
    const QFont& blackFont = row.blackWon ? strong : plain;
    const QString dash = QStringLiteral(" – ");
    const qreal dashWidth = QFontMetricsF(plain).horizontalAdvance(dash);
    const QString whiteName = row.white.simplified();
    const QString blackName = row.black.simplified();
    const qreal both = room.width() - dashWidth;
    const qreal whiteNeeds = QFontMetricsF(whiteFont).horizontalAdvance(whiteName) + 1;
    const qreal blackNeeds = QFontMetricsF(blackFont).horizontalAdvance(blackName) + 1;
    const qreal whiteWidth = qMin(whiteNeeds, qMax(both / 2, both - blackNeeds));
    qreal left = room.left();
    const auto draw = [&](const QFont& font, const QString& text, qreal width) {
        painter.setFont(font);
        const QString shown = QFontMetricsF(font).elidedText(text, Qt::ElideMiddle, width);
        painter.drawText(QRectF(left, room.top(), width, room.height()),
                         Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, shown);
        left += qMin(width, QFontMetricsF(font).horizontalAdvance(shown));
    };
    draw(whiteFont, whiteName, whiteWidth);
    draw(plain, dash, dashWidth);
    draw(blackFont, blackName, qMin(blackNeeds, both - whiteWidth));
}

}  // namespace

AutomatchHistoryRow::AutomatchHistoryRow(Theme& theme, QObject* parent)
    : QStyledItemDelegate(parent), theme_(theme) {}

QRect AutomatchHistoryRow::button(const QRect& place) {
    return {place.right() + 1 - buttonInset - buttonSide, place.top() + (place.height() - buttonSide) / 2,
            buttonSide, buttonSide};
}

QList<ShownText> AutomatchHistoryRow::shownTexts(const AutomatchHistoryModel::Row& row, const QRect& place) {
    const Places places = placesIn(place, row.title);
    QList<ShownText> texts;
    const auto add = [&](const QString& text, TextStyle style, const QRectF& room) {
        const QFontMetricsF metrics(fitted(text, style, room));
        texts.append({text, QSizeF(metrics.horizontalAdvance(text), metrics.height()), room.size()});
    };
    add(row.title, TextStyle::body, places.title);
    add(row.reason, TextStyle::caption, places.reason);
    add(row.badge, TextStyle::bodyStrong, places.badge);
    return texts;
}

QSize AutomatchHistoryRow::sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const {
    return {200, height};
}

void AutomatchHistoryRow::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                const QModelIndex& index) const {
    const auto* model = static_cast<const AutomatchHistoryModel*>(index.model());
    const AutomatchHistoryModel::Row& row = model->row(index.row());
    const QRect place = option.rect;
    const Places places = placesIn(place, row.title);
    const bool isSelected = option.state & QStyle::State_Selected;
    const bool isHovered = index.row() == hoveredRow_;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    QColor ground = theme_.color(ColorRole::card);
    if (isSelected) {
        ground = theme_.tint(ColorRole::accent, ColorRole::card, selectedStrength);
    } else if (isHovered) {
        ground = theme_.tint(ColorRole::text, ColorRole::card, hoverStrength);
    }
    if (isSelected || isHovered) {
        painter->setPen(Qt::NoPen);
        painter->setBrush(ground);
        painter->drawRoundedRect(QRectF(place).adjusted(0, 1, 0, -1), metrics::controlRadius,
                                 metrics::controlRadius);
    }
    // Between rows: what stands above and below the list has edges of its own.
    if (index.row() > 0) {
        painter->fillRect(QRectF(place.left(), place.top(), place.width(), 1),
                          theme_.color(ColorRole::hairline));
    }

    const QColor secondary = theme_.inkOn(ColorRole::secondary, ground);
    painter->setPen(secondary);
    painter->setFont(fitted(row.title, TextStyle::body, places.title));
    drawTabularText(*painter, places.title, Qt::AlignLeft | Qt::AlignVCenter, row.title);
    painter->setFont(fitted(row.reason, TextStyle::caption, places.reason));
    painter->drawText(places.reason, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, row.reason);
    painter->setPen(theme_.color(ColorRole::text));
    paintNames(*painter, places.names, row);

    QColor badge = theme_.color(ColorRole::text);
    badge.setAlphaF(static_cast<float>(badgeStrength));
    painter->setPen(Qt::NoPen);
    painter->setBrush(badge);
    painter->drawRoundedRect(places.badge, metrics::controlRadius, metrics::controlRadius);
    if (isHovered && isOverButton_)
        painter->drawRoundedRect(button(place), metrics::controlRadius, metrics::controlRadius);
    painter->setPen(theme_.color(ColorRole::text));
    painter->setFont(fitted(row.badge, TextStyle::bodyStrong, places.badge));
    painter->drawText(places.badge, Qt::AlignCenter | Qt::TextSingleLine, row.badge);
    const qreal inset = (buttonSide - symbolSize) / 2.0;
    painter->drawPixmap(
        QPointF(button(place).topLeft()) + QPointF(inset, inset),
        iconPixmap(Icon::replay, secondary, symbolSize, painter->device()->devicePixelRatioF()));
    painter->restore();
}

}  // namespace orlix
