#include "ui/panel/toast.h"

#include <QPainter>
#include <QtMath>

#include "ui/assistive_technology.h"
#include "ui/theme.h"

namespace orlix {

namespace {
constexpr int fadeMs = 160;
constexpr int margin = 24;
constexpr int horizontalPadding = 16;
constexpr int verticalPadding = 9;
constexpr int leastType = 10;
}  // namespace

Toast::Toast(Theme& theme, AssistiveTechnology& listener, QWidget* parent)
    : QWidget(parent), theme_(theme), listener_(listener) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setObjectName(QStringLiteral("toast"));
    makeNotice(*this);
    hide();
    fade_.setDuration(fadeMs);
    fade_.setStartValue(0.0);
    fade_.setEndValue(1.0);
    connect(&fade_, &QVariantAnimation::valueChanged, this, qOverload<>(&QWidget::update));
    connect(&fade_, &QVariantAnimation::finished, this, [this] {
        if (fade_.direction() == QAbstractAnimation::Backward) hide();
    });
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void Toast::showMessage(const QString& message) {
    message_ = message;
    setAccessibleName(message);
    placeAbove(bottom_, available_);
    showNotice(*this, listener_);
    raise();
    update();
    fade_.setDirection(QAbstractAnimation::Forward);
    // A toast that is in full sight only changes its text.
    if (fade_.state() == QAbstractAnimation::Stopped && fade_.currentTime() < fadeMs) fade_.start();
}

void Toast::fadeOut() {
    fade_.setDirection(QAbstractAnimation::Backward);
    if (fade_.state() == QAbstractAnimation::Stopped) fade_.start();
}

void Toast::placeAbove(int bottom, int width) {
    bottom_ = bottom;
    available_ = width;
    const QFont font = Theme::font(TextStyle::body);
    const qreal most = width - 2 * (margin + horizontalPadding);
    const QSizeF text =
        wrappedSize(message_, fittingFont(message_, font, QSizeF(most, 100000), leastType), most);
    const QSize size(qMin(qCeil(text.width()) + 1, qFloor(most)) + 2 * horizontalPadding,
                     qCeil(text.height()) + 2 * verticalPadding);
    setGeometry((width - size.width()) / 2, bottom - metrics::space3 - size.height(), size.width(),
                size.height());
}

QRectF Toast::textRoom() const {
    return QRectF(rect()).adjusted(horizontalPadding, verticalPadding, -horizontalPadding, -verticalPadding);
}

QList<ShownText> Toast::shownTexts() const {
    const QSizeF room = textRoom().size();
    const QFont font = fittingFont(message_, Theme::font(TextStyle::body), room, leastType);
    return {{message_, wrappedSize(message_, font, room.width()), room}};
}

void Toast::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(fade_.currentValue().toReal());
    painter.setPen(Qt::NoPen);
    // Ink and ground change places: it stands out from the panel in both schemes.
    painter.setBrush(theme_.color(ColorRole::text));
    const qreal radius = qMin(height() / 2.0, 18.0);
    painter.drawRoundedRect(rect(), radius, radius);
    const QRectF room = textRoom();
    painter.setFont(fittingFont(message_, Theme::font(TextStyle::body), room.size(), leastType));
    painter.setPen(theme_.color(ColorRole::panel));
    painter.drawText(room, Qt::AlignCenter | Qt::TextWordWrap, message_);
}

}  // namespace orlix
