#include "ui/controls/choice_group.h"

#include <QEvent>
#include <QPainter>

#include "ui/theme.h"

namespace orlix {

namespace {
constexpr int trackPadding = 2;
constexpr int chipGap = 6;
constexpr int naturalWidth = 320;
}  // namespace

ChoiceGroup::ChoiceGroup(Layout layout, int count, Theme& theme, QWidget* parent)
    : QWidget(parent), layout_(layout), theme_(theme) {
    // Not fixed in height: the height of the natural width would then be a least height at every width.
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    const auto look = layout == Layout::segments ? PanelButton::Look::segment : PanelButton::Look::chip;
    for (int index = 0; index < count; ++index) {
        auto* button = new PanelButton(look, PanelButton::Arrangement::row, theme, this);
        button->setCheckable(true);
        button->setAutoExclusive(true);
        connect(button, &QAbstractButton::clicked, this, [this, index] {
            setCurrentIndex(index);
            Q_EMIT chosen(index);
        });
        buttons_.append(button);
    }
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void ChoiceGroup::setLabels(const QStringList& labels) {
    Q_ASSERT(labels.size() == buttons_.size());
    for (int index = 0; index < buttons_.size(); ++index)
        buttons_[index]->setLabel(labels[index]);
    updateGeometry();
    arrange();
}

void ChoiceGroup::setSymbol(int index, Icon symbol) {
    buttons_[index]->setSymbol(symbol);
}

void ChoiceGroup::setCurrentIndex(int index) {
    if (index >= 0) {
        buttons_[index]->setChecked(true);
    } else if (currentIndex() >= 0) {
        // Exclusive buttons keep one of them checked.
        PanelButton* checked = buttons_[currentIndex()];
        checked->setAutoExclusive(false);
        checked->setChecked(false);
        checked->setAutoExclusive(true);
    }
    const int stop = qMax(currentIndex(), 0);
    for (PanelButton* button : buttons_) {
        button->setFocusPolicy(button == buttons_[stop] ? Qt::TabFocus : Qt::NoFocus);
    }
}

int ChoiceGroup::currentIndex() const {
    for (int index = 0; index < buttons_.size(); ++index) {
        if (buttons_[index]->isChecked()) return index;
    }
    return -1;
}

QList<QRect> ChoiceGroup::places(int width) const {
    QList<QRect> result;
    if (layout_ == Layout::segments) {
        const int count = static_cast<int>(buttons_.size());
        const int room = width - 2 * trackPadding;
        int height = 0;
        for (int index = 0; index < count; ++index) {
            const int left = trackPadding + room * index / count;
            const int right = trackPadding + room * (index + 1) / count;
            result.append(QRect(left, trackPadding, right - left, 0));
            height = qMax(height, buttons_[index]->heightForWidth(right - left));
        }
        for (QRect& place : result)
            place.setHeight(height);
        return result;
    }
    int x = 0;
    int y = 0;
    int lineHeight = 0;
    for (const PanelButton* button : buttons_) {
        const QSize natural = button->sizeHint();
        const int chipWidth = qMin(natural.width(), width);
        const int height = button->heightForWidth(chipWidth);
        if (x > 0 && x + chipWidth > width) {
            x = 0;
            y += lineHeight + chipGap;
            lineHeight = 0;
        }
        result.append(QRect(x, y, chipWidth, height));
        x += chipWidth + chipGap;
        lineHeight = qMax(lineHeight, height);
    }
    return result;
}

void ChoiceGroup::arrange() {
    const QList<QRect> all = places(width());
    for (int index = 0; index < buttons_.size(); ++index)
        buttons_[index]->setGeometry(all[index]);
}

int ChoiceGroup::heightForWidth(int width) const {
    int bottom = 0;
    for (const QRect& place : places(width))
        bottom = qMax(bottom, place.y() + place.height());
    return bottom + (layout_ == Layout::segments ? trackPadding : 0);
}

QSize ChoiceGroup::sizeHint() const {
    return {naturalWidth, heightForWidth(naturalWidth)};
}

QSize ChoiceGroup::minimumSizeHint() const {
    return {0, 0};
}

void ChoiceGroup::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    arrange();
}

bool ChoiceGroup::event(QEvent* event) {
    if (event->type() == QEvent::LayoutRequest) arrange();
    return QWidget::event(event);
}

void ChoiceGroup::paintEvent(QPaintEvent*) {
    if (layout_ != Layout::segments) return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme_.tint(ColorRole::text, ColorRole::card, 0.06));
    painter.drawRoundedRect(rect(), metrics::controlRadius + 2, metrics::controlRadius + 2);
}

}  // namespace orlix
