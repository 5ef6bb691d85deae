#include "ui/controls/notes_view.h"

#include <QFocusEvent>
#include <QPainter>
#include <QPlainTextEdit>
#include <QtMath>

#include "ui/controls/control_button.h"
#include "ui/controls/text_fit.h"
#include "ui/controls/thin_scroll_bar.h"
#include "ui/theme.h"

namespace orlix {

namespace {
constexpr int padding = metrics::space3;
constexpr int scrollBarRoom = 10;
constexpr int measuredCharacters = 4000;  // more than any card of this program shows at once
}  // namespace

NotesView::NotesView(Theme& theme, QWidget* parent)
    : QWidget(parent), theme_(theme), reader_(new QPlainTextEdit(this)) {
    reader_->setReadOnly(true);
    reader_->setUndoRedoEnabled(false);
    reader_->setTabChangesFocus(true);
    reader_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    reader_->setContextMenuPolicy(Qt::NoContextMenu);
    reader_->setFocusPolicy(Qt::StrongFocus);
    reader_->setFrameShape(QFrame::NoFrame);
    reader_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    reader_->setVerticalScrollBar(new ThinScrollBar(ColorRole::card, theme, reader_));
    reader_->setFont(Theme::font(TextStyle::body));
    reader_->document()->setDocumentMargin(0);
    reader_->viewport()->setAutoFillBackground(false);
    reader_->installEventFilter(this);

    connect(&theme_, &Theme::changed, this, &NotesView::recolor);
    recolor();
}

void NotesView::setText(const QString& text) {
    if (text == text_) return;
    text_ = text;
    reader_->setPlainText(text);
}

void NotesView::setCaption(const QString& caption) {
    reader_->setAccessibleName(caption);
}

int NotesView::heightForText(int width, int most) const {
    // A scroll bar that only just appears makes lines shorter: its room counts always.
    const QSizeF text = wrappedSize(text_.left(measuredCharacters), reader_->font(), width - 2.0 * padding);
    return qMin(most, qCeil(text.height()) + 2 * padding + 1);
}

void NotesView::recolor() {
    QPalette colors = theme_.palette();
    colors.setColor(QPalette::Base, theme_.color(ColorRole::card));
    reader_->setPalette(colors);
    update();
}

// Whole lines only: half of one at the lower edge is no sight.
void NotesView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    const int line = qMax(1, reader_->cursorRect().height());
    const int lines = qMax(1, (height() - 2 * padding) / line);
    reader_->setGeometry(padding, padding, width() - 2 * padding + scrollBarRoom, lines * line);
}

bool NotesView::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
        const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
        if (reason != Qt::ActiveWindowFocusReason)
            showsFocus_ = event->type() == QEvent::FocusIn && reason != Qt::MouseFocusReason;
        update();
    }
    return QWidget::eventFilter(watched, event);
}

void NotesView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(theme_.hairlineBetween(theme_.color(ColorRole::card), theme_.color(ColorRole::panel)));
    painter.setBrush(theme_.color(ColorRole::card));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), metrics::cardRadius,
                            metrics::cardRadius);
    if (showsFocus_) paintFocusRing(painter, theme_, rect(), metrics::cardRadius);
}

}  // namespace orlix
