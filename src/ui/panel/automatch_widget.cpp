#include "ui/panel/automatch_widget.h"

#include <QGridLayout>

#include "automatch/automatch_manager.h"
#include "game/game_manager.h"
#include "l10n/localization_manager.h"
#include "ui/controls/panel_button.h"
#include "ui/controls/text_label.h"
#include "ui/panel/automatch_formats.h"
#include "ui/panel/elided_label.h"
#include "ui/panel/figure_label.h"
#include "ui/panel/figure_row.h"
#include "ui/panel/section_head.h"
#include "ui/player_info.h"
#include "ui/theme.h"

namespace orlix {

namespace {

constexpr std::array sides{PieceColor::white, PieceColor::black};

/// From White's side.
QString balanceText(qint64 balance) {
    return balance > 0 ? u'+' + QString::number(balance) : QString::number(balance);
}

}  // namespace

AutomatchWidget::AutomatchWidget(const PanelContext& context, QWidget* parent)
    : Card(context.theme, parent),
      context_(context),
      head_(new SectionHead(Icon::automatch, context.theme, this)),
      games_(new FigureLabel(TextStyle::body, ColorRole::secondary, context.theme, this)),
      figures_(new FigureRow(figureCount, context.theme, this)),
      countdown_(new FigureLabel(TextStyle::body, ColorRole::accent, context.theme, this)),
      stop_(new PanelButton(PanelButton::Look::onCard, PanelButton::Arrangement::row, context.theme, this)) {
    setObjectName(QStringLiteral("automatchWidget"));
    games_->setObjectName(QStringLiteral("widgetGames"));
    figures_->setObjectName(QStringLiteral("widgetFigures"));
    countdown_->setObjectName(QStringLiteral("widgetCountdown"));
    stop_->setObjectName(QStringLiteral("widgetStop"));
    countdown_->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    countdown_->setShrinkable(true);
    stop_->setSymbol(Icon::stop);

    head_->addTrailing(games_);
    content()->addWidget(head_);
    buildPlayers();
    content()->addWidget(figures_);
    auto* line = new QHBoxLayout;
    line->setSpacing(metrics::space2);
    line->addWidget(countdown_, 1);
    line->addWidget(stop_);
    content()->addLayout(line);

    AutomatchManager& series = context_.automatch;
    connect(stop_, &QAbstractButton::clicked, &series, [&series] { series.stopAutomatch(); });
    retranslate();
    hide();
    takeSeries();
    connect(&series, &AutomatchManager::changed, this, &AutomatchWidget::takeSeries);
    connect(&context_.game, &GameManager::changed, this, &AutomatchWidget::takeGame);
    connect(&context_.game, &GameManager::enginesChanged, this, &AutomatchWidget::takeGame);
    connect(&context_.game, &GameManager::liveEvaluationChanged, this, &AutomatchWidget::takeEvaluation);
    connect(&context_.loc, &LocalizationManager::changed, this, &AutomatchWidget::retranslate);
}

void AutomatchWidget::buildPlayers() {
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(metrics::space2);
    grid->setVerticalSpacing(2);
    grid->setColumnStretch(1, 1);
    for (std::size_t side = 0; side < sides.size(); ++side) {
        Player& player = players_[side];
        player.color = new TextLabel(TextStyle::body, ColorRole::secondary, context_.theme, this);
        player.color->setSingleLine(true);
        player.name = new ElidedLabel(TextStyle::bodyStrong, ColorRole::text, context_.theme, this);
        player.name->setObjectName(side == 0 ? QStringLiteral("widgetWhite") : QStringLiteral("widgetBlack"));
        grid->addWidget(player.color, static_cast<int>(side), 0);
        grid->addWidget(player.name, static_cast<int>(side), 1);
    }
    content()->addLayout(grid);
}

void AutomatchWidget::showEvent(QShowEvent* event) {
    Card::showEvent(event);
    takeSeries();
    takeGame();
}

void AutomatchWidget::takeSeries() {
    const AutomatchManager& series = context_.automatch;
    if (series.isAutomatchActive() == isHidden()) {
        // Where the button goes away the keyboard does not move on by itself.
        if (stop_->hasFocus()) stop_->clearFocus();
        setVisible(series.isAutomatchActive());
    }
    if (!isVisible()) return;
    const LocalizationManager& loc = context_.loc;
    const QString state = loc.text(series.isAutomatchPaused() ? "automatch_paused" : "automatch_in_progress");
    head_->setTitle(state);
    setAccessibleName(state);
    games_->setText(loc.text("automatch_game_n") + gamesText(series.currentGameIndex(), series.totalGames()));
    figures_->setValue(score1, pointsText(series.engine1Wins(), series.draws()));
    figures_->setValue(score2, pointsText(series.engine2Wins(), series.draws()));
    // The same in every language. Its room is kept, so that nothing moves when a game ends.
    countdown_->setText(series.isCountingDown() ? QStringLiteral("Nächste Partie startet in ") +
                                                      secondsText(series.countdownRemaining())
                                                : QString());
}

void AutomatchWidget::takeGame() {
    if (!isVisible()) return;
    for (std::size_t side = 0; side < sides.size(); ++side)
        players_[side].name->setText(playerInfo(sides[side], context_.game).name);
    figures_->setValue(material, balanceText(context_.game.displayedBoard().materialScore()));
    figures_->setValue(moves, QString::number(context_.game.board().history.size()));
    takeEvaluation();
}

void AutomatchWidget::takeEvaluation() {
    if (isVisible()) figures_->setValue(evaluation, context_.game.liveEvaluation().formattedScore());
}

void AutomatchWidget::retranslate() {
    const LocalizationManager& loc = context_.loc;
    players_[0].color->setText(loc.text("white_player"));
    players_[1].color->setText(loc.text("black_player"));
    // The engines' numbers are the same in every language.
    figures_->setCaptions({loc.text(ExtraText::evaluation), loc.text("material_balance"),
                           loc.text("moves_count"), QStringLiteral("Engine 1"), QStringLiteral("Engine 2")});
    stop_->setLabel(loc.text("btn_stop_automatch"));
    stop_->setFixedWidth(stop_->sizeHint().width() + metrics::space2);
    takeSeries();
}

}  // namespace orlix
