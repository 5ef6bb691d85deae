#include "ui/panel/engines_tab.h"

#include <QVBoxLayout>

#include "engine/engine_manager.h"
#include "l10n/localization_manager.h"
#include "ui/controls/panel_button.h"
#include "ui/controls/text_label.h"
#include "ui/panel/engine_notice.h"
#include "ui/panel/engine_row.h"
#include "ui/panel/scroll_page.h"
#include "ui/panel/section_head.h"
#include "ui/theme.h"

namespace orlix {

EnginesTab::EnginesTab(const PanelContext& context, PanelState& state, QWidget* parent)
    : QWidget(parent), context_(context), state_(state), list_(new QVBoxLayout) {
    Theme& theme = context.theme;
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    auto* page = new ScrollPage(theme, this);
    head_ = new SectionHead(Icon::engine, theme);
    page->content()->addWidget(head_);
    auto* noticeCard = new Card(theme);
    notice_ = new EngineNotice(context, noticeCard);
    noticeCard->content()->addWidget(notice_);
    noticeCard_ = noticeCard;
    page->content()->addWidget(noticeCard);
    list_->setSpacing(metrics::space3);
    page->content()->addLayout(list_);
    page->content()->addStretch(1);
    layout->addWidget(page, 1);
    layout->addWidget(new ScrollPageEdge(*page, theme, this));

    checking_ = new TextLabel(TextStyle::body, ColorRole::secondary, theme, this);
    checking_->setObjectName(QStringLiteral("checkingEngine"));
    checking_->setAlignment(Qt::AlignCenter);
    checking_->hide();
    scan_ = new PanelButton(PanelButton::Look::secondary, PanelButton::Arrangement::row, theme, this);
    scan_->setObjectName(QStringLiteral("scanEngines"));
    scan_->setSymbol(Icon::scan);
    add_ = new PanelButton(PanelButton::Look::primary, PanelButton::Arrangement::row, theme, this);
    add_->setObjectName(QStringLiteral("addUciEngine"));
    add_->setSymbol(Icon::add);
    auto* footer = new QVBoxLayout;
    footer->setContentsMargins(metrics::space4, metrics::space3, metrics::space4, metrics::space3);
    footer->setSpacing(metrics::space2);
    footer->addWidget(checking_);
    footer->addWidget(scan_);
    footer->addWidget(add_);
    layout->addLayout(footer);

    retranslate();
    takeEngines();
    EngineManager& engines = context_.engines;
    connect(scan_, &QAbstractButton::clicked, &engines, [&engines] { engines.scanDefaultPaths(); });
    connect(add_, &QAbstractButton::clicked, this, &EnginesTab::addEngineRequested);
    connect(notice_, &EngineNotice::addRequested, this, &EnginesTab::addEngineRequested);
    connect(&engines, &EngineManager::changed, this, &EnginesTab::takeEngines);
    connect(&context_.loc, &LocalizationManager::changed, this, &EnginesTab::retranslate);
}

void EnginesTab::setCheckingEngine(bool isChecking) {
    checking_->setVisible(isChecking);
}

EngineRow* EnginesTab::addRow(int index) {
    auto* row = new EngineRow(context_.engines.availableEngines().at(index), context_);
    list_->insertWidget(index, row);
    rows_.insert(index, row);
    connect(row, &EngineRow::editingToggled, this, [this, row](bool isEditing) {
        state_.editingEngineEloId = isEditing ? std::optional(row->engine().id) : std::nullopt;
        showEditor();
    });
    connect(row, &EngineRow::removalRequested, this, [this, row] { remove(row); });
    return row;
}

void EnginesTab::takeEngines() {
    const QList<EngineConfiguration>& engines = context_.engines.availableEngines();
    for (int index = 0; index < engines.size(); ++index) {
        int at = index;
        while (at < rows_.size() && rows_[at]->engine().id != engines[index].id)
            ++at;
        if (at == rows_.size()) {
            addRow(index);
            continue;
        }
        if (at != index) {
            rows_.move(at, index);
            list_->removeWidget(rows_[index]);
            list_->insertWidget(index, rows_[index]);
        }
        rows_[index]->setEngine(engines[index]);
    }
    while (rows_.size() > engines.size()) {
        EngineRow* row = rows_.takeLast();
        list_->removeWidget(row);
        row->hide();
        // One of its own buttons may be what led here.
        row->deleteLater();
    }
    // The notice of an empty list holds the button itself.
    noticeCard_->setVisible(engines.isEmpty());
    add_->setVisible(!engines.isEmpty());
    showEditor();
}

void EnginesTab::showEditor() {
    for (EngineRow* row : rows_)
        row->setEditing(state_.editingEngineEloId && *state_.editingEngineEloId == row->engine().id);
}

void EnginesTab::remove(EngineRow* row) {
    const auto index = rows_.indexOf(row);
    const bool hadKeyboard = focusWidget() && row->isAncestorOf(focusWidget()) && focusWidget()->hasFocus();
    if (state_.editingEngineEloId == row->engine().id) state_.editingEngineEloId.reset();
    context_.engines.removeEngine(row->engine());
    if (!hadKeyboard) return;
    // The keyboard stays in the list.
    if (index >= 0 && index < rows_.size()) {
        rows_[index]->focusRemoval();
    } else if (!rows_.isEmpty()) {
        rows_.last()->focusRemoval();
    } else {
        scan_->setFocus(Qt::TabFocusReason);
    }
}

void EnginesTab::retranslate() {
    const auto& loc = context_.loc;
    head_->setTitle(loc.text("engines_installed"));
    scan_->setLabel(loc.text("scan_engines"));
    add_->setLabel(loc.text("add_engine"));
    checking_->setText(loc.text(ExtraText::checkingEngine));
}

}  // namespace orlix
