#include "ui/controls/picker_button.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>
#include <QtMath>
#include <cmath>

#include "ui/controls/panel_button.h"
#include "ui/controls/picker_accessible.h"
#include "ui/icons.h"
#include "ui/theme.h"

namespace orlix {

namespace {

constexpr int symbolSize = 14;
constexpr int padding = 10;
constexpr int gap = 6;
constexpr int smallestType = 10;

QFont typeface() {
    return Theme::font(TextStyle::body);
}

/// `area` without its corners, the same at all four of them.
QRegion roundedRegion(const QRect& area, int radius) {
    QRegion region(area.adjusted(0, radius, 0, -radius));
    for (int row = 0; row < radius; ++row) {
        const double above = radius - row - 0.5;
        const int inset = qRound(radius - std::sqrt(radius * radius - above * above));
        const int width = area.width() - 2 * inset;
        region += QRect(area.left() + inset, area.top() + row, width, 1);
        region += QRect(area.left() + inset, area.bottom() - row, width, 1);
    }
    return region;
}

/// The open list: a window of its own that the system closes on a press elsewhere.
class PickerPopup : public QWidget {
  public:
    PickerPopup(Theme& theme, QWidget* parent) : QWidget(parent, Qt::Popup), theme_(theme) {
        setAttribute(Qt::WA_DeleteOnClose);
        setAttribute(Qt::WA_TranslucentBackground);
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QColor edge = theme_.tint(ColorRole::text, ColorRole::panel, 0.22);
        // Where the window is cut to shape, nothing shows through it: its edge is drawn up to the cut.
        if (!mask().isEmpty()) painter.fillRect(rect(), edge);
        painter.setPen(edge);
        painter.setBrush(theme_.color(ColorRole::panel));
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), metrics::controlRadius,
                                metrics::controlRadius);
    }
    void resizeEvent(QResizeEvent* event) override {
        QWidget::resizeEvent(event);
        // Under X11 nothing may blend windows; what is left transparent would be black there.
        if (QGuiApplication::platformName() != QLatin1String("xcb")) return;
        setMask(roundedRegion(rect(), metrics::controlRadius));
    }
    void keyPressEvent(QKeyEvent* event) override {
        switch (event->key()) {
            case Qt::Key_Down: focusNextChild(); return;
            case Qt::Key_Up: focusPreviousChild(); return;
            case Qt::Key_Escape: close(); return;
            default: QWidget::keyPressEvent(event); return;
        }
    }

  private:
    Theme& theme_;
};

}  // namespace

PickerButton::PickerButton(Theme& theme, QWidget* parent) : ControlButton(theme, parent) {
    picker_accessibility::install();
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(this, &QAbstractButton::clicked, this, &PickerButton::openPopup);
}

void PickerButton::setItems(const QStringList& items, bool areUserNames) {
    items_ = items;
    areUserNames_ = areUserNames;
    if (currentIndex_ >= items_.size()) currentIndex_ = -1;
    if (popup_) popup_->close();
    describe();
    updateGeometry();
    update();
}

void PickerButton::setCurrentIndex(int index) {
    currentIndex_ = index < items_.size() ? index : -1;
    describe();
    update();
}

void PickerButton::setCaption(const QString& caption) {
    caption_ = caption;
    describe();
}

void PickerButton::describe() {
    setAccessibleName(caption_.isEmpty() ? shown() : caption_ + QStringLiteral(": ") + shown());
    setToolTip(areUserNames_ ? plainToolTip(shown()) : caption_);
}

QString PickerButton::shown() const {
    return items_.value(currentIndex_);
}

QRectF PickerButton::textRoom() const {
    return QRectF(rect()).adjusted(padding, 4, -(padding + symbolSize + gap), -4);
}

QList<ShownText> PickerButton::shownTexts() const {
    if (areUserNames_) return {};
    const QSizeF room = textRoom().size();
    return {{shown(),
             wrappedSize(shown(), fittingFont(shown(), typeface(), room, smallestType), room.width()), room}};
}

QSize PickerButton::sizeHint() const {
    // As wide as the widest item, so that choosing another one moves nothing.
    qreal widest = 0;
    for (const QString& item : items_)
        widest = qMax(widest, wrappedSize(item, typeface(), 10000).width());
    return {qCeil(widest) + 2 * padding + symbolSize + gap + 1, 30};
}

int PickerButton::currentItemWidth() const {
    return qCeil(wrappedSize(shown(), typeface(), 10000).width()) + 2 * padding + symbolSize + gap + 1;
}

QSize PickerButton::minimumSizeHint() const {
    return {areUserNames_ ? 80 : sizeHint().width(), 30};
}

void PickerButton::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Down) {
        openPopup();
        return;
    }
    ControlButton::keyPressEvent(event);
}

void PickerButton::openPopup() {
    if (popup_ || items_.isEmpty()) return;
    auto* list = new PickerPopup(theme(), this);
    popup_ = list;
    list->setAccessibleName(caption_);
    auto* layout = new QVBoxLayout(list);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->setSpacing(0);
    int widest = width() - 8;
    for (int index = 0; index < items_.size(); ++index) {
        auto* row = new PanelButton(PanelButton::Look::option, PanelButton::Arrangement::row, theme(), list);
        row->setLabel(items_[index]);
        row->setSymbol(Icon::check);
        row->setElided(areUserNames_);
        row->setToolTip(areUserNames_ ? plainToolTip(items_[index]) : QString());
        row->setCheckable(true);
        row->setChecked(index == currentIndex_);
        layout->addWidget(row);
        widest = qMax(widest, row->sizeHint().width());
        connect(row, &QAbstractButton::clicked, this, [this, index, list] {
            list->close();
            setCurrentIndex(index);
            Q_EMIT chosen(index);
        });
    }
    const int most = areUserNames_ ? qMax(width(), 360) : widest + 8;
    list->resize(qMin(widest + 8, most), list->sizeHint().height());
    QPoint corner = mapToGlobal(QPoint(width() - list->width(), height() + 2));
    const QRect available = screen()->availableGeometry();
    if (corner.y() + list->height() > available.bottom()) {
        corner.setY(mapToGlobal(QPoint(0, -2)).y() - list->height());
    }
    corner.setX(
        qBound(available.left(), corner.x(), qMax(available.left(), available.right() - list->width())));
    corner.setY(qMax(available.top(), corner.y()));
    list->move(corner);
    list->show();
    auto* first = qobject_cast<QWidget*>(layout->itemAt(qMax(0, currentIndex_))->widget());
    first->setFocus(Qt::PopupFocusReason);
    picker_accessibility::tellExpanded(*this);
    connect(list, &QObject::destroyed, this, [this] { picker_accessibility::tellExpanded(*this); });
}

void PickerButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool isDark = theme().scheme() == Theme::Scheme::dark;
    const QColor ground = isDark ? theme().tint(ColorRole::text, ColorRole::card, underMouse() ? 0.12 : 0.06)
                                 : theme().tint(ColorRole::text, ColorRole::panel, underMouse() ? 0.05 : 0.0);
    painter.setPen(theme().hairlineBetween(ground, theme().color(ColorRole::panel)));
    painter.setBrush(ground);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), metrics::controlRadius,
                            metrics::controlRadius);

    const QRectF room = textRoom();
    QString text = shown();
    QFont font = typeface();
    if (areUserNames_) {
        text = QFontMetricsF(font).elidedText(text, Qt::ElideMiddle, room.width());
    } else {
        font = fittingFont(text, font, room.size(), smallestType);
    }
    painter.setFont(font);
    painter.setPen(theme().color(ColorRole::text));
    painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text);
    painter.drawPixmap(
        QPointF(width() - padding - symbolSize, (height() - symbolSize) / 2.0),
        iconPixmap(Icon::chevronDown, theme().color(ColorRole::secondary), symbolSize, devicePixelRatioF()));
    if (showsFocus()) paintFocusRing(painter, theme(), rect(), metrics::controlRadius);
}

}  // namespace orlix
