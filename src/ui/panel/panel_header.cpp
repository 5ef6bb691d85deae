#include "ui/panel/panel_header.h"

#include <QPainter>
#include <QtMath>

#include "automatch/automatch_manager.h"
#include "game/game_manager.h"
#include "l10n/localization_manager.h"
#include "ui/controls/picker_button.h"
#include "ui/controls/text_label.h"

namespace orlix {

namespace {

constexpr int badgePadding = 12;
constexpr int badgeSymbol = 14;
constexpr int badgeGap = 5;
constexpr int badgeEdge = 2;    ///< above and below the text
constexpr int flatHeight = 26;  ///< with one line
constexpr int tallHeight = 40;  ///< with more
constexpr int smallestType = 10;
// Room for the longest word beside a state; with one pixel more the French turn would break over two lines.
constexpr int leastSecondary = 61;

QFont badgeFont() {
    return Theme::font(TextStyle::bodyStrong);
}

}  // namespace

StatusBadge::StatusBadge(Theme& theme, QWidget* parent) : QWidget(parent), theme_(theme) {
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void StatusBadge::setStatus(const GameStatus& status, const QString& text) {
    if (status == status_ && text == text_) return;
    status_ = status;
    text_ = text;
    // The few texts come again and again, two of them with every move.
    int& textWidth = textWidths_[text_];
    if (textWidth == 0) textWidth = qCeil(QFontMetricsF(badgeFont()).horizontalAdvance(text_)) + 1;
    naturalWidth_ = textWidth + symbolRoom() + 2 * badgePadding;
    setAccessibleName(text);
    update();
}

int StatusBadge::symbolRoom() const {
    return status_.symbol ? badgeSymbol + badgeGap : 0;
}

int StatusBadge::widthWithin(int room) const {
    if (naturalWidth_ <= room) return naturalWidth_;
    const int beside = symbolRoom() + 2 * badgePadding;
    const QSizeF forText(room - beside, tallHeight - 2 * badgeEdge);
    const QFont font = fittingFont(text_, badgeFont(), forText, smallestType);
    return qMin(room, qCeil(wrappedSize(text_, font, forText.width()).width()) + 1 + beside);
}

QRectF StatusBadge::textRoom() const {
    return QRectF(rect()).adjusted(badgePadding + symbolRoom(), badgeEdge, -badgePadding, -badgeEdge);
}

QList<ShownText> StatusBadge::shownTexts() const {
    const QSizeF room = textRoom().size();
    return {
        {text_, wrappedSize(text_, fittingFont(text_, badgeFont(), room, smallestType), room.width()), room}};
}

void StatusBadge::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const StatusColors colors = statusColors(status_.tone, theme_);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colors.ground);
    const qreal radius = qMin(height() / 2.0, 15.0);
    painter.drawRoundedRect(rect(), radius, radius);
    if (status_.symbol) {
        painter.drawPixmap(QPointF(badgePadding, (height() - badgeSymbol) / 2.0),
                           iconPixmap(*status_.symbol, colors.ink, badgeSymbol, devicePixelRatioF()));
    }
    const QRectF room = textRoom();
    painter.setFont(fittingFont(text_, badgeFont(), room.size(), smallestType));
    painter.setPen(colors.ink);
    painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWordWrap, text_);
}

PanelHeader::PanelHeader(const PanelContext& context, QWidget* parent)
    : QWidget(parent),
      context_(context),
      badge_(new StatusBadge(context.theme, this)),
      secondary_(new TextLabel(TextStyle::caption, ColorRole::secondary, context.theme, this)),
      language_(new PickerButton(context.theme, this)) {
    QStringList names;
    for (const Language language : allLanguages)
        names.append(flag(language) + QStringLiteral("  ") + displayName(language));
    language_->setItems(names, false);
    language_->setObjectName(QStringLiteral("languagePicker"));
    retranslate();
    connect(language_, &PickerButton::chosen, this, [this](int index) {
        context_.loc.setCurrentLanguage(allLanguages[static_cast<std::size_t>(index)]);
    });
    connect(&context_.game, &GameManager::changed, this, &PanelHeader::takeGame);
    connect(&context_.automatch, &AutomatchManager::changed, this, &PanelHeader::takeGame);
    connect(&context_.loc, &LocalizationManager::changed, this, &PanelHeader::retranslate);
}

void PanelHeader::takeGame() {
    const GameStatus status = gameStatus(context_.game, context_.automatch);
    if (isShown_ && status == badge_->status()) return;
    isShown_ = true;
    badge_->setStatus(status, context_.loc.text(status.key));
    secondary_->setText(status.secondaryKey.isEmpty()
                            ? QString()
                            : context_.loc.text(status.secondaryKey) + status.secondaryCount);
    arrange();
}

void PanelHeader::retranslate() {
    const Language current = context_.loc.currentLanguage();
    for (std::size_t index = 0; index < allLanguages.size(); ++index) {
        if (allLanguages[index] == current) language_->setCurrentIndex(static_cast<int>(index));
    }
    language_->setCaption(context_.loc.text("language"));
    languageWidth_ = language_->currentItemWidth();
    isShown_ = false;
    takeGame();
}

void PanelHeader::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    arrange();
}

void PanelHeader::arrange() {
    const int margin = metrics::space4;
    language_->setGeometry(width() - margin - languageWidth_, (height() - 30) / 2, languageWidth_, 30);

    const int room = language_->x() - margin - metrics::space2;
    if (room <= 0) return;  // it has no size yet: no text is measured for that
    const bool saysMore = !secondary_->text().isEmpty();
    const int badgeRoom = saysMore ? room - leastSecondary - metrics::space2 : room;
    const int badgeWidth = badge_->widthWithin(badgeRoom);
    const bool isOneLine = badgeWidth >= badge_->naturalWidth();
    const int badgeHeight = isOneLine ? flatHeight : tallHeight;
    badge_->setGeometry(margin, (height() - badgeHeight) / 2, badgeWidth, badgeHeight);
    secondary_->setVisible(saysMore);
    const int left = margin + badgeWidth + metrics::space2;
    secondary_->setGeometry(left, 4, language_->x() - metrics::space2 - left, height() - 8);
}

}  // namespace orlix
