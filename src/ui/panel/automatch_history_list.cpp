#include "ui/panel/automatch_history_list.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QToolTip>

#include "l10n/localization_manager.h"
#include "ui/controls/control_button.h"
#include "ui/controls/thin_scroll_bar.h"
#include "ui/panel/automatch_history_model.h"
#include "ui/panel/automatch_history_row.h"
#include "ui/theme.h"

namespace orlix {

namespace {
constexpr int leastRows = 3;
}

AutomatchHistoryList::AutomatchHistoryList(AutomatchHistoryModel& model, const PanelContext& context,
                                           QWidget* parent)
    : QListView(parent),
      model_(model),
      context_(context),
      rowPainter_(new AutomatchHistoryRow(context.theme, this)) {
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::StrongFocus);
    setUniformItemSizes(true);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // Its room is part of the right margin: nothing moves when it is needed.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setVerticalScrollBar(new ThinScrollBar(ColorRole::card, context.theme, this));
    verticalScrollBar()->setSingleStep(AutomatchHistoryRow::height);
    setEditTriggers(NoEditTriggers);
    setSelectionMode(SingleSelection);
    setAttribute(Qt::WA_MacShowFocusRect, false);
    viewport()->setAutoFillBackground(false);
    viewport()->setMouseTracking(true);
    setItemDelegate(rowPainter_);
    setModel(&model);
    const auto rename = [this] { setAccessibleName(context_.loc.text("automatch_history")); };
    rename();
    connect(&context_.loc, &LocalizationManager::changed, this, rename);
    connect(&context_.theme, &Theme::changed, viewport(), qOverload<>(&QWidget::update));
    connect(&model, &QAbstractItemModel::modelReset, this, [this] {
        setHovered({});
        pressed_ = {};
        Q_EMIT chosenRowChanged();
    });
}

int AutomatchHistoryList::chosenRow() const {
    const QModelIndexList chosen = selectionModel()->selectedIndexes();
    return chosen.isEmpty() ? -1 : chosen.first().row();
}

void AutomatchHistoryList::choose(int row) {
    if (row < 0) {
        selectionModel()->clear();
    } else {
        selectionModel()->setCurrentIndex(model_.index(row), QItemSelectionModel::ClearAndSelect);
    }
}

// The card that holds it stretches; what it asks for is the least that is of use.
QSize AutomatchHistoryList::sizeHint() const {
    return {320, leastRows * AutomatchHistoryRow::height};
}

QSize AutomatchHistoryList::minimumSizeHint() const {
    return {160, leastRows * AutomatchHistoryRow::height};
}

void AutomatchHistoryList::rowsInserted(const QModelIndex& parent, int start, int end) {
    const int value = verticalScrollBar()->value();
    const int moved = (end - start + 1) * AutomatchHistoryRow::height;
    const int chosen = chosenRow();
    const bool isReading = value > 0 || chosen >= 0;
    QListView::rowsInserted(parent, start, end);
    // The rows stand elsewhere now than the pointer knows; its next move tells anew.
    setHovered({});
    if (pressed_.row >= start) pressed_.row += end - start + 1;
    if (!isReading) return;
    executeDelayedItemsLayout();
    verticalScrollBar()->setValue(value + moved);
}

void AutomatchHistoryList::selectionChanged(const QItemSelection& selected,
                                            const QItemSelection& deselected) {
    QListView::selectionChanged(selected, deselected);
    Q_EMIT chosenRowChanged();
}

AutomatchHistoryList::Spot AutomatchHistoryList::spotAt(QPoint position) const {
    const QModelIndex index = indexAt(position);
    if (!index.isValid()) return {};
    return {index.row(), AutomatchHistoryRow::button(visualRect(index)).contains(position)};
}

void AutomatchHistoryList::setHovered(const Spot& spot) {
    if (spot == hovered_) return;
    for (const int row : {hovered_.row, spot.row}) {
        if (row >= 0) update(model_.index(row));
    }
    hovered_ = spot;
    rowPainter_->setHovered(spot.row, spot.isButton);
}

void AutomatchHistoryList::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    pressed_ = spotAt(event->position().toPoint());
}

void AutomatchHistoryList::mouseMoveEvent(QMouseEvent* event) {
    setHovered(spotAt(event->position().toPoint()));
}

void AutomatchHistoryList::mouseReleaseEvent(QMouseEvent* event) {
    const Spot spot = spotAt(event->position().toPoint());
    const bool isPress = event->button() == Qt::LeftButton && spot.row >= 0 && spot == pressed_;
    pressed_ = {};
    if (!isPress) return;
    if (spot.isButton) {
        Q_EMIT loadRequested(spot.row);
    } else {
        choose(spot.row == chosenRow() ? -1 : spot.row);
    }
}

// Two presses, nothing more.
void AutomatchHistoryList::mouseDoubleClickEvent(QMouseEvent* event) {
    mousePressEvent(event);
}

void AutomatchHistoryList::keyPressEvent(QKeyEvent* event) {
    const int row = chosenRow();
    switch (event->key()) {
        case Qt::Key_Up:
        case Qt::Key_Down:
        case Qt::Key_Home:
        case Qt::Key_End:
        case Qt::Key_PageUp:
        case Qt::Key_PageDown: QListView::keyPressEvent(event); return;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (row >= 0 && !event->isAutoRepeat()) Q_EMIT loadRequested(row);
            return;
        case Qt::Key_Escape:
            if (row >= 0) {
                choose(-1);
                return;
            }
            break;
        default: break;
    }
    if (row >= 0 && event->matches(QKeySequence::Copy)) {
        Q_EMIT copyRequested(row);
        return;
    }
    // Space and letters belong to the window.
    event->ignore();
}

void AutomatchHistoryList::focusInEvent(QFocusEvent* event) {
    if (event->reason() != Qt::ActiveWindowFocusReason) showsFocus_ = event->reason() != Qt::MouseFocusReason;
    QListView::focusInEvent(event);
}

// With the focus comes a request for the next row, to make the first one current: the first step down would
// then skip it. No key asks for this one.
QModelIndex AutomatchHistoryList::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
    return action == MoveNext ? QModelIndex() : QListView::moveCursor(action, modifiers);
}

bool AutomatchHistoryList::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::Leave) setHovered({});
    if (event->type() == QEvent::ToolTip) {
        showToolTip(*static_cast<QHelpEvent*>(event));
        return true;
    }
    return QListView::viewportEvent(event);
}

void AutomatchHistoryList::showToolTip(const QHelpEvent& event) const {
    const Spot spot = spotAt(event.pos());
    if (spot.row < 0) {
        QToolTip::hideText();
        return;
    }
    const AutomatchHistoryModel::Row& row = model_.row(spot.row);
    QToolTip::showText(event.globalPos(),
                       spot.isButton ? context_.loc.text("automatch_load_game")
                                     : plainToolTip(row.white + QStringLiteral(" – ") + row.black),
                       viewport());
}

QList<ShownText> AutomatchHistoryList::shownTexts() const {
    QList<ShownText> texts;
    for (int row = 0; row < model_.rowCount(); ++row) {
        const QRect place = visualRect(model_.index(row));
        if (place.intersects(viewport()->rect()))
            texts += AutomatchHistoryRow::shownTexts(model_.row(row), place);
    }
    return texts;
}

void AutomatchHistoryList::paintEvent(QPaintEvent* event) {
    QListView::paintEvent(event);
    if (!hasFocus() || !showsFocus_) return;
    QPainter painter(viewport());
    paintFocusRing(painter, context_.theme, viewport()->rect(), metrics::controlRadius);
}

}  // namespace orlix
