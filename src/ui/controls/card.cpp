#include "ui/controls/card.h"

#include <QPainter>

#include "ui/controls/text_label.h"
#include "ui/theme.h"

namespace orlix {

Card::Card(Theme& theme, QWidget* parent) : QWidget(parent), theme_(theme), layout_(new QVBoxLayout(this)) {
    layout_->setContentsMargins(14, 12, 14, 14);
    layout_->setSpacing(10);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void Card::setTitle(const QString& title) {
    if (!title_) {
        title_ = new TextLabel(TextStyle::sectionHead, ColorRole::text, theme_, this);
        layout_->insertWidget(0, title_);
    }
    title_->setText(title);
    setAccessibleName(title);
}

void Card::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor ground = theme_.color(ColorRole::card);
    painter.setPen(theme_.hairlineBetween(ground, theme_.color(ColorRole::panel)));
    painter.setBrush(ground);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), metrics::cardRadius,
                            metrics::cardRadius);
}

}  // namespace orlix
