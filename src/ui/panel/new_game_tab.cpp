#include "ui/panel/new_game_tab.h"

#include <QSignalBlocker>
#include <QVBoxLayout>

#include "engine/engine_manager.h"
#include "game/game_manager.h"
#include "l10n/localization_manager.h"
#include "ui/controls/card.h"
#include "ui/controls/choice_group.h"
#include "ui/controls/stepper.h"
#include "ui/controls/value_slider.h"
#include "ui/localized_text.h"
#include "ui/panel/engine_notice.h"
#include "ui/panel/engine_seat_editor.h"
#include "ui/panel/scroll_page.h"

namespace orlix {

namespace {

constexpr int mostMinutes = 600;
constexpr int mostIncrement = 180;
constexpr int longestMoveTimeTenths = 300;
constexpr int deepestSearch = 40;

template <typename T, std::size_t count>
int indexOf(const std::array<T, count>& all, T value) {
    for (std::size_t index = 0; index < count; ++index) {
        if (all[index] == value) return static_cast<int>(index);
    }
    return 0;
}

/// The chip of `preset`. Three are written the same in every language.
QString chipText(TimeControlPreset preset, const LocalizationManager& loc) {
    if (preset == TimeControlPreset::classical30_0) return QStringLiteral("Klassisch 30 min");
    if (preset == TimeControlPreset::unlimited) return QStringLiteral("Ohne Uhr");
    if (preset == TimeControlPreset::custom) return QStringLiteral("Custom");
    return loc.text(locKey(preset));
}

QVBoxLayout* stack(QWidget* widget, int spacing) {
    auto* layout = new QVBoxLayout(widget);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(spacing);
    return layout;
}

}  // namespace

NewGameTab::NewGameTab(const PanelContext& context, PanelState& state, QWidget* parent)
    : QWidget(parent), context_(context), state_(state) {
    auto* layout = stack(this, 0);
    auto* page = new ScrollPage(context.theme, this);
    content_ = page->content();
    buildModeCard();
    buildTimeCard();
    buildEngineCard();
    buildThinkingCard();
    content_->addStretch(1);
    layout->addWidget(page, 1);
    layout->addWidget(new ScrollPageEdge(*page, context.theme, this));
    layout->addLayout(buildFooter());

    retranslate();
    open();
    connect(&context_.loc, &LocalizationManager::changed, this, &NewGameTab::retranslate);
    connect(&context_.game, &GameManager::changed, this, &NewGameTab::followForce);
    connect(&context_.engines, &EngineManager::changed, this, [this] {
        followForce();
        replaceMissingEngines();
        for (EngineSeatEditor* editor : {opponent_, white_, black_})
            editor->refreshEngines();
        showDraft();
    });
}

Card* NewGameTab::addCard(const char* titleKey) {
    auto* card = new Card(context_.theme, this);
    titles_.append({card, titleKey});
    content_->addWidget(card);
    return card;
}

QLayout* NewGameTab::buildFooter() {
    start_ = new PanelButton(PanelButton::Look::primary, PanelButton::Arrangement::row, context_.theme, this);
    start_->setSymbol(Icon::play);
    start_->setObjectName(QStringLiteral("startGame"));
    auto* footer = new QVBoxLayout;
    footer->setContentsMargins(metrics::space4, metrics::space3, metrics::space4, metrics::space3);
    footer->addWidget(start_);
    connect(start_, &QAbstractButton::clicked, this, &NewGameTab::start);
    return footer;
}

void NewGameTab::buildModeCard() {
    Card* card = addCard("game_mode");
    modes_ = new ChoiceGroup(ChoiceGroup::Layout::segments, static_cast<int>(allGameModes.size()),
                             context_.theme, card);
    modes_->setObjectName(QStringLiteral("modes"));
    card->content()->addWidget(modes_);
    connect(modes_, &ChoiceGroup::chosen, this, [this](int index) {
        mode_ = allGameModes[static_cast<std::size_t>(index)];
        showDraft();
    });

    colorRow_ = new QWidget(card);
    auto* row = stack(colorRow_, 6);
    row->addWidget(new LocalizedText(QStringLiteral("player_color"), TextStyle::body, ColorRole::secondary,
                                     context_.loc, context_.theme, colorRow_));
    colors_ = new ChoiceGroup(ChoiceGroup::Layout::segments, static_cast<int>(allPlayerColorChoices.size()),
                              context_.theme, colorRow_);
    colors_->setObjectName(QStringLiteral("colors"));
    colors_->setSymbol(indexOf(allPlayerColorChoices, PlayerColorChoice::random), Icon::dice);
    row->addWidget(colors_);
    card->content()->addWidget(colorRow_);
    connect(colors_, &ChoiceGroup::chosen, this,
            [this](int index) { color_ = allPlayerColorChoices[static_cast<std::size_t>(index)]; });
}

void NewGameTab::buildTimeCard() {
    Card* card = addCard("time_control");
    presets_ = new ChoiceGroup(ChoiceGroup::Layout::chips, static_cast<int>(allTimeControlPresets.size()),
                               context_.theme, card);
    presets_->setObjectName(QStringLiteral("presets"));
    card->content()->addWidget(presets_);
    connect(presets_, &ChoiceGroup::chosen, this, [this](int index) {
        preset_ = allTimeControlPresets[static_cast<std::size_t>(index)];
        showDraft();
    });

    customRows_ = new QWidget(card);
    auto* rows = stack(customRows_, metrics::space2);
    const auto addStepper = [&](const char* key, int least, int most, const char* name) {
        auto* line = new QHBoxLayout;
        line->setSpacing(metrics::space2);
        line->addWidget(new LocalizedText(QString::fromLatin1(key), TextStyle::body, ColorRole::secondary,
                                          context_.loc, context_.theme, customRows_),
                        1);
        auto* stepper = new Stepper(least, most, context_.theme, customRows_);
        stepper->setObjectName(QString::fromLatin1(name));
        line->addWidget(stepper);
        rows->addLayout(line);
        return stepper;
    };
    // A clock that starts at zero has run out before the first move.
    minutes_ = addStepper("base_time_min", 1, mostMinutes, "customMinutes");
    increment_ = addStepper("increment_sec", 0, mostIncrement, "customIncrement");
    card->content()->addWidget(customRows_);
    connect(minutes_, &Stepper::valueEdited, this, [this](int value) { state_.customBaseMinutes = value; });
    connect(increment_, &Stepper::valueEdited, this,
            [this](int value) { state_.customIncrementSeconds = value; });
}

void NewGameTab::buildEngineCard() {
    engineCard_ = addCard("selected_engine");
    notice_ = new EngineNotice(context_, engineCard_);
    engineCard_->content()->addWidget(notice_);
    connect(notice_, &EngineNotice::addRequested, this, &NewGameTab::addEngineRequested);

    opponent_ = new EngineSeatEditor(EngineSeatEditor::Role::opponent, context_, engineCard_);
    engineCard_->content()->addWidget(opponent_);
    sides_ = new QWidget(engineCard_);
    auto* column = stack(sides_, metrics::space4);
    white_ = new EngineSeatEditor(EngineSeatEditor::Role::white, context_, sides_);
    black_ = new EngineSeatEditor(EngineSeatEditor::Role::black, context_, sides_);
    column->addWidget(white_);
    column->addWidget(black_);
    column->addWidget(new LocalizedText(QStringLiteral("independent_elo_info"), TextStyle::caption,
                                        ColorRole::secondary, context_.loc, context_.theme, sides_));
    engineCard_->content()->addWidget(sides_);
    connect(opponent_, &EngineSeatEditor::edited, this, [this] {
        state_.opponentLimitElo = opponent_->seat().limitElo;
        state_.opponentElo = opponent_->seat().elo;
        dropCachedSizes();
    });
    connect(white_, &EngineSeatEditor::edited, this, [this] {
        state_.whiteLimitElo = white_->seat().limitElo;
        state_.whiteElo = white_->seat().elo;
        dropCachedSizes();
    });
    connect(black_, &EngineSeatEditor::edited, this, [this] {
        state_.blackLimitElo = black_->seat().limitElo;
        state_.blackElo = black_->seat().elo;
        dropCachedSizes();
    });
}

void NewGameTab::buildThinkingCard() {
    thinkingCard_ = addCard("engine_thinking_time");
    thinking_ = new ChoiceGroup(ChoiceGroup::Layout::segments, 3, context_.theme, thinkingCard_);
    thinking_->setObjectName(QStringLiteral("thinking"));
    thinkingCard_->content()->addWidget(thinking_);
    connect(thinking_, &ChoiceGroup::chosen, this, [this](int index) {
        state_.thinkingModeSelection = static_cast<ThinkingModeSelection>(index);
        showThinking();
    });

    thinkingRow_ = new QWidget(thinkingCard_);
    auto* rows = stack(thinkingRow_, 6);
    auto* line = new QHBoxLayout;
    line->setSpacing(metrics::space2);
    thinkingCaption_ = new TextLabel(TextStyle::body, ColorRole::secondary, context_.theme, thinkingRow_);
    thinkingValue_ = new TextLabel(TextStyle::body, ColorRole::text, context_.theme, thinkingRow_);
    thinkingValue_->setSingleLine(true);
    thinkingValue_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    thinkingValue_->setObjectName(QStringLiteral("thinkingValue"));
    line->addWidget(thinkingCaption_, 1);
    line->addWidget(thinkingValue_);
    rows->addLayout(line);
    const auto addSlider = [&](int least, int most, int page, const char* name) {
        auto* slider = new ValueSlider(context_.theme, thinkingRow_);
        slider->setRange(least, most);
        slider->setPageStep(page);
        slider->setObjectName(QString::fromLatin1(name));
        rows->addWidget(slider);
        return slider;
    };
    moveTime_ = addSlider(1, longestMoveTimeTenths, 10, "moveTime");
    depth_ = addSlider(1, deepestSearch, 5, "depth");
    thinkingCard_->content()->addWidget(thinkingRow_);
    connect(moveTime_, &QAbstractSlider::valueChanged, this, [this](int tenths) {
        state_.fixedMoveTimeSeconds = tenths / 10.0;
        showThinking();
    });
    connect(depth_, &QAbstractSlider::valueChanged, this, [this](int depth) {
        state_.fixedSearchDepth = depth;
        showThinking();
    });
}

void NewGameTab::open() {
    inForce_ = NewGameSettings::inForce(context_.game, context_.engines);
    mode_ = inForce_.mode;
    color_ = inForce_.color;
    takeTime(inForce_.time);
    takeThinkingMode(inForce_.time.engineThinkingMode);
    opponent_->setSeat(inForce_.opponent);
    white_->setSeat(inForce_.white);
    black_->setSeat(inForce_.black);
    takeSeats();
    showDraft();
}

void NewGameTab::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    followForce();
}

void NewGameTab::followForce() {
    if (isStarting_ || !isVisible()) return;
    const NewGameSettings now = NewGameSettings::inForce(context_.game, context_.engines);
    if (now == inForce_) return;
    // Only what was changed elsewhere replaces what is being chosen here.
    if (now.mode != inForce_.mode) mode_ = now.mode;
    if (now.color != inForce_.color) color_ = now.color;
    if (now.time != inForce_.time) {
        takeTime(now.time);
        takeThinkingMode(now.time.engineThinkingMode);
    }
    if (now.opponent != inForce_.opponent) opponent_->setSeat(now.opponent);
    if (now.white != inForce_.white) white_->setSeat(now.white);
    if (now.black != inForce_.black) black_->setSeat(now.black);
    inForce_ = now;
    takeSeats();
    showDraft();
}

void NewGameTab::replaceMissingEngines() {
    const NewGameSettings now = NewGameSettings::inForce(context_.game, context_.engines);
    const auto replace = [this](EngineSeatEditor* editor, const EngineSeat& inForce) {
        EngineSeat seat = editor->seat();
        for (const EngineConfiguration& engine : context_.engines.availableEngines()) {
            if (engine.id == seat.engine) return;
        }
        seat.engine = inForce.engine;
        editor->setSeat(seat);
    };
    replace(opponent_, now.opponent);
    replace(white_, now.white);
    replace(black_, now.black);
}

void NewGameTab::takeTime(const TimeControlConfig& time) {
    preset_ = time.preset;
    state_.customBaseMinutes = static_cast<double>(time.customBaseMinutes);
    state_.customIncrementSeconds = static_cast<double>(time.customIncrementSeconds);
}

void NewGameTab::takeThinkingMode(const EngineThinkingMode& mode) {
    thinkingMode_ = mode;
    if (const auto* time = std::get_if<FixedMoveTime>(&mode)) {
        state_.thinkingModeSelection = ThinkingModeSelection::fixedMoveTime;
        state_.fixedMoveTimeSeconds = time->seconds;
    } else if (const auto* depth = std::get_if<FixedDepth>(&mode)) {
        state_.thinkingModeSelection = ThinkingModeSelection::fixedDepth;
        state_.fixedSearchDepth = static_cast<double>(depth->depth);
    } else {
        state_.thinkingModeSelection = ThinkingModeSelection::gameClock;
    }
}

void NewGameTab::takeSeats() {
    state_.opponentLimitElo = opponent_->seat().limitElo;
    state_.opponentElo = opponent_->seat().elo;
    state_.whiteLimitElo = white_->seat().limitElo;
    state_.whiteElo = white_->seat().elo;
    state_.blackLimitElo = black_->seat().limitElo;
    state_.blackElo = black_->seat().elo;
}

void NewGameTab::updateEngineThinkingMode() {
    switch (state_.thinkingModeSelection) {
        case ThinkingModeSelection::gameClock: thinkingMode_ = GameClock{}; break;
        case ThinkingModeSelection::fixedMoveTime:
            thinkingMode_ = FixedMoveTime{state_.fixedMoveTimeSeconds};
            break;
        case ThinkingModeSelection::fixedDepth:
            thinkingMode_ = FixedDepth{qRound64(state_.fixedSearchDepth)};
            break;
    }
}

NewGameSettings NewGameTab::draft() const {
    NewGameSettings settings;
    settings.mode = mode_;
    settings.color = color_;
    settings.time.preset = preset_;
    settings.time.customBaseMinutes = qRound64(state_.customBaseMinutes);
    settings.time.customIncrementSeconds = qRound64(state_.customIncrementSeconds);
    settings.time.engineThinkingMode = thinkingMode_;
    settings.opponent = {opponent_->seat().engine, state_.opponentLimitElo, state_.opponentElo};
    settings.white = {white_->seat().engine, state_.whiteLimitElo, state_.whiteElo};
    settings.black = {black_->seat().engine, state_.blackLimitElo, state_.blackElo};
    return settings;
}

void NewGameTab::showDraft() {
    modes_->setCurrentIndex(indexOf(allGameModes, mode_));
    colors_->setCurrentIndex(indexOf(allPlayerColorChoices, color_));
    presets_->setCurrentIndex(indexOf(allTimeControlPresets, preset_));
    minutes_->setValue(qRound(state_.customBaseMinutes));
    increment_->setValue(qRound(state_.customIncrementSeconds));

    const bool hasEngines = !context_.engines.availableEngines().isEmpty();
    const bool isAgainstEngine = mode_ == GameMode::humanVsEngine;
    colorRow_->setVisible(isAgainstEngine);
    customRows_->setVisible(preset_ == TimeControlPreset::custom);
    engineCard_->setVisible(mode_ != GameMode::humanVsHuman);
    notice_->setVisible(!hasEngines);
    opponent_->setVisible(hasEngines && isAgainstEngine);
    sides_->setVisible(hasEngines && mode_ == GameMode::engineVsEngine);
    thinkingCard_->setVisible(mode_ != GameMode::humanVsHuman);
    showThinking();
}

void NewGameTab::showThinking() {
    const ThinkingModeSelection selection = state_.thinkingModeSelection;
    thinking_->setCurrentIndex(static_cast<int>(selection));
    const bool isTime = selection == ThinkingModeSelection::fixedMoveTime;
    moveTime_->setVisible(isTime);
    depth_->setVisible(!isTime);
    thinkingRow_->setVisible(selection != ThinkingModeSelection::gameClock);
    {
        const QSignalBlocker quietTime(moveTime_);
        const QSignalBlocker quietDepth(depth_);
        moveTime_->setValue(qRound(state_.fixedMoveTimeSeconds * 10));
        depth_->setValue(qRound(state_.fixedSearchDepth));
    }
    moveTime_->update();
    depth_->update();
    thinkingCaption_->setText(context_.loc.text(isTime ? "engine_fixed_movetime" : "fixed_depth"));
    thinkingValue_->setText(isTime ? QString::number(state_.fixedMoveTimeSeconds, 'f', 1)
                                   : QStringLiteral("Tiefe: ") +
                                         QString::number(qRound64(state_.fixedSearchDepth)));
    dropCachedSizes();
}

// Hiding a child drops the cached sizes of its own parent only; those of the cards stand further up, and a
// card would stay as high as it was.
void NewGameTab::dropCachedSizes() {
    for (QWidget* group : {colorRow_, customRows_, thinkingRow_, sides_})
        group->updateGeometry();
    for (EngineSeatEditor* editor : {opponent_, white_, black_}) {
        // Its rows keep the height of a caption that wrapped differently until they are laid out anew.
        editor->layout()->activate();
        editor->updateGeometry();
    }
    for (const auto& title : titles_)
        title.first->updateGeometry();
}

void NewGameTab::retranslate() {
    const LocalizationManager& loc = context_.loc;
    for (const auto& title : titles_)
        title.first->setTitle(loc.text(title.second));
    QStringList labels;
    for (const GameMode mode : allGameModes)
        labels.append(loc.text(QString(locKey(mode))));
    modes_->setLabels(labels);
    modes_->setAccessibleName(loc.text("game_mode"));
    labels.clear();
    for (const PlayerColorChoice color : allPlayerColorChoices)
        labels.append(loc.text(QString(locKey(color))));
    colors_->setLabels(labels);
    colors_->setAccessibleName(loc.text("player_color"));
    labels.clear();
    for (const TimeControlPreset preset : allTimeControlPresets)
        labels.append(chipText(preset, loc));
    presets_->setLabels(labels);
    presets_->setAccessibleName(loc.text("time_control"));
    thinking_->setLabels({loc.text("use_game_clock"), loc.text("fixed_movetime"), loc.text("fixed_depth")});
    thinking_->setAccessibleName(loc.text("engine_thinking_time"));
    minutes_->setCaption(loc.text("base_time_min"));
    increment_->setCaption(loc.text("increment_sec"));
    moveTime_->setAccessibleName(loc.text("engine_fixed_movetime"));
    depth_->setAccessibleName(loc.text("fixed_depth"));
    start_->setLabel(loc.text("btn_start_game"));
    showThinking();
}

void NewGameTab::start() {
    updateEngineThinkingMode();
    isStarting_ = true;
    draft().apply(context_.game, context_.engines);
    context_.game.startNewGame();
    isStarting_ = false;
    open();
    Q_EMIT started();
}

}  // namespace orlix
