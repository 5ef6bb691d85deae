#include "ui/panel/game_tab.h"

#include <QVBoxLayout>

#include "automatch/automatch_manager.h"
#include "game/game_manager.h"
#include "l10n/extra_texts.h"
#include "l10n/localization_manager.h"
#include "ui/controls/card.h"
#include "ui/controls/panel_button.h"
#include "ui/move_list_view.h"
#include "ui/panel/automatch_widget.h"
#include "ui/theme.h"

namespace orlix {

GameTab::GameTab(const PanelContext& context, QWidget* parent)
    : QWidget(parent), context_(context), layout_(new QVBoxLayout(this)) {
    layout_->setContentsMargins(metrics::space4, metrics::space4, metrics::space4, metrics::space4);
    layout_->setSpacing(metrics::space3);
    auto* card = new Card(context.theme, this);
    // The list is opaque and square: it keeps clear of the card's round corners.
    card->content()->setContentsMargins(4, 6, 2, 6);
    card->content()->addWidget(new MoveListView(context.game, context.loc, context.theme, card));
    layout_->addWidget(card, 1);
    takeSeries();
    takeGame();
    connect(&context_.automatch, &AutomatchManager::changed, this, &GameTab::takeSeries);
    connect(&context_.game, &GameManager::changed, this, &GameTab::takeGame);
    connect(&context_.loc, &LocalizationManager::changed, this, &GameTab::retranslate);
}

void GameTab::takeSeries() {
    if (series_ || !context_.automatch.isAutomatchActive()) return;
    series_ = new AutomatchWidget(context_, this);
    layout_->insertWidget(0, series_);
    series_->lower();  // assistive technology reads in the stacking order
}

void GameTab::takeGame() {
    const bool isInspecting = context_.game.isInspectingPast();
    if (isInspecting && !back_) {
        back_ = new PanelButton(PanelButton::Look::secondary, PanelButton::Arrangement::row, context_.theme,
                                this);
        back_->setObjectName(QStringLiteral("showLivePosition"));
        back_->setSymbol(Icon::resume);
        layout_->addWidget(back_);
        GameManager& game = context_.game;
        connect(back_, &QAbstractButton::clicked, &game, [&game] { game.inspectMove(std::nullopt); });
        retranslate();
    }
    if (back_) back_->setVisible(isInspecting);
}

void GameTab::retranslate() {
    if (back_) back_->setLabel(extraText(context_.loc.currentLanguage(), ExtraText::showLivePosition));
}

}  // namespace orlix
