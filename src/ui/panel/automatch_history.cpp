#include "ui/panel/automatch_history.h"

#include "automatch/automatch_manager.h"
#include "game/game_manager.h"
#include "l10n/localization_manager.h"
#include "records/pgn_exporter.h"
#include "ui/controls/text_label.h"
#include "ui/panel/automatch_formats.h"
#include "ui/panel/automatch_history_list.h"
#include "ui/panel/automatch_history_model.h"
#include "ui/panel/automatch_record_details.h"
#include "ui/panel/icon_button.h"
#include "ui/panel/section_head.h"
#include "ui/theme.h"

namespace orlix {

namespace {
// The list's scroll bar stands in the card's right margin.
constexpr int rightMargin = 4;
constexpr int scrollBarRoom = 10;
}  // namespace

AutomatchHistory::AutomatchHistory(const PanelContext& context, QWidget* parent)
    : Card(context.theme, parent),
      context_(context),
      head_(new SectionHead(Icon::list, context.theme, this)),
      copyAll_(new IconButton(Icon::copy, IconButton::Look::plain, context.theme, this)),
      clear_(new IconButton(Icon::trash, IconButton::Look::destructive, context.theme, this)),
      empty_(new TextLabel(TextStyle::body, ColorRole::secondary, context.theme, this)),
      model_(new AutomatchHistoryModel(this)),
      list_(new AutomatchHistoryList(*model_, context, this)),
      details_(new AutomatchRecordDetails(context, this)) {
    copyAll_->setObjectName(QStringLiteral("copyAllGames"));
    clear_->setObjectName(QStringLiteral("clearHistory"));
    empty_->setObjectName(QStringLiteral("emptyHistory"));
    empty_->setAlignment(Qt::AlignCenter);
    empty_->hide();
    head_->addTrailing(copyAll_);
    head_->addTrailing(clear_);
    QMargins margins = content()->contentsMargins();
    margins.setRight(rightMargin);
    content()->setContentsMargins(margins);
    content()->setSpacing(metrics::space1);
    const auto addInset = [this](QWidget* widget) {
        auto* line = new QHBoxLayout;
        line->setContentsMargins(0, 0, scrollBarRoom, 0);
        line->addWidget(widget);
        content()->addLayout(line);
    };
    addInset(head_);
    content()->addWidget(empty_, 1);
    content()->addWidget(list_, 1);
    addInset(details_);

    connect(copyAll_, &QAbstractButton::clicked, this, &AutomatchHistory::copyAll);
    connect(clear_, &QAbstractButton::clicked, this, &AutomatchHistory::clear);
    connect(list_, &AutomatchHistoryList::chosenRowChanged, this, &AutomatchHistory::showChosen);
    connect(list_, &AutomatchHistoryList::loadRequested, this, &AutomatchHistory::load);
    connect(list_, &AutomatchHistoryList::copyRequested, this, &AutomatchHistory::copy);
    connect(details_, &AutomatchRecordDetails::loadRequested, this, [this] { load(list_->chosenRow()); });
    connect(details_, &AutomatchRecordDetails::copyRequested, this, [this] { copy(list_->chosenRow()); });
    retranslate();
    takeSeries();
    showChosen();
    connect(&context_.loc, &LocalizationManager::changed, this, &AutomatchHistory::retranslate);
}

void AutomatchHistory::takeSeries() {
    model_->take(context_.automatch.history());
    const bool isEmpty = model_->rowCount() == 0;
    if (list_->isHidden() == isEmpty) return;
    list_->setVisible(!isEmpty);
    empty_->setVisible(isEmpty);
    for (IconButton* button : {copyAll_, clear_}) {
        // Where a button goes out the keyboard does not move on by itself: the next Return would press
        // another.
        if (isEmpty && button->hasFocus()) button->clearFocus();
        button->setEnabled(!isEmpty);
    }
    updateGeometry();
}

void AutomatchHistory::showChosen() {
    const int row = list_->chosenRow();
    if (row >= 0) details_->setRecord(context_.automatch.history().at(model_->historyIndex(row)));
    if (details_->isHidden() != (row >= 0)) return;
    QWidget* focus = window()->focusWidget();
    if (row < 0 && focus && details_->isAncestorOf(focus)) focus->clearFocus();
    details_->setVisible(row >= 0);
    // Where the details open the list becomes lower, and the chosen row may be below its new edge.
    updateGeometry();
    if (row < 0) return;
    content()->activate();
    list_->scrollTo(model_->index(row));
    Q_EMIT detailsOpened(details_);
}

void AutomatchHistory::load(int row) {
    const AutomatchGameRecord record = context_.automatch.history().at(model_->historyIndex(row));
    context_.game.replayGame(record.movesUCI, record.reason);
    Q_EMIT toastRequested(automatchGameTitle(record.gameNumber) + QStringLiteral(" auf Brett geladen!"));
}

void AutomatchHistory::copy(int row) {
    context_.exporter.copyToClipboard(context_.automatch.history().at(model_->historyIndex(row)).pgn);
    Q_EMIT toastRequested(context_.loc.text("copied_to_clipboard"));
}

void AutomatchHistory::copyAll() {
    context_.exporter.copyToClipboard(context_.automatch.exportAllPGN());
    Q_EMIT toastRequested(context_.loc.text("copied_to_clipboard"));
}

void AutomatchHistory::clear() {
    context_.automatch.clearHistory();
}

void AutomatchHistory::retranslate() {
    const LocalizationManager& loc = context_.loc;
    const QString title = loc.text("automatch_history");
    head_->setTitle(title);
    setAccessibleName(title);
    copyAll_->setCaption(loc.text("automatch_export_all_pgn"));
    clear_->setCaption(loc.text("automatch_clear_history"));
    empty_->setText(loc.text(ExtraText::noAutomatchGames));
}

}  // namespace orlix
