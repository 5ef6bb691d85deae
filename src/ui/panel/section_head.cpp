#include "ui/panel/section_head.h"

#include <QHBoxLayout>
#include <QPainter>

#include "ui/controls/text_label.h"
#include "ui/theme.h"

namespace orlix {

namespace {
constexpr int symbolSize = 18;
}

SectionHead::SectionHead(Icon icon, Theme& theme, QWidget* parent)
    : QWidget(parent),
      icon_(icon),
      theme_(theme),
      layout_(new QHBoxLayout(this)),
      title_(new TextLabel(TextStyle::sectionHead, ColorRole::text, theme, this)) {
    layout_->setContentsMargins(symbolSize + metrics::space2, 0, 0, 0);
    layout_->setSpacing(metrics::space2);
    layout_->addWidget(title_, 1);
    setMinimumHeight(symbolSize);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void SectionHead::setTitle(const QString& title) {
    title_->setText(title);
}

void SectionHead::addTrailing(QWidget* widget) {
    layout_->addWidget(widget);
}

void SectionHead::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QPointF place(0, (height() - symbolSize) / 2.0);
    painter.drawPixmap(place,
                       iconPixmap(icon_, theme_.color(ColorRole::accent), symbolSize, devicePixelRatioF()));
}

}  // namespace orlix
