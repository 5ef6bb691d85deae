#include "ui/panel/automatch_scoreboard.h"

#include "automatch/automatch_manager.h"
#include "l10n/localization_manager.h"
#include "ui/controls/text_label.h"
#include "ui/panel/automatch_formats.h"
#include "ui/panel/automatch_score_figures.h"
#include "ui/panel/figure_label.h"
#include "ui/panel/section_head.h"
#include "ui/theme.h"

namespace orlix {

namespace {

QHBoxLayout* addLine(Card* card, QWidget* first, QWidget* second) {
    auto* line = new QHBoxLayout;
    line->setSpacing(metrics::space2);
    line->addWidget(first, 1);
    line->addWidget(second);
    card->content()->addLayout(line);
    return line;
}

}  // namespace

AutomatchScoreboard::AutomatchScoreboard(const PanelContext& context, QWidget* parent)
    : Card(context.theme, parent),
      context_(context),
      head_(new SectionHead(Icon::chart, context.theme, this)),
      games_(new FigureLabel(TextStyle::sectionHead, ColorRole::secondary, context.theme, this)),
      figures_(new AutomatchScoreFigures(context, this)),
      state_(new TextLabel(TextStyle::bodyStrong, ColorRole::secondary, context.theme, this)),
      countdown_(new FigureLabel(TextStyle::bodyStrong, ColorRole::accent, context.theme, this)),
      verdict_(new TextLabel(TextStyle::body, ColorRole::text, context.theme, this)),
      strength_(new TextLabel(TextStyle::caption, ColorRole::secondary, context.theme, this)),
      average_(new FigureLabel(TextStyle::caption, ColorRole::secondary, context.theme, this)) {
    games_->setObjectName(QStringLiteral("gamesPlayed"));
    state_->setObjectName(QStringLiteral("seriesState"));
    countdown_->setObjectName(QStringLiteral("countdown"));
    verdict_->setObjectName(QStringLiteral("matchFinishedReason"));
    strength_->setObjectName(QStringLiteral("matchStrength"));
    average_->setObjectName(QStringLiteral("averageTime"));
    average_->setSymbol(Icon::clock);
    content()->setSpacing(metrics::space2);
    // Its room is kept, so that nothing moves when a game ends.
    QSizePolicy policy = countdown_->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    countdown_->setSizePolicy(policy);
    head_->addTrailing(games_);
    content()->addWidget(head_);
    content()->addWidget(figures_);
    addLine(this, state_, countdown_);
    content()->addWidget(verdict_);
    addLine(this, strength_, average_);
    retranslate();
    connect(&context_.loc, &LocalizationManager::changed, this, &AutomatchScoreboard::retranslate);
}

void AutomatchScoreboard::takeSeries() {
    const AutomatchManager& series = context_.automatch;
    games_->setText(gamesText(series.history().size(), series.totalGames()));
    figures_->setValues({series.engine1DisplayName(),
                         eloCapText(series.engine1LimitElo(), series.engine1Elo()),
                         series.engine2DisplayName(),
                         eloCapText(series.engine2LimitElo(), series.engine2Elo()), series.score()});
    showState();
    const bool hasVerdict = series.matchFinishedReason().has_value();
    if (hasVerdict) verdict_->setText(*series.matchFinishedReason());
    if (verdict_->isHidden() == hasVerdict) {
        verdict_->setVisible(hasVerdict);
        updateGeometry();
    }
    strength_->setText(strengthText(series.score()));
    const std::optional<double> average = series.averageGameSeconds();
    average_->setText(average ? secondsText(*average) : automatchDash());
}

void AutomatchScoreboard::showState() {
    const AutomatchManager& series = context_.automatch;
    const LocalizationManager& loc = context_.loc;
    countdown_->setVisible(series.isCountingDown());
    if (series.isCountingDown()) {
        state_->setText(loc.text("automatch_next_game_in"));
        state_->setRole(ColorRole::accent);
        countdown_->setText(secondsText(series.countdownRemaining()));
    } else if (series.isAutomatchPaused()) {
        state_->setText(loc.text("automatch_paused"));
        state_->setRole(ColorRole::caution);
    } else if (series.isAutomatchActive()) {
        state_->setText(loc.text("automatch_in_progress"));
        state_->setRole(ColorRole::accent);
    } else if (series.matchFinishedReason()) {
        state_->setText(loc.text("automatch_finished"));
        state_->setRole(ColorRole::good);
    } else {
        // The same in every language.
        state_->setText(QStringLiteral("Bereit für Match-Start"));
        state_->setRole(ColorRole::secondary);
    }
}

void AutomatchScoreboard::retranslate() {
    const LocalizationManager& loc = context_.loc;
    const QString title = loc.text("automatch_score");
    head_->setTitle(title);
    setAccessibleName(title);
    games_->setCaption(title);
    strength_->setToolTip(loc.text(ExtraText::matchStrength));
    average_->setCaption(loc.text(ExtraText::averageGameTime));
    takeSeries();
}

}  // namespace orlix
