#include "ui/promotion_button.h"

#include <QKeyEvent>
#include <QPainter>
#include <QtMath>

#include "ui/theme.h"

namespace orlix {

namespace {

constexpr int pieceSide = 64;
constexpr int textHeight = 20;
constexpr int plainHeight = 32;
constexpr int smallestType = 10;
// A square's colour under the piece: both colours of pieces read on it in either scheme.
constexpr QRgb pieceGround = 0xFFD3B595;

}  // namespace

PromotionButton::PromotionButton(Theme& theme, std::optional<PieceType> type, QWidget* parent)
    : QAbstractButton(parent), theme_(theme), type_(type) {
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setFont(Theme::font(TextStyle::body));
}

void PromotionButton::setPieceColor(PieceColor color) {
    if (color == color_) return;
    color_ = color;
    update();
}

QSize PromotionButton::sizeHint() const {
    const int textWidth = fontMetrics().horizontalAdvance(text());
    if (!type_) return {textWidth + 2 * metrics::space4, plainHeight};
    return {qMax(pieceSide, textWidth) + metrics::space4, pieceSide + textHeight + metrics::space3};
}

QRect PromotionButton::pieceRect() const {
    return {rect().center().x() + 1 - pieceSide / 2, metrics::space2, pieceSide, pieceSide};
}

QRect PromotionButton::textRect() const {
    const QRect inside = rect().adjusted(metrics::space1, 0, -metrics::space1, 0);
    return type_ ? inside.adjusted(0, pieceRect().bottom() + 1, 0, 0) : inside;
}

QFont PromotionButton::labelFont() const {
    return fittingLineFont(text(), font(), textRect().width(), smallestType);
}

QList<ShownText> PromotionButton::shownTexts() const {
    const QFontMetricsF metrics(labelFont());
    return {{text(), QSizeF(metrics.horizontalAdvance(text()), metrics.height()), QSizeF(textRect().size())}};
}

void PromotionButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF frame = QRectF(rect()).adjusted(1, 1, -1, -1);
    const qreal emphasis = isDown() ? 0.16 : underMouse() ? 0.1 : 0.05;
    const QColor ground = theme_.tint(ColorRole::text, ColorRole::panel, emphasis);
    painter.setPen(hasFocus() ? QPen(theme_.color(ColorRole::accent), 2) : QPen(Qt::NoPen));
    painter.setBrush(ground);
    painter.drawRoundedRect(frame, metrics::controlRadius, metrics::controlRadius);

    if (type_) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor::fromRgb(pieceGround));
        painter.drawRoundedRect(pieceRect(), metrics::space1, metrics::space1);
        const int devicePixels = qRound(pieceSide * devicePixelRatioF());
        painter.drawPixmap(pieceRect(), pixmaps_.pixmap(*type_, color_, devicePixels));
    }
    painter.setFont(labelFont());
    painter.setPen(theme_.color(ColorRole::text));
    painter.drawText(textRect(), Qt::AlignCenter, text());
}

void PromotionButton::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        click();
        return;
    }
    // Arrows and Escape belong to the picker: a button would look for neighbours of its own. Space is the
    // pause command's.
    switch (event->key()) {
        case Qt::Key_Space:
        case Qt::Key_Left:
        case Qt::Key_Right:
        case Qt::Key_Up:
        case Qt::Key_Down:
        case Qt::Key_Escape: event->ignore(); return;
        default: QAbstractButton::keyPressEvent(event);
    }
}

}  // namespace orlix
