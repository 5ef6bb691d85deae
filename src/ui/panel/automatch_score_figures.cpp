#include "ui/panel/automatch_score_figures.h"

#include <QHelpEvent>
#include <QPainter>
#include <QPainterPath>
#include <QToolTip>

#include "l10n/localization_manager.h"
#include "ui/panel/automatch_formats.h"
#include "ui/theme.h"

namespace orlix {

namespace {

constexpr qreal sideShare = 0.4;
constexpr int nameHeight = 18;
constexpr int pointsHeight = 26;
constexpr int captionHeight = 16;
constexpr int columnsHeight = nameHeight + pointsHeight + captionHeight;
constexpr int barTop = columnsHeight + 8;
constexpr int barHeight = 6;
constexpr int sideGap = 4;
constexpr int smallestType = 9;

// The bar's parts: engine 1 stands out, draws are quiet, engine 2 is between them.
constexpr qreal drawsStrength = 0.22;
constexpr qreal engine2Strength = 0.55;
constexpr qreal emptyStrength = 0.12;

QString number(qint64 value) {
    return QString::number(value);
}

}  // namespace

AutomatchScoreFigures::AutomatchScoreFigures(const PanelContext& context, QWidget* parent)
    : QWidget(parent), context_(context) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    retranslate();
    connect(&context_.loc, &LocalizationManager::changed, this, &AutomatchScoreFigures::retranslate);
    connect(&context_.theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void AutomatchScoreFigures::setValues(const Values& values) {
    if (values == values_) return;
    values_ = values;
    describe();
    update();
}

void AutomatchScoreFigures::retranslate() {
    winsCaption_ = context_.loc.text("automatch_wins");
    drawsCaption_ = context_.loc.text("automatch_draws");
    describe();
    update();
}

void AutomatchScoreFigures::describe() {
    const MatchScore& score = values_.score;
    const auto side = [&](const QString& name, qint64 wins, const QString& cap) {
        return QStringLiteral("%1 %2, %3 %4, %5")
            .arg(name, pointsText(wins, score.draws), winsCaption_, number(wins), cap);
    };
    setAccessibleName(QStringList{side(values_.engine1, score.wins, values_.engine1Cap),
                                  drawsCaption_ + u' ' + number(score.draws),
                                  side(values_.engine2, score.losses, values_.engine2Cap)}
                          .join(QStringLiteral("; ")));
}

void AutomatchScoreFigures::appendSide(QList<Line>& lines, bool isFirst) const {
    const qreal breadth = sideShare * width() - sideGap;
    const qreal left = isFirst ? 0 : width() - breadth;
    const Qt::Alignment alignment = (isFirst ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter;
    const qint64 wins = isFirst ? values_.score.wins : values_.score.losses;
    const auto add = [&](const QString& text, const QRectF& room, TextStyle style, ColorRole role) {
        lines.append(
            {text, room, fittingFont(text, Theme::font(style), room.size(), smallestType), role, alignment});
    };
    const QRectF nameRoom(left, 0, breadth, nameHeight);
    lines.append({isFirst ? values_.engine1 : values_.engine2, nameRoom, Theme::font(TextStyle::body),
                  ColorRole::secondary, alignment, true});
    add(pointsText(wins, values_.score.draws), QRectF(left, nameHeight, breadth, pointsHeight),
        TextStyle::title, ColorRole::text);
    // The draws have no caption below: both sides' have half of the line.
    const qreal half = 0.5 * width() - sideGap;
    const QRectF captionRoom(isFirst ? 0 : width() - half, nameHeight + pointsHeight, half, captionHeight);
    add(winsCaption_ + u' ' + number(wins) + QStringLiteral(" · ") +
            (isFirst ? values_.engine1Cap : values_.engine2Cap),
        captionRoom, TextStyle::caption, ColorRole::secondary);
}

QList<AutomatchScoreFigures::Line> AutomatchScoreFigures::lines() const {
    QList<Line> lines;
    appendSide(lines, true);
    const qreal left = sideShare * width();
    const qreal breadth = width() - 2 * left;
    const QRectF captionRoom(left, 0, breadth, nameHeight);
    lines.append({drawsCaption_, captionRoom,
                  fittingFont(drawsCaption_, Theme::font(TextStyle::body), captionRoom.size(), smallestType),
                  ColorRole::secondary, Qt::AlignCenter});
    const QString draws = number(values_.score.draws);
    const QRectF drawsRoom(left, nameHeight, breadth, pointsHeight);
    lines.append({draws, drawsRoom,
                  fittingFont(draws, Theme::font(TextStyle::title), drawsRoom.size(), smallestType),
                  ColorRole::text, Qt::AlignCenter});
    appendSide(lines, false);
    return lines;
}

QList<ShownText> AutomatchScoreFigures::shownTexts() const {
    QList<ShownText> texts;
    for (const Line& line : lines()) {
        if (!line.isUserName)
            texts.append({line.text, wrappedSize(line.text, line.font, 10000), line.room.size()});
    }
    return texts;
}

QSize AutomatchScoreFigures::sizeHint() const {
    return {300, barTop + barHeight};
}

QSize AutomatchScoreFigures::minimumSizeHint() const {
    return {0, sizeHint().height()};
}

bool AutomatchScoreFigures::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) return QWidget::event(event);
    // A name that is too long for its column stands whole in its tooltip.
    const auto* help = static_cast<QHelpEvent*>(event);
    for (const Line& line : lines()) {
        const bool isShortened = QFontMetricsF(line.font).horizontalAdvance(line.text) > line.room.width();
        if (!line.isUserName || !isShortened || !line.room.contains(help->pos())) continue;
        QToolTip::showText(help->globalPos(), plainToolTip(line.text), this);
        return true;
    }
    QToolTip::hideText();
    return true;
}

void AutomatchScoreFigures::paintBar(QPainter& painter) const {
    const Theme& theme = context_.theme;
    const MatchScore& score = values_.score;
    const QRectF bar(0, barTop, width(), barHeight);
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme.tint(ColorRole::text, ColorRole::card, emptyStrength));
    painter.drawRoundedRect(bar, barHeight / 2.0, barHeight / 2.0);
    const qint64 games = score.wins + score.draws + score.losses;
    if (games == 0) return;
    QPainterPath shape;
    shape.addRoundedRect(bar, barHeight / 2.0, barHeight / 2.0);
    painter.setClipPath(shape);
    const std::pair<qint64, QColor> parts[] = {
        {score.wins, theme.color(ColorRole::accent)},
        {score.draws, theme.tint(ColorRole::text, ColorRole::card, drawsStrength)},
        {score.losses, theme.tint(ColorRole::text, ColorRole::card, engine2Strength)}};
    qreal left = 0;
    for (const auto& [count, color] : parts) {
        const qreal breadth = bar.width() * static_cast<qreal>(count) / static_cast<qreal>(games);
        painter.fillRect(QRectF(left, barTop, breadth, barHeight), color);
        left += breadth;
    }
}

void AutomatchScoreFigures::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    for (const Line& line : lines()) {
        painter.setFont(line.font);
        painter.setPen(context_.theme.color(line.role));
        const QString text = line.isUserName ? QFontMetricsF(line.font).elidedText(
                                                   line.text.simplified(), Qt::ElideMiddle, line.room.width())
                                             : line.text;
        drawTabularText(painter, line.room, line.alignment, text);
    }
    paintBar(painter);
}

}  // namespace orlix
