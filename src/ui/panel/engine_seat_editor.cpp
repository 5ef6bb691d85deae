#include "ui/panel/engine_seat_editor.h"

#include <QSignalBlocker>
#include <QVBoxLayout>

#include "engine/engine_manager.h"
#include "l10n/localization_manager.h"
#include "ui/controls/choice_group.h"
#include "ui/controls/picker_button.h"
#include "ui/controls/toggle_switch.h"
#include "ui/controls/value_slider.h"
#include "ui/localized_text.h"
#include "ui/panel/elo_editor.h"

namespace orlix {

namespace {

constexpr int eloStep = 10;

/// The texts of a seat; a caption without a key is written the same in every language.
struct SeatTexts {
    const char* headKey;
    const char* switchKey;
    QString fixedStrengthCaption;
    const char* strengthCaptionKey;
    const char* name;
};

SeatTexts texts(EngineSeatEditor::Role role) {
    switch (role) {
        case EngineSeatEditor::Role::opponent:
            return {nullptr, "limit_elo", {}, "elo_opponent_engine", "opponent"};
        case EngineSeatEditor::Role::white:
            return {"white_engine", "elo_white_engine", QStringLiteral("Weiß Stärke:"), nullptr, "white"};
        case EngineSeatEditor::Role::black:
            return {"black_engine", "elo_black_engine", QStringLiteral("Schwarz Stärke:"), nullptr, "black"};
    }
    return {};
}

}  // namespace

EngineSeatEditor::EngineSeatEditor(Role role, const PanelContext& context, QWidget* parent)
    : QWidget(parent), role_(role), context_(context) {
    const SeatTexts seatTexts = texts(role);
    const QString name = QString::fromLatin1(seatTexts.name);
    Theme& theme = context.theme;
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(metrics::space2);
    if (seatTexts.headKey) {
        layout->addWidget(new LocalizedText(QString::fromLatin1(seatTexts.headKey), TextStyle::bodyStrong,
                                            ColorRole::text, context.loc, theme, this));
    }
    picker_ = new PickerButton(theme, this);
    picker_->setObjectName(name + QStringLiteral("Engine"));
    layout->addWidget(picker_);

    // Above the caption, which wraps or not with the strength beside it: a switch stays where it was pressed.
    auto* switchRow = new QHBoxLayout;
    switchRow->setSpacing(metrics::space2);
    switchCaption_ = new LocalizedText(QString::fromLatin1(seatTexts.switchKey), TextStyle::body,
                                       ColorRole::secondary, context.loc, theme, this);
    limit_ = new ToggleSwitch(theme, this);
    limit_->setObjectName(name + QStringLiteral("Limit"));
    switchRow->addWidget(switchCaption_, 1);
    switchRow->addWidget(limit_);
    layout->addLayout(switchRow);

    auto* strengthRow = new QHBoxLayout;
    strengthRow->setSpacing(metrics::space2);
    strengthCaption_ = new TextLabel(TextStyle::body, ColorRole::secondary, theme, this);
    strength_ = new TextLabel(TextStyle::body, ColorRole::text, theme, this);
    strength_->setSingleLine(true);
    strength_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    strength_->setObjectName(name + QStringLiteral("Strength"));
    strengthRow->addWidget(strengthCaption_, 1);
    strengthRow->addWidget(strength_);
    layout->addLayout(strengthRow);

    slider_ = new ValueSlider(theme, this);
    slider_->setObjectName(name + QStringLiteral("Elo"));
    slider_->setRange(EloEditor::lowestElo, EloEditor::highestElo);
    slider_->setSingleStep(eloStep);
    slider_->setPageStep(10 * eloStep);
    layout->addWidget(slider_);
    presets_ = new ChoiceGroup(ChoiceGroup::Layout::chips, static_cast<int>(eloPresets.size()), theme, this);
    presets_->setObjectName(name + QStringLiteral("Presets"));
    layout->addWidget(presets_);

    retranslate();
    refreshEngines();
    setSeat(seat_);
    connect(picker_, &PickerButton::chosen, this, [this](int index) {
        seat_.engine = context_.engines.availableEngines().at(index).id;
        Q_EMIT edited();
    });
    connect(limit_, &QAbstractButton::toggled, this, [this](bool isOn) {
        seat_.limitElo = isOn;
        showStrength();
        Q_EMIT edited();
    });
    connect(slider_, &QAbstractSlider::valueChanged, this, [this](int value) {
        seat_.elo = value;
        showStrength();
        Q_EMIT edited();
    });
    connect(presets_, &ChoiceGroup::chosen, this, [this](int index) {
        seat_.elo = static_cast<double>(eloPresets[static_cast<std::size_t>(index)].elo);
        setSeat(EngineSeat(seat_));
        Q_EMIT edited();
    });
    connect(&context_.loc, &LocalizationManager::changed, this, &EngineSeatEditor::retranslate);
}

void EngineSeatEditor::retranslate() {
    const SeatTexts seatTexts = texts(role_);
    const auto& loc = context_.loc;
    strengthCaption_->setText(seatTexts.strengthCaptionKey ? loc.text(seatTexts.strengthCaptionKey)
                                                           : seatTexts.fixedStrengthCaption);
    limit_->setAccessibleName(loc.text(seatTexts.switchKey));
    slider_->setAccessibleName(strengthCaption_->text());
    slider_->setToolTip(loc.text("elo_slider_help"));
    presets_->setLabels(eloPresetTexts(loc));
    picker_->setCaption(loc.text(seatTexts.headKey ? seatTexts.headKey : "selected_engine"));
}

void EngineSeatEditor::refreshEngines() {
    QStringList names;
    int current = -1;
    for (const EngineConfiguration& engine : context_.engines.availableEngines()) {
        if (seat_.engine && engine.id == *seat_.engine) current = static_cast<int>(names.size());
        names.append(engine.name);
    }
    if (names != picker_->items()) picker_->setItems(names, true);
    picker_->setCurrentIndex(current);
}

void EngineSeatEditor::setSeat(const EngineSeat& seat) {
    seat_ = seat;
    const QSignalBlocker quietSwitch(limit_);
    const QSignalBlocker quietSlider(slider_);
    limit_->setChecked(seat.limitElo);
    slider_->setValue(qRound(seat.elo));
    slider_->update();
    limit_->update();
    refreshEngines();
    showStrength();
}

void EngineSeatEditor::showStrength() {
    strength_->setText(seat_.limitElo ? QString::number(qRound64(seat_.elo)) + QStringLiteral(" ELO")
                                      : QStringLiteral("Volle Stärke (Ungedrosselt)"));
    slider_->setVisible(seat_.limitElo);
    presets_->setCurrentIndex(eloPresetOf(qRound64(seat_.elo)));
    presets_->setVisible(seat_.limitElo);
}

}  // namespace orlix
