#include "ui/panel/elo_editor.h"

#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>

#include "l10n/localization_manager.h"
#include "ui/controls/choice_group.h"
#include "ui/controls/text_label.h"
#include "ui/controls/toggle_switch.h"
#include "ui/controls/value_slider.h"

namespace orlix {

namespace {

constexpr int eloStep = 10;

}  // namespace

int eloPresetOf(qint64 elo) {
    for (std::size_t index = 0; index < eloPresets.size(); ++index) {
        if (eloPresets[index].elo == elo) return static_cast<int>(index);
    }
    return -1;
}

QStringList eloPresetTexts(const LocalizationManager& loc) {
    QStringList texts;
    for (const EloPreset& preset : eloPresets)
        texts.append(loc.text(preset.key));
    return texts;
}

QString eloText(qint64 elo) {
    return QString::number(elo) + QStringLiteral(" ELO");
}

EloEditor::EloEditor(const char* switchKey, const PanelContext& context, QWidget* parent)
    : QWidget(parent), switchKey_(switchKey), context_(context), strengthRows_(new QWidget(this)) {
    Theme& theme = context.theme;
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(metrics::space2);
    auto* switchRow = new QHBoxLayout;
    switchRow->setSpacing(metrics::space3);
    switchCaption_ = new TextLabel(TextStyle::body, ColorRole::secondary, theme, this);
    strength_ = new TextLabel(TextStyle::bodyStrong, ColorRole::text, theme, this);
    strength_->setSingleLine(true);
    limit_ = new ToggleSwitch(theme, this);
    switchRow->addWidget(switchCaption_, 1);
    switchRow->addWidget(strength_);
    switchRow->addWidget(limit_);
    layout->addLayout(switchRow);

    auto* rows = new QVBoxLayout(strengthRows_);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(metrics::space2);
    slider_ = new ValueSlider(theme, strengthRows_);
    slider_->setRange(lowestElo, highestElo);
    slider_->setSingleStep(eloStep);
    slider_->setPageStep(10 * eloStep);
    // A drag is one decision: the engine and its log hear of where it ends, not of every pixel on the way.
    slider_->setTracking(false);
    rows->addWidget(slider_);
    presets_ = new ChoiceGroup(ChoiceGroup::Layout::chips, static_cast<int>(eloPresets.size()), theme,
                               strengthRows_);
    rows->addWidget(presets_);
    layout->addWidget(strengthRows_);

    setPartNames(QStringLiteral("elo"));
    retranslate();
    setStrength(limitElo_, elo_);
    connect(limit_, &QAbstractButton::toggled, this, [this](bool isOn) {
        setStrength(isOn, elo_);
        Q_EMIT edited(limitElo_, elo_);
    });
    connect(slider_, &QAbstractSlider::sliderMoved, this, [this](int position) { showStrength(position); });
    connect(slider_, &QAbstractSlider::valueChanged, this, [this](int value) { takeElo(value); });
    connect(presets_, &ChoiceGroup::chosen, this,
            [this](int index) { takeElo(eloPresets[static_cast<std::size_t>(index)].elo); });
    connect(&context_.loc, &LocalizationManager::changed, this, &EloEditor::retranslate);
}

void EloEditor::setPartNames(const QString& name) {
    limit_->setObjectName(name + QStringLiteral("Limit"));
    slider_->setObjectName(name + QStringLiteral("Elo"));
    presets_->setObjectName(name + QStringLiteral("Presets"));
    strength_->setObjectName(name + QStringLiteral("Strength"));
}

void EloEditor::setCaption(const QString& caption) {
    caption_ = caption;
    retranslate();
}

void EloEditor::setPresetsShown(bool areShown) {
    presets_->setVisible(areShown);
}

void EloEditor::takeElo(qint64 elo) {
    if (elo == elo_) return;
    setStrength(limitElo_, elo);
    Q_EMIT edited(limitElo_, elo_);
}

void EloEditor::setStrength(bool limitElo, qint64 elo) {
    limitElo_ = limitElo;
    elo_ = elo;
    const QSignalBlocker quietSwitch(limit_);
    const QSignalBlocker quietSlider(slider_);
    limit_->setChecked(limitElo);
    limit_->update();
    // A drag goes on, whatever else changes meanwhile.
    if (!slider_->isSliderDown()) {
        slider_->setValue(static_cast<int>(std::clamp<qint64>(elo, lowestElo, highestElo)));
        slider_->update();
        showStrength(elo);
    }
    strengthRows_->setVisible(limitElo);
    strength_->setVisible(limitElo);
}

void EloEditor::showStrength(qint64 elo) {
    strength_->setText(eloText(elo));
    presets_->setCurrentIndex(eloPresetOf(elo));
}

void EloEditor::retranslate() {
    const auto& loc = context_.loc;
    switchCaption_->setText(loc.text(switchKey_));
    const QString name =
        caption_.isEmpty() ? loc.text(switchKey_) : caption_ + QStringLiteral(": ") + loc.text(switchKey_);
    limit_->setAccessibleName(name);
    slider_->setAccessibleName(name + QStringLiteral(": ") + loc.text("elo_rating"));
    slider_->setToolTip(loc.text("elo_slider_help"));
    presets_->setLabels(eloPresetTexts(loc));
}

}  // namespace orlix
