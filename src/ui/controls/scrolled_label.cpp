#include "ui/controls/scrolled_label.h"

#include <QScrollBar>

#include "ui/controls/text_label.h"
#include "ui/controls/thin_scroll_bar.h"

namespace orlix {

ScrolledLabel::ScrolledLabel(TextStyle style, ColorRole role, Theme& theme, QWidget* parent)
    : QScrollArea(parent), label_(new TextLabel(style, role, theme)) {
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBar(new ThinScrollBar(ColorRole::panel, theme, this));
    verticalScrollBar()->setSingleStep(QFontMetrics(Theme::font(style)).lineSpacing());
    label_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    setWidget(label_);
    // The ground of whatever holds it shows through.
    label_->setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
    followRoom();
}

void ScrolledLabel::setText(const QString& text) {
    if (text == label_->text()) return;
    label_->setText(text);
    setAccessibleName(text);
    verticalScrollBar()->setValue(0);
    followRoom();
}

QString ScrolledLabel::text() const {
    return label_->text();
}

void ScrolledLabel::setRole(ColorRole role) {
    label_->setRole(role);
}

int ScrolledLabel::heightForText(int width) const {
    return label_->heightForWidth(width);
}

void ScrolledLabel::resizeEvent(QResizeEvent* event) {
    QScrollArea::resizeEvent(event);
    followRoom();
}

// Tab stops here only when there is something to scroll.
void ScrolledLabel::followRoom() {
    setFocusPolicy(heightForText(width()) > height() ? Qt::TabFocus : Qt::NoFocus);
}

}  // namespace orlix
