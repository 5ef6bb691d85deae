#include "ui/controls/panel_button.h"

#include <QPainter>
#include <QtMath>

#include "ui/theme.h"

namespace orlix {

namespace {

/// What a look measures, in device-independent pixels.
struct Measures {
    int horizontalPadding;
    int verticalPadding;
    int minimumHeight;
    int symbolSize;
    int gap;  ///< between symbol and label
    int smallestType;
};

Measures measures(PanelButton::Look look, PanelButton::Arrangement arrangement) {
    const bool isColumn = arrangement == PanelButton::Arrangement::column;
    switch (look) {
        case PanelButton::Look::primary:
        case PanelButton::Look::alarming:
            return isColumn ? Measures{2, 6, 36, 18, 3, 9} : Measures{12, 8, 40, 18, 8, 10};
        case PanelButton::Look::secondary:
            return isColumn ? Measures{2, 6, 36, 18, 3, 9} : Measures{12, 6, 36, 18, 8, 10};
        case PanelButton::Look::onCard: return {8, 6, 34, 16, 6, 9};
        case PanelButton::Look::destructive: return {2, 6, 36, 18, 3, 9};
        case PanelButton::Look::tab: return {2, 6, 58, 20, 3, 9};
        case PanelButton::Look::segment: return {5, 5, 30, 16, 5, 10};
        case PanelButton::Look::chip: return {11, 4, 28, 14, 4, 10};
        case PanelButton::Look::option: return {12, 4, 32, 14, 8, 10};
    }
    return {};
}

QFont typeface(PanelButton::Look look, PanelButton::Arrangement arrangement, bool isStrong) {
    const bool isSmall = look == PanelButton::Look::tab || arrangement == PanelButton::Arrangement::column;
    QFont font = Theme::font(isSmall ? TextStyle::caption : TextStyle::body);
    if (look == PanelButton::Look::segment || look == PanelButton::Look::chip) font.setPixelSize(12);
    if (isStrong) font.setWeight(QFont::DemiBold);
    return font;
}

// A chosen tab is told by its tint: in a heavier face the long titles would have to be too small.
bool isStrong(PanelButton::Look look, PanelButton::Arrangement arrangement, bool isChecked) {
    using Look = PanelButton::Look;
    // In a column the colour alone tells it, for the same reason.
    const bool isLoud = look == Look::primary || look == Look::alarming;
    return (isLoud && arrangement == PanelButton::Arrangement::row) ||
           (isChecked && (look == Look::segment || look == Look::chip));
}

// Measured in the heavier face, so that choosing a button does not move its neighbours.
bool isMeasuredStrong(PanelButton::Look look, PanelButton::Arrangement arrangement) {
    return isStrong(look, arrangement, true);
}

constexpr qreal hoverStrength = 0.06;
constexpr qreal restStrength = 0.05;

}  // namespace

PanelButton::Colors PanelButton::colors(Look look, bool isChecked, bool isHovered, const Theme& theme) {
    const bool isDark = theme.scheme() == Theme::Scheme::dark;
    const QColor text = theme.color(ColorRole::text);
    const QColor secondary = theme.color(ColorRole::secondary);
    const qreal raised = (isDark ? 0.08 : restStrength) + (isHovered ? hoverStrength : 0);
    const QColor onPanel = theme.tint(ColorRole::text, ColorRole::panel, raised);
    switch (look) {
        case Look::primary: {
            const QColor accent = theme.color(ColorRole::accent);
            return {isHovered ? (isDark ? accent.lighter(106) : accent.darker(108)) : accent,
                    theme.color(ColorRole::accentText)};
        }
        case Look::alarming: {
            const QColor bad = theme.color(ColorRole::bad);
            return {isHovered ? (isDark ? bad.lighter(106) : bad.darker(108)) : bad,
                    theme.color(ColorRole::accentText)};
        }
        case Look::secondary: return {onPanel, text};
        case Look::onCard:
            return {isDark ? theme.tint(ColorRole::text, ColorRole::card, isHovered ? 0.14 : 0.07)
                           : (isHovered ? onPanel : theme.color(ColorRole::panel)),
                    text};
        case Look::destructive:
            // On the raised ground the dark scheme's red alone is a little too weak.
            return {theme.tint(isHovered ? ColorRole::bad : ColorRole::text, ColorRole::panel,
                               isDark ? 0.06 : restStrength - 0.01),
                    isDark ? theme.tint(ColorRole::text, ColorRole::bad, 0.10) : theme.color(ColorRole::bad)};
        case Look::tab:
            if (isChecked) {
                // The accent alone does not stand out enough from its own tint: it is moved toward the text.
                const QColor ground = theme.tint(ColorRole::accent, ColorRole::panel, 0.14);
                return {ground, theme.tint(ColorRole::text, ColorRole::accent, isDark ? 0.10 : 0.20)};
            }
            return {isHovered ? theme.tint(ColorRole::text, ColorRole::panel, hoverStrength) : QColor(),
                    secondary};
        case Look::segment:
            if (isChecked) {
                return {isDark ? theme.tint(ColorRole::text, ColorRole::card, 0.18)
                               : theme.color(ColorRole::panel),
                        text};
            }
            return {QColor(), isHovered ? text : secondary};
        case Look::chip:
            if (isChecked) return {theme.color(ColorRole::accent), theme.color(ColorRole::accentText)};
            return {isDark ? theme.tint(ColorRole::text, ColorRole::card, isHovered ? 0.10 : 0.04)
                           : (isHovered ? theme.tint(ColorRole::text, ColorRole::panel, hoverStrength)
                                        : theme.color(ColorRole::panel)),
                    text};
        case Look::option:
            return {isHovered ? theme.tint(ColorRole::accent, ColorRole::panel, 0.16) : QColor(), text};
    }
    return {};
}

PanelButton::PanelButton(Look look, Arrangement arrangement, Theme& theme, QWidget* parent)
    : ControlButton(theme, parent), look_(look), arrangement_(arrangement) {
    QSizePolicy policy(look == Look::chip ? QSizePolicy::Fixed : QSizePolicy::Expanding, QSizePolicy::Fixed);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

void PanelButton::setLabel(const QString& label) {
    if (label == label_) return;
    label_ = label;
    setAccessibleName(label);
    updateGeometry();
    update();
}

void PanelButton::setSymbol(Icon symbol) {
    if (symbol_ == symbol) return;
    symbol_ = symbol;
    updateGeometry();
    update();
}

void PanelButton::setSharedHeight(int height) {
    if (height == sharedHeight_) return;
    sharedHeight_ = height;
    update();
}

int PanelButton::columnHeight(int width) const {
    const Measures m = measures(look_, arrangement_);
    const qreal room = width - 2.0 * m.horizontalPadding;
    const QFont font =
        fittingFont(label_, typeface(look_, arrangement_, false), QSizeF(room, 100000), m.smallestType);
    return m.symbolSize + m.gap + qCeil(wrappedSize(label_, font, room).height());
}

int PanelButton::widthFor(const QString& label) const {
    return qCeil(naturalSize(label, 10000).width()) + 2 * measures(look_, arrangement_).horizontalPadding;
}

int PanelButton::leastWidth() const {
    return qCeil(naturalSize(label_, 1).width()) + 2 * measures(look_, arrangement_).horizontalPadding;
}

void PanelButton::setElided(bool isElided) {
    isElided_ = isElided;
    update();
}

qreal PanelButton::radius() const {
    return look_ == Look::chip ? height() / 2.0 : metrics::controlRadius;
}

QRectF PanelButton::content() const {
    const Measures m = measures(look_, arrangement_);
    return QRectF(rect()).adjusted(m.horizontalPadding, m.verticalPadding, -m.horizontalPadding,
                                   -m.verticalPadding);
}

QRectF PanelButton::labelRoom() const {
    const Measures m = measures(look_, arrangement_);
    QRectF room = content();
    if (!symbol_) return room;
    if (arrangement_ == Arrangement::row) {
        room.setLeft(room.left() + m.symbolSize + m.gap);
    } else {
        room.setTop(room.top() + m.symbolSize + m.gap);
    }
    return room;
}

QFont PanelButton::labelFont() const {
    const QFont full = typeface(look_, arrangement_, isStrong(look_, arrangement_, isChecked()));
    if (isElided_) return full;
    return fittingFont(label_, full, labelRoom().size(), measures(look_, arrangement_).smallestType);
}

QList<ShownText> PanelButton::shownTexts() const {
    if (isElided_) return {};
    const QSizeF room = labelRoom().size();
    return {{label_, wrappedSize(label_, labelFont(), room.width()), room}};
}

QSizeF PanelButton::naturalSize(const QString& label, qreal width) const {
    const Measures m = measures(look_, arrangement_);
    const QFont font = typeface(look_, arrangement_, isMeasuredStrong(look_, arrangement_));
    QSizeF size = wrappedSize(label, font, width);
    if (symbol_ && arrangement_ == Arrangement::row) {
        size.rwidth() += m.symbolSize + m.gap;
        size.setHeight(qMax<qreal>(size.height(), m.symbolSize));
    } else if (symbol_) {
        size.setWidth(qMax<qreal>(size.width(), m.symbolSize));
        size.rheight() += m.symbolSize + m.gap;
    }
    return size;
}

QSize PanelButton::sizeHint() const {
    const Measures m = measures(look_, arrangement_);
    const QSizeF natural = naturalSize(label_, 10000);
    return {qCeil(natural.width()) + 2 * m.horizontalPadding,
            qMax(m.minimumHeight, qCeil(natural.height()) + 2 * m.verticalPadding)};
}

QSize PanelButton::minimumSizeHint() const {
    return {0, measures(look_, arrangement_).minimumHeight};
}

int PanelButton::heightForWidth(int width) const {
    const Measures m = measures(look_, arrangement_);
    if (isElided_) return sizeHint().height();
    qreal room = width - 2.0 * m.horizontalPadding;
    qreal extra = 0;
    if (symbol_ && arrangement_ == Arrangement::row) room -= m.symbolSize + m.gap;
    if (symbol_ && arrangement_ == Arrangement::column) extra = m.symbolSize + m.gap;
    // The type shrinks only for a single word that is too wide; more words take more lines.
    const QFont font =
        fittingFont(label_, typeface(look_, arrangement_, isMeasuredStrong(look_, arrangement_)),
                    QSizeF(room, 100000), m.smallestType);
    const qreal label = wrappedSize(label_, font, room).height();
    return qMax(m.minimumHeight, qCeil(label + extra) + 2 * m.verticalPadding);
}

void PanelButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool hovered = underMouse() && isEnabled();
    const Colors tones = colors(look_, isChecked(), hovered || showsFocus(), theme());
    const Measures m = measures(look_, arrangement_);
    if (!isEnabled()) painter.setOpacity(0.45);

    const QRectF frame = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    if (tones.ground.isValid()) {
        const bool isOutlined =
            (look_ == Look::chip && !isChecked()) || look_ == Look::segment || look_ == Look::onCard;
        painter.setPen(isOutlined ? QPen(theme().color(ColorRole::hairline)) : QPen(Qt::NoPen));
        painter.setBrush(isDown() ? tones.ground.darker(108) : tones.ground);
        painter.drawRoundedRect(isOutlined ? frame : QRectF(rect()), radius(), radius());
    }

    const QFont font = labelFont();
    const QRectF room = labelRoom();
    QString label = label_;
    QSizeF needed = wrappedSize(label, font, room.width());
    if (isElided_) {
        label = QFontMetricsF(font).elidedText(label, Qt::ElideMiddle, room.width());
        needed = wrappedSize(label, font, room.width() + 1);
    }

    QRectF labelRect = room;
    if (symbol_) {
        QPointF at;
        if (arrangement_ == Arrangement::row && look_ == Look::option) {
            at = QPointF(m.horizontalPadding, (height() - m.symbolSize) / 2.0);
        } else if (arrangement_ == Arrangement::row) {
            // Symbol and label are centred together.
            const qreal whole = m.symbolSize + m.gap + qMin(needed.width(), room.width());
            const qreal left = content().center().x() - whole / 2;
            at = QPointF(left, (height() - m.symbolSize) / 2.0);
            labelRect.setLeft(left + m.symbolSize + m.gap);
            labelRect.setWidth(qMin(needed.width(), room.width()) + 1);
        } else {
            const qreal whole = qMax<qreal>(sharedHeight_, m.symbolSize + m.gap + needed.height());
            // Tabs share one line of symbols, however many lines a label takes.
            const qreal top = look_ == Look::tab
                                  ? content().top()
                                  : content().center().y() - qMin(whole, content().height()) / 2;
            at = QPointF((width() - m.symbolSize) / 2.0, top);
            labelRect.setTop(top + m.symbolSize + m.gap);
        }
        if (look_ != Look::option || isChecked()) {
            painter.drawPixmap(at, iconPixmap(*symbol_, tones.ink, m.symbolSize, devicePixelRatioF()));
        }
    }

    painter.setFont(font);
    painter.setPen(tones.ink);
    int flags = isElided_ ? Qt::TextSingleLine : Qt::TextWordWrap;
    flags |= look_ == Look::option ? Qt::AlignLeft : Qt::AlignHCenter;
    flags |= arrangement_ == Arrangement::column && symbol_ ? Qt::AlignTop : Qt::AlignVCenter;
    painter.drawText(labelRect, flags, label);

    painter.setOpacity(1);
    if (showsFocus()) paintFocusRing(painter, theme(), rect(), radius());
}

}  // namespace orlix
