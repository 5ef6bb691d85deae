#include "ui/panel/automatch_configuration.h"

#include <QSignalBlocker>
#include <algorithm>
#include <array>

#include "automatch/automatch_manager.h"
#include "engine/engine_manager.h"
#include "l10n/localization_manager.h"
#include "ui/controls/choice_group.h"
#include "ui/controls/stepper.h"
#include "ui/controls/toggle_switch.h"
#include "ui/controls/value_slider.h"
#include "ui/localized_text.h"
#include "ui/panel/automatch_engine_editor.h"
#include "ui/panel/automatch_formats.h"
#include "ui/panel/engine_notice.h"
#include "ui/panel/figure_label.h"
#include "ui/panel/icon_button.h"
#include "ui/panel/section_head.h"
#include "ui/theme.h"

namespace orlix {

namespace {

constexpr std::array<int, 5> gamePresets{2, 10, 20, 50, 100};

// The slider stands on tenths of a second.
constexpr int longestPause = 100;
constexpr int pauseStep = 5;

int presetOf(qint64 games) {
    const auto found = std::find(gamePresets.cbegin(), gamePresets.cend(), games);
    return found == gamePresets.cend() ? -1 : static_cast<int>(found - gamePresets.cbegin());
}

/// The same in every language.
QString partien() {
    return QStringLiteral(" Partien");
}

}  // namespace

AutomatchConfiguration::AutomatchConfiguration(const PanelContext& context, QWidget* parent)
    : Card(context.theme, parent),
      context_(context),
      head_(new SectionHead(Icon::automatch, context.theme, this)),
      unfold_(new IconButton(Icon::tune, IconButton::Look::plain, context.theme, this)) {
    unfold_->setObjectName(QStringLiteral("unfoldSettings"));
    unfold_->setCheckable(true);
    connect(unfold_, &QAbstractButton::clicked, this, [this](bool isOn) {
        isUnfolded_ = isOn;
        showParts();
    });
    head_->addTrailing(unfold_);
    content()->addWidget(head_);
    buildEngines();
    buildGames();
    buildColors();
    buildPause();
    retranslate();
    takeSeries();
    connect(&context_.loc, &LocalizationManager::changed, this, &AutomatchConfiguration::retranslate);
}

QWidget* AutomatchConfiguration::addLine() {
    auto* line = new QWidget(this);
    auto* layout = new QHBoxLayout(line);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(metrics::space2);
    content()->addWidget(line);
    return line;
}

void AutomatchConfiguration::buildEngines() {
    notice_ = new EngineNotice(context_, this);
    content()->addWidget(notice_);
    connect(notice_, &EngineNotice::addRequested, this, &AutomatchConfiguration::addEngineRequested);
    engine1_ = new AutomatchEngineEditor(AutomatchEngineEditor::Slot::engine1, context_, this);
    engine2_ = new AutomatchEngineEditor(AutomatchEngineEditor::Slot::engine2, context_, this);
    content()->addWidget(engine1_);
    content()->addWidget(engine2_);
}

void AutomatchConfiguration::buildGames() {
    AutomatchManager& series = context_.automatch;
    QWidget* line = addLine();
    addCaption(line, "automatch_games_count", 1);
    games_ = new Stepper(1, mostGames, context_.theme, line);
    games_->setObjectName(QStringLiteral("automatchGames"));
    gamesText_ = new FigureLabel(TextStyle::body, ColorRole::text, context_.theme, line);
    gamesText_->setObjectName(QStringLiteral("automatchGamesText"));
    line->layout()->addWidget(games_);
    line->layout()->addWidget(gamesText_);
    connect(games_, &Stepper::valueEdited, &series, [&series](int games) { series.setTotalGames(games); });

    presetLine_ = addLine();
    addCaption(presetLine_, "automatch_quick_games", 0)->setSingleLine(true);
    presets_ = new ChoiceGroup(ChoiceGroup::Layout::chips, static_cast<int>(gamePresets.size()),
                               context_.theme, presetLine_);
    presets_->setObjectName(QStringLiteral("automatchPresets"));
    QStringList labels;
    for (const int games : gamePresets)
        labels.append(QString::number(games));
    presets_->setLabels(labels);
    for (int index = 0; index < labels.size(); ++index)
        presets_->button(index)->setAccessibleName(labels[index] + partien());
    presetLine_->layout()->addWidget(presets_);
    connect(presets_, &ChoiceGroup::chosen, &series,
            [&series](int index) { series.setTotalGames(gamePresets[static_cast<std::size_t>(index)]); });
}

void AutomatchConfiguration::buildColors() {
    AutomatchManager& series = context_.automatch;
    colorLine_ = addLine();
    addCaption(colorLine_, "automatch_alternate_colors", 1);
    alternate_ = new ToggleSwitch(context_.theme, colorLine_);
    alternate_->setObjectName(QStringLiteral("alternateColors"));
    colorLine_->layout()->addWidget(alternate_);
    connect(alternate_, &QAbstractButton::toggled, &series,
            [&series](bool isOn) { series.setAlternateColors(isOn); });
}

void AutomatchConfiguration::buildPause() {
    AutomatchManager& series = context_.automatch;
    pauseLine_ = addLine();
    addCaption(pauseLine_, "automatch_pause_sec", 2);
    pause_ = new ValueSlider(context_.theme, pauseLine_);
    pause_->setObjectName(QStringLiteral("automatchPause"));
    pause_->setRange(0, longestPause);
    pause_->setSingleStep(pauseStep);
    pause_->setPageStep(4 * pauseStep);
    pauseText_ = new FigureLabel(TextStyle::body, ColorRole::text, context_.theme, pauseLine_);
    pauseText_->setObjectName(QStringLiteral("automatchPauseText"));
    auto* layout = static_cast<QHBoxLayout*>(pauseLine_->layout());
    layout->addWidget(pause_, 3);
    layout->addWidget(pauseText_);
    connect(pause_, &QAbstractSlider::valueChanged, &series,
            [&series](int tenths) { series.setPauseBetweenGamesSeconds(tenths / 10.0); });
}

TextLabel* AutomatchConfiguration::addCaption(QWidget* line, const char* key, int stretch) {
    auto* caption = new LocalizedText(QString::fromLatin1(key), TextStyle::body, ColorRole::secondary,
                                      context_.loc, context_.theme, line);
    static_cast<QHBoxLayout*>(line->layout())->addWidget(caption, stretch);
    return caption;
}

void AutomatchConfiguration::takeSeries() {
    const AutomatchManager& series = context_.automatch;
    engine1_->takeSeries();
    engine2_->takeSeries();
    // A number that is being typed is in force already; one outside the field's range is only written beside.
    if (games_->value() != series.totalGames()) games_->setValue(static_cast<int>(series.totalGames()));
    const int preset = presetOf(series.totalGames());
    if (presets_->currentIndex() != preset) presets_->setCurrentIndex(preset);
    if (alternate_->isChecked() != series.alternateColors()) {
        const QSignalBlocker quiet(alternate_);
        alternate_->setChecked(series.alternateColors());
        alternate_->update();
    }
    const int tenths = qRound(series.pauseBetweenGamesSeconds() * 10);
    if (pause_->value() != tenths) {
        const QSignalBlocker quiet(pause_);
        pause_->setValue(tenths);
        pause_->update();
    }
    pauseText_->setText(secondsText(series.pauseBetweenGamesSeconds()));
    showParts();
}

void AutomatchConfiguration::showParts() {
    const bool isActive = context_.automatch.isAutomatchActive();
    if (isActive) isUnfolded_ = false;
    unfold_->setChecked(isUnfolded_);
    const bool hasEngines = !context_.engines.availableEngines().isEmpty();
    gamesText_->setText(isActive ? QString::number(context_.automatch.totalGames()) + partien() : partien());
    const bool isOpen = isUnfolded_ && !isActive;
    const std::pair<QWidget*, bool> parts[] = {
        {head_, !isActive},
        {notice_, !isActive && !hasEngines},
        {engine1_, isOpen && hasEngines},
        {engine2_, isOpen && hasEngines},
        {games_, !isActive},
        {presetLine_, isOpen},
        {colorLine_, isOpen || isActive},
        {pauseLine_, isOpen || isActive},
    };
    for (const auto& [part, isShown] : parts) {
        if (part->isHidden() != isShown) continue;
        QWidget* focus = window()->focusWidget();
        if (!isShown && focus && part->isAncestorOf(focus)) focus->clearFocus();
        part->setVisible(isShown);
        // A line notices that its part is gone; the card that holds the line would keep its height.
        part->parentWidget()->updateGeometry();
        updateGeometry();
    }
}

void AutomatchConfiguration::retranslate() {
    const LocalizationManager& loc = context_.loc;
    const QString title = loc.text("automatch_title");
    head_->setTitle(title);
    setAccessibleName(title);
    unfold_->setCaption(loc.text(ExtraText::seriesSettings));
    games_->setCaption(loc.text("automatch_games_count"));
    presets_->setAccessibleName(loc.text("automatch_games_count"));
    alternate_->setAccessibleName(loc.text("automatch_alternate_colors"));
    pause_->setAccessibleName(loc.text("automatch_pause_sec"));
}

}  // namespace orlix
