#include "ui/panel/scroll_page.h"

#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <QVBoxLayout>

#include "ui/controls/thin_scroll_bar.h"
#include "ui/theme.h"

namespace orlix {

ScrollPage::ScrollPage(Theme& theme, QWidget* parent) : QScrollArea(parent) {
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // Its room is part of the right margin: nothing moves when there is something to scroll.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setVerticalScrollBar(new ThinScrollBar(ColorRole::panel, theme, this));
    verticalScrollBar()->setSingleStep(20);
    auto* inner = new QWidget;
    content_ = new QVBoxLayout(inner);
    content_->setContentsMargins(metrics::space4, metrics::space4,
                                 metrics::space4 - verticalScrollBar()->sizeHint().width(), metrics::space4);
    content_->setSpacing(metrics::space3);
    setWidget(inner);
    // The panel's own ground shows through.
    inner->setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
}

ScrollPageEdge::ScrollPageEdge(const ScrollPage& page, Theme& theme, QWidget* parent)
    : QWidget(parent), page_(page), theme_(theme) {
    setFixedHeight(1);
    const QScrollBar* bar = page.verticalScrollBar();
    connect(bar, &QScrollBar::valueChanged, this, qOverload<>(&QWidget::update));
    connect(bar, &QScrollBar::rangeChanged, this, qOverload<>(&QWidget::update));
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void ScrollPageEdge::paintEvent(QPaintEvent* event) {
    const QScrollBar* bar = page_.verticalScrollBar();
    if (bar->value() == bar->maximum()) return;
    QPainter(this).fillRect(event->rect(), theme_.color(ColorRole::hairline));
}

}  // namespace orlix
