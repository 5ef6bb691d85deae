#include "ui/player_banner_view.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QEvent>
#include <QFontMetricsF>
#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>
#include <QStringList>
#include <QtMath>
#include <algorithm>
#include <utility>

#include "ui/controls/text_fit.h"
#include "ui/icons.h"
#include "ui/piece_glyph.h"
#include "ui/piece_view.h"
#include "ui/theme.h"

namespace orlix {

namespace {

constexpr int bannerHeight = 56;
constexpr int edgeWidth = 4;
constexpr int symbolSize = 22;
constexpr int symbolLeft = 16;
constexpr int textLeft = 50;
constexpr int clockHeight = 34;
constexpr int clockMargin = 14;
constexpr int clockSymbolSize = 14;
constexpr int clockPadding = 12;
constexpr int clockGap = 8;
constexpr int discSize = 9;
constexpr qreal tagPadding = 4;
constexpr int tagHeight = 14;
constexpr int nameHeight = 20;

// A captured piece's step along its row, and the room between two types, as shares of the font size.
constexpr qreal capturedStep = 0.72;
constexpr qreal capturedGroupGap = 0.45;

constexpr int clockFontSize = 18;
constexpr int nameFontSize = 14;
constexpr int capturedFontSize = 12;
constexpr int advantageFontSize = 10;
constexpr int tagFontSize = 9;

QFont bannerFont(int pixelSize, QFont::Weight weight) {
    QFont font = Theme::font(TextStyle::body);
    font.setPixelSize(pixelSize);
    font.setWeight(weight);
    return font;
}

/// True when the two differ in nothing but digits, and so take the same room.
bool haveEqualShape(const QString& left, const QString& right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](QChar a, QChar b) { return a == b || (a.isDigit() && b.isDigit()); });
}

struct Fonts {
    QFont clock = bannerFont(clockFontSize, QFont::Bold);
    QFont name = bannerFont(nameFontSize, QFont::DemiBold);
    QFont advantage = bannerFont(advantageFontSize, QFont::DemiBold);
    QFont tag = bannerFont(tagFontSize, QFont::DemiBold);
};

class BannerAccessible : public QAccessibleWidget {
  public:
    explicit BannerAccessible(PlayerBannerView& view) : QAccessibleWidget(&view), view_(view) {}

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? view_.spokenText() : QAccessibleWidget::text(kind);
    }

  private:
    PlayerBannerView& view_;
};

QAccessibleInterface* makeAccessible(const QString& className, QObject* object) {
    if (className != QLatin1String(PlayerBannerView::staticMetaObject.className())) return nullptr;
    auto* view = qobject_cast<PlayerBannerView*>(object);
    return view ? new BannerAccessible(*view) : nullptr;
}

}  // namespace

class PlayerBannerView::Impl {
  public:
    Impl(PlayerBannerView& owner, Theme& ownersTheme) : view(owner), theme(ownersTheme) {}

    QRect clockRect() const;
    /// The digits' part of it, well clear of frame and symbol.
    QRect digitsRect() const {
        return clockRect().adjusted(clockPadding + clockSymbolSize + clockGap / 2, 3, -metrics::controlRadius,
                                    -3);
    }
    QRect symbolRect() const {
        return {symbolLeft, (view.height() - symbolSize) / 2, symbolSize, symbolSize};
    }
    /// The symbol with the disc at its corner.
    QRect symbolArea() const { return symbolRect().adjusted(-3, -3, 6, 6); }
    QRect edgeRect() const { return {0, 0, 2 * metrics::cardRadius, view.height()}; }
    /// Between the symbol and the clock.
    QRect textColumn() const;
    /// Above the captured pieces; in the middle where there is nothing to stand below it.
    QRect nameRow() const;
    QRect capturedRow() const;
    qreal tagWidth() const;
    QString shownName() const;
    void measureClock() { clockTextWidth = qCeil(tabularWidth(fonts.clock, values.timeString)); }
    void updateToolTip();
    void updateDescription();
    /// "Player, 5:00, +3".
    QString description(const QString& clock) const;

    void paintCard(QPainter& painter, const QRegion& region) const;
    void paintSymbol(QPainter& painter) const;
    void paintName(QPainter& painter) const;
    void paintCaptured(QPainter& painter) const;
    void paintClock(QPainter& painter, const QRegion& region) const;

    PlayerBannerView& view;
    Theme& theme;
    Values values;
    Fonts fonts;
    int clockTextWidth = 0;
};

// Its width depends on the number of digits alone, so that a running clock does not shift its frame.
QRect PlayerBannerView::Impl::clockRect() const {
    const int width = 2 * clockPadding + clockSymbolSize + clockGap + clockTextWidth;
    return {view.width() - clockMargin - width, (view.height() - clockHeight) / 2, width, clockHeight};
}

QRect PlayerBannerView::Impl::textColumn() const {
    const int right = clockRect().left() - metrics::space3;
    return {textLeft, 0, qMax(0, right - textLeft), view.height()};
}

QRect PlayerBannerView::Impl::nameRow() const {
    QRect row = textColumn();
    const bool isAlone = values.capturedPieces.empty() && values.materialAdvantage < 1;
    row.setTop(view.height() / 2 - (isAlone ? nameHeight / 2 : nameHeight));
    row.setHeight(nameHeight);
    return row;
}

QRect PlayerBannerView::Impl::capturedRow() const {
    QRect row = textColumn();
    row.setTop(view.height() / 2 + 2);
    row.setHeight(18);
    return row;
}

qreal PlayerBannerView::Impl::tagWidth() const {
    if (!values.isEngine) return 0;
    return QFontMetricsF(fonts.tag).horizontalAdvance(QStringLiteral("UCI")) + 2 * tagPadding;
}

QString PlayerBannerView::Impl::shownName() const {
    const qreal tag = values.isEngine ? tagWidth() + metrics::space2 : 0;
    return QFontMetricsF(fonts.name).elidedText(values.name, Qt::ElideMiddle, nameRow().width() - tag);
}

void PlayerBannerView::Impl::updateToolTip() {
    view.setToolTip(shownName() == values.name ? QString() : plainToolTip(values.name));
}

void PlayerBannerView::Impl::updateDescription() {
    // Every new name is announced: the clock, which runs, is in the one read on demand only.
    const QString name = description(QString());
    if (name != view.accessibleName()) view.setAccessibleName(name);
}

QString PlayerBannerView::Impl::description(const QString& clock) const {
    QStringList parts{values.name};
    if (!clock.isEmpty()) parts += clock;
    if (values.materialAdvantage >= 1) parts += QStringLiteral("+%1").arg(values.materialAdvantage);
    return parts.join(QLatin1String(", "));
}

void PlayerBannerView::Impl::paintCard(QPainter& painter, const QRegion& region) const {
    const QColor ground = theme.color(ColorRole::panel);
    const QColor around = theme.color(ColorRole::window);
    // A tick of the clock is far from the card's outline, and a turn changes its left end alone.
    const QRect inside = view.rect().adjusted(metrics::cardRadius, 1, -metrics::cardRadius, -1);
    const bool isWhole = !(region - inside - edgeRect()).isEmpty();
    // Beyond its edges: at fractional pixel ratios they run through the middle of device pixels.
    painter.fillRect(view.rect().adjusted(-1, -1, 1, 1), isWhole ? around : ground);
    if (!isWhole && !region.intersects(edgeRect())) return;
    painter.save();
    QRectF card = view.rect();
    if (!isWhole) {
        painter.setClipRect(edgeRect(), Qt::IntersectClip);
        painter.fillRect(edgeRect().adjusted(-1, -1, 0, 1), around);
        card.setWidth(2 * edgeRect().width());  // its right end is clipped away
    }
    painter.setPen(theme.hairlineBetween(ground, around));
    painter.setBrush(ground);
    painter.drawRoundedRect(card.adjusted(0.5, 0.5, -0.5, -0.5), metrics::cardRadius, metrics::cardRadius);
    if (values.isActiveTurn) {
        painter.setClipRect(QRect(0, 0, edgeWidth, view.height()), Qt::IntersectClip);
        QPainterPath outline;
        outline.addRoundedRect(card, metrics::cardRadius, metrics::cardRadius);
        painter.fillPath(outline, theme.color(ColorRole::accent));
    }
    painter.restore();
}

void PlayerBannerView::Impl::paintSymbol(QPainter& painter) const {
    // An engine's symbol lights up while it thinks, a person's while it is their turn.
    const bool isBusy = values.isEngine ? values.isThinking : values.isActiveTurn;
    const QColor tint = theme.color(isBusy ? ColorRole::accent : ColorRole::secondary);
    const QRect place = symbolRect();
    const qreal ratio = painter.deviceTransform().m11();
    painter.drawPixmap(place.topLeft(),
                       iconPixmap(values.isEngine ? Icon::engine : Icon::person, tint, symbolSize, ratio));
    // The small disc at its foot is the colour of the player's pieces, cut out of the card by a ring.
    QRectF disc(0, 0, discSize, discSize);
    disc.moveCenter(QPointF(place.right() + 1, place.bottom() + 0.5));
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme.color(ColorRole::panel));
    painter.drawEllipse(disc.adjusted(-2, -2, 2, 2));
    painter.setPen(QPen(theme.color(ColorRole::secondary), 1));
    painter.setBrush(PieceView::bodyColor(values.color));
    painter.drawEllipse(disc.adjusted(0.5, 0.5, -0.5, -0.5));
}

void PlayerBannerView::Impl::paintName(QPainter& painter) const {
    const QRect row = nameRow();
    const QString name = shownName();
    painter.setFont(fonts.name);
    painter.setPen(theme.color(ColorRole::text));
    painter.drawText(row, Qt::AlignLeft | Qt::AlignVCenter, name);
    if (!values.isEngine) return;
    const qreal left = row.left() + QFontMetricsF(fonts.name).horizontalAdvance(name) + metrics::space2;
    const QRectF tag(left, row.center().y() + 1 - tagHeight / 2.0, tagWidth(), tagHeight);
    painter.setPen(Qt::NoPen);
    const QColor ground = theme.tint(ColorRole::text, ColorRole::panel, 0.07);
    painter.setBrush(ground);
    painter.drawRoundedRect(tag, 3, 3);
    painter.setFont(fonts.tag);
    painter.setPen(theme.inkOn(ColorRole::secondary, ground));
    painter.drawText(tag, Qt::AlignCenter, QStringLiteral("UCI"));
}

void PlayerBannerView::Impl::paintCaptured(QPainter& painter) const {
    const QRect row = capturedRow();
    const qreal size = capturedFontSize;
    const QRectF tallest = pieceGlyph(solidPieceSymbol(PieceType::king)).boundingRect();
    const qreal baseline = row.center().y() + 0.5 - tallest.center().y() * size;
    qreal x = row.left();
    const Piece* previous = nullptr;
    for (const Piece& piece : values.capturedPieces) {
        if (previous && previous->type != piece.type) x += capturedGroupGap * size;
        const QPainterPath& glyph = pieceGlyph(pieceSymbol(piece.type, piece.color));
        QTransform placed;
        placed.translate(x, baseline);
        placed.scale(size, size);
        placed.translate(-glyph.boundingRect().left(), 0);
        painter.fillPath(placed.map(glyph), theme.color(ColorRole::secondary));
        x += capturedStep * size;
        previous = &piece;
    }
    if (values.materialAdvantage < 1) return;
    if (previous) x += metrics::space2;
    painter.setFont(fonts.advantage);
    painter.setPen(theme.color(ColorRole::secondary));
    const QRectF room(x, row.top(), qMax<qreal>(0, row.right() + 1 - x), row.height());
    drawTabularText(painter, room, Qt::AlignLeft | Qt::AlignVCenter,
                    QStringLiteral("+%1").arg(values.materialAdvantage));
}

void PlayerBannerView::Impl::paintClock(QPainter& painter, const QRegion& region) const {
    const QRect place = clockRect();
    const ColorRole emphasis = values.isLowOnTime ? ColorRole::bad : ColorRole::accent;
    const bool isEmphasized = values.isLowOnTime || values.isActiveTurn;
    const QColor ground = theme.color(ColorRole::card);
    const ColorRole ink = values.isLowOnTime    ? ColorRole::bad
                          : values.isActiveTurn ? ColorRole::text
                                                : ColorRole::secondary;
    if ((region - digitsRect()).isEmpty()) {
        painter.fillRect(digitsRect().adjusted(-1, -1, 1, 1), ground);
    } else {
        painter.setPen(isEmphasized ? theme.color(emphasis)
                                    : theme.hairlineBetween(ground, theme.color(ColorRole::panel)));
        painter.setBrush(ground);
        painter.drawRoundedRect(QRectF(place).adjusted(0.5, 0.5, -0.5, -0.5), metrics::controlRadius,
                                metrics::controlRadius);
        const QPoint symbol(place.left() + clockPadding, place.center().y() + 1 - clockSymbolSize / 2);
        painter.drawPixmap(symbol, iconPixmap(Icon::clock, theme.color(ink), clockSymbolSize,
                                              painter.deviceTransform().m11()));
    }
    painter.setFont(fonts.clock);
    painter.setPen(theme.color(ink));
    drawTabularText(painter, QRectF(place).adjusted(0, 0, -clockPadding, 0),
                    Qt::AlignRight | Qt::AlignVCenter, values.timeString);
}

PlayerBannerView::PlayerBannerView(Theme& theme, QWidget* parent)
    : QWidget(parent), impl_(std::make_unique<Impl>(*this, theme)) {
    QAccessible::installFactory(makeAccessible);  // any number of times
    setFixedHeight(bannerHeight);
    setAttribute(Qt::WA_OpaquePaintEvent);
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

PlayerBannerView::~PlayerBannerView() = default;

void PlayerBannerView::setValues(const Values& values) {
    const QRect clockBefore = impl_->clockRect();
    const QRect nameBefore = impl_->nameRow();
    const Values before = std::exchange(impl_->values, values);
    if (!haveEqualShape(before.timeString, values.timeString)) impl_->measureClock();
    const QRect clockAfter = impl_->clockRect();

    const bool isOtherTurn = before.isActiveTurn != values.isActiveTurn;
    const bool isOtherTime = before.timeString != values.timeString;
    const bool isOtherClock =
        clockBefore != clockAfter || before.isLowOnTime != values.isLowOnTime || isOtherTurn;
    const bool isOtherKind = before.isEngine != values.isEngine;
    const bool isOtherSymbol =
        isOtherKind || isOtherTurn || before.isThinking != values.isThinking || before.color != values.color;
    const bool isOtherName = before.name != values.name || isOtherKind;
    const bool isOtherMaterial = before.capturedPieces != values.capturedPieces ||
                                 before.materialAdvantage != values.materialAdvantage;
    if (isOtherTurn) update(impl_->edgeRect());
    if (isOtherClock)
        update(clockBefore.united(clockAfter));
    else if (isOtherTime)
        update(impl_->digitsRect());
    if (isOtherSymbol) update(impl_->symbolArea());
    // A wider clock leaves the name less room, and the first captured piece takes it out of the middle.
    const QRect nameAfter = impl_->nameRow();
    if (isOtherName || nameBefore != nameAfter)
        update(nameBefore.united(nameAfter).adjusted(0, 0, metrics::space3, 0));
    if (isOtherMaterial) update(impl_->capturedRow());
    if (isOtherName || clockBefore != clockAfter) impl_->updateToolTip();
    if (isOtherName || isOtherMaterial) impl_->updateDescription();
}

QString PlayerBannerView::spokenText() const {
    return impl_->description(impl_->values.timeString);
}

QSize PlayerBannerView::sizeHint() const {
    return {712, bannerHeight};
}

void PlayerBannerView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRegion& region = event->region();
    impl_->paintCard(painter, region);
    if (region.intersects(impl_->symbolArea())) impl_->paintSymbol(painter);
    if (region.intersects(impl_->nameRow())) impl_->paintName(painter);
    if (region.intersects(impl_->capturedRow())) impl_->paintCaptured(painter);
    if (region.intersects(impl_->clockRect())) impl_->paintClock(painter, region);
}

bool PlayerBannerView::event(QEvent* event) {
    if (event->type() == QEvent::Resize) impl_->updateToolTip();
    return QWidget::event(event);
}

}  // namespace orlix
