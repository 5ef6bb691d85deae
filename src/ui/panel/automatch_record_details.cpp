#include "ui/panel/automatch_record_details.h"

#include <QGridLayout>
#include <QLocale>
#include <QPainter>

#include "l10n/localization_manager.h"
#include "ui/controls/panel_button.h"
#include "ui/controls/text_label.h"
#include "ui/panel/automatch_formats.h"
#include "ui/panel/elided_label.h"
#include "ui/theme.h"

namespace orlix {

namespace {
constexpr int topPadding = 10;
}

AutomatchRecordDetails::AutomatchRecordDetails(const PanelContext& context, QWidget* parent)
    : QWidget(parent), context_(context) {
    Theme& theme = context.theme;
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, topPadding, 0, 0);
    layout->setSpacing(metrics::space1);
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(metrics::space2);
    grid->setVerticalSpacing(2);
    grid->setColumnStretch(1, 1);
    for (std::size_t side = 0; side < players_.size(); ++side) {
        const int line = static_cast<int>(side);
        Player& player = players_[side];
        player.color = new TextLabel(TextStyle::body, ColorRole::secondary, theme, this);
        player.color->setSingleLine(true);
        player.name = new ElidedLabel(TextStyle::bodyStrong, ColorRole::text, theme, this);
        player.name->setObjectName(side == 0 ? QStringLiteral("recordWhite") : QStringLiteral("recordBlack"));
        player.elo = new TextLabel(TextStyle::body, ColorRole::secondary, theme, this);
        player.elo->setSingleLine(true);
        player.elo->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        grid->addWidget(player.color, line, 0);
        grid->addWidget(player.name, line, 1);
        grid->addWidget(player.elo, line, 2);
    }
    layout->addLayout(grid);
    outcome_ = new TextLabel(TextStyle::body, ColorRole::text, theme, this);
    outcome_->setObjectName(QStringLiteral("recordOutcome"));
    facts_ = new TextLabel(TextStyle::caption, ColorRole::secondary, theme, this);
    facts_->setObjectName(QStringLiteral("recordFacts"));
    layout->addWidget(outcome_);
    layout->addWidget(facts_);
    layout->addSpacing(metrics::space1);

    auto* commands = new QHBoxLayout;
    commands->setSpacing(metrics::space2);
    const auto add = [&](Icon icon, const char* name) {
        auto* button = new PanelButton(PanelButton::Look::onCard, PanelButton::Arrangement::row, theme, this);
        button->setSymbol(icon);
        button->setObjectName(QString::fromLatin1(name));
        commands->addWidget(button);
        return button;
    };
    load_ = add(Icon::replay, "loadRecord");
    copy_ = add(Icon::copy, "copyRecord");
    layout->addLayout(commands);
    connect(load_, &QAbstractButton::clicked, this, &AutomatchRecordDetails::loadRequested);
    connect(copy_, &QAbstractButton::clicked, this, &AutomatchRecordDetails::copyRequested);
    retranslate();
    connect(&context_.loc, &LocalizationManager::changed, this, &AutomatchRecordDetails::retranslate);
}

void AutomatchRecordDetails::setRecord(const AutomatchGameRecord& record) {
    if (record_ && record_->id == record.id) return;
    record_ = record;
    showRecord();
}

void AutomatchRecordDetails::showRecord() {
    if (!record_) return;
    const AutomatchGameRecord& record = *record_;
    const auto show = [](const Player& player, const QString& name, const std::optional<qint64>& elo) {
        player.name->setText(name);
        player.elo->setText(eloCapText(elo.has_value(), elo.value_or(0)));
    };
    show(players_[0], record.whiteEngineName, record.whiteEngineElo);
    show(players_[1], record.blackEngineName, record.blackEngineElo);
    outcome_->setText(record.resultBadgeText() + QStringLiteral(" · ") + record.reason);
    const QLocale locale(rawValue(context_.loc.currentLanguage()));
    facts_->setText(QStringLiteral("%1: %2 · %3")
                        .arg(context_.loc.text("moves_count"))
                        .arg(record.movesCount)
                        .arg(locale.toString(record.timestamp.toLocalTime(), QLocale::ShortFormat)));
    setAccessibleName(automatchGameTitle(record.gameNumber));
    updateGeometry();
}

void AutomatchRecordDetails::retranslate() {
    const LocalizationManager& loc = context_.loc;
    players_[0].color->setText(loc.text("white_player"));
    players_[1].color->setText(loc.text("black_player"));
    load_->setLabel(loc.text("automatch_load_game"));
    copy_->setLabel(loc.text("btn_copy_pgn"));
    showRecord();
}

void AutomatchRecordDetails::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(0, 0, width(), 1, context_.theme.color(ColorRole::hairline));
}

}  // namespace orlix
