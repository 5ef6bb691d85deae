#include "ui/promotion_picker.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>

#include "l10n/localization_manager.h"
#include "ui/promotion_button.h"
#include "ui/theme.h"

namespace orlix {

namespace {

constexpr int titleHeight = 28;
constexpr int smallestTitle = 11;
const QColor dimming(0, 0, 0, 115);

}  // namespace

PromotionPicker::PromotionPicker(LocalizationManager& loc, Theme& theme, QWidget* parent)
    : QWidget(parent), loc_(loc), theme_(theme) {
    hide();
    addPieceButton(PieceType::queen, "queen");
    addPieceButton(PieceType::rook, "rook");
    addPieceButton(PieceType::bishop, "bishop");
    addPieceButton(PieceType::knight, "knight");
    auto* cancel = new PromotionButton(theme_, std::nullopt, this);
    connect(cancel, &QAbstractButton::clicked, this, &PromotionPicker::cancelled);
    buttons_.push_back(cancel);
    textKeys_.push_back("btn_cancel");
    connect(&loc_, &LocalizationManager::changed, this, &PromotionPicker::updateTexts);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
    updateTexts();
}

void PromotionPicker::addPieceButton(PieceType type, const char* textKey) {
    auto* button = new PromotionButton(theme_, type, this);
    connect(button, &QAbstractButton::clicked, this, [this, type] { Q_EMIT pieceChosen(type); });
    buttons_.push_back(button);
    textKeys_.push_back(textKey);
}

void PromotionPicker::open(PieceColor color) {
    for (PromotionButton* button : buttons_)
        button->setPieceColor(color);
    if (!isHidden()) return;
    previousFocus_ = QApplication::focusWidget();
    show();
    raise();
    buttons_.front()->setFocus(Qt::PopupFocusReason);
}

void PromotionPicker::close() {
    if (isHidden()) return;
    hide();
    if (previousFocus_) previousFocus_->setFocus(Qt::PopupFocusReason);
}

void PromotionPicker::updateTexts() {
    title_ = loc_.text("promote_pawn");
    setAccessibleName(title_);
    for (std::size_t index = 0; index < buttons_.size(); ++index) {
        const QString text = loc_.text(textKeys_[index]);
        buttons_[index]->setText(text);
        buttons_[index]->setAccessibleName(text);
    }
    arrange();
    update();
}

// One row of pieces under the title, the cancel button below at the right; narrow boards get narrower
// buttons.
void PromotionPicker::arrange() {
    const int pieceCount = static_cast<int>(buttons_.size()) - 1;
    const int padding = metrics::space4;
    const int gap = metrics::space2;
    QSize pieceButton;
    for (int index = 0; index < pieceCount; ++index) {
        pieceButton = pieceButton.expandedTo(buttons_[static_cast<std::size_t>(index)]->sizeHint());
    }
    const int room = width() - 2 * padding - 2 * metrics::space2 - (pieceCount - 1) * gap;
    pieceButton.setWidth(qMin(pieceButton.width(), qMax(0, room / pieceCount)));
    const QSize cancelButton = buttons_.back()->sizeHint();

    const QSize inner(
        pieceCount * pieceButton.width() + (pieceCount - 1) * gap,
        titleHeight + metrics::space2 + pieceButton.height() + metrics::space3 + cancelButton.height());
    panel_ = QRect(QPoint(), inner.grownBy(QMargins(padding, metrics::space3, padding, padding)));
    panel_.moveCenter(rect().center());

    QPoint corner = panel_.topLeft() + QPoint(padding, metrics::space3 + titleHeight + metrics::space2);
    for (int index = 0; index < pieceCount; ++index) {
        buttons_[static_cast<std::size_t>(index)]->setGeometry(QRect(corner, pieceButton));
        corner.rx() += pieceButton.width() + gap;
    }
    const QPoint end = panel_.bottomRight() + QPoint(1 - padding, 1 - padding);
    buttons_.back()->setGeometry(
        QRect(end - QPoint(cancelButton.width(), cancelButton.height()), cancelButton));
}

QRect PromotionPicker::titleRect() const {
    return {panel_.left() + metrics::space4, panel_.top() + metrics::space3,
            panel_.width() - 2 * metrics::space4, titleHeight};
}

QFont PromotionPicker::titleFont() const {
    return fittingLineFont(title_, Theme::font(TextStyle::sectionHead), titleRect().width(), smallestTitle);
}

QList<ShownText> PromotionPicker::shownTexts() const {
    const QFontMetricsF metrics(titleFont());
    return {
        {title_, QSizeF(metrics.horizontalAdvance(title_), metrics.height()), QSizeF(titleRect().size())}};
}

void PromotionPicker::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), dimming);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(theme_.color(ColorRole::hairline));
    painter.setBrush(theme_.color(ColorRole::panel));
    painter.drawRoundedRect(QRectF(panel_).adjusted(0.5, 0.5, -0.5, -0.5), metrics::cardRadius,
                            metrics::cardRadius);
    painter.setPen(theme_.color(ColorRole::text));
    painter.setFont(titleFont());
    painter.drawText(titleRect(), Qt::AlignLeft | Qt::AlignVCenter, title_);
}

void PromotionPicker::resizeEvent(QResizeEvent*) {
    arrange();
}

void PromotionPicker::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Escape: Q_EMIT cancelled(); return;
        case Qt::Key_Left:
        case Qt::Key_Up: moveFocus(-1); return;
        case Qt::Key_Right:
        case Qt::Key_Down: moveFocus(1); return;
        default: QWidget::keyPressEvent(event);
    }
}

// The board underneath must not take a click meant for the picker.
void PromotionPicker::mousePressEvent(QMouseEvent* event) {
    event->accept();
}

// Tab stays inside: the rest of the window waits for the answer.
bool PromotionPicker::focusNextPrevChild(bool next) {
    moveFocus(next ? 1 : -1);
    return true;
}

void PromotionPicker::moveFocus(int step) {
    const int count = static_cast<int>(buttons_.size());
    if (count == 0) return;
    int current = 0;
    for (int index = 0; index < count; ++index) {
        if (buttons_[static_cast<std::size_t>(index)]->hasFocus()) current = index;
    }
    const int next = (current + step + count) % count;
    buttons_[static_cast<std::size_t>(next)]->setFocus(step > 0 ? Qt::TabFocusReason
                                                                : Qt::BacktabFocusReason);
}

}  // namespace orlix
