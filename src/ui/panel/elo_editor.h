// Whether an engine's strength is limited, and to which Elo: a switch, and while it is on a slider and the
// named strengths. Edits a value; what becomes of it is its owner's.
#pragma once

#include <QStringList>
#include <QWidget>
#include <array>

#include "ui/panel/panel_context.h"

namespace orlix {

class ChoiceGroup;
class TextLabel;
class ToggleSwitch;
class ValueSlider;

/// The strengths that have a name, from weak to strong.
struct EloPreset {
    const char* key;
    qint64 elo;
};
inline constexpr std::array<EloPreset, 5> eloPresets{{
    {"preset_beginner", 1400},
    {"preset_club", 1800},
    {"preset_master", 2200},
    {"preset_grandmaster", 2600},
    {"preset_max", 3190},
}};

/// Position of the preset of exactly `elo`; -1 when there is none.
int eloPresetOf(qint64 elo);
QStringList eloPresetTexts(const LocalizationManager& loc);

class EloEditor : public QWidget {
    Q_OBJECT
  public:
    static constexpr int lowestElo = 1320;
    static constexpr int highestElo = 3190;

    /// `switchKey` is the key of the switch's text.
    EloEditor(const char* switchKey, const PanelContext& context, QWidget* parent = nullptr);

    /// Shows the strength without a signal; one outside the slider's range is shown as it is.
    void setStrength(bool limitElo, qint64 elo);
    bool limitElo() const { return limitElo_; }
    qint64 elo() const { return elo_; }
    /// Prefixes the object names of the parts: "<name>Limit", "<name>Elo", "<name>Presets", "<name>Strength".
    void setPartNames(const QString& name);
    /// The chips of the usual strengths below the slider; shown unless told otherwise.
    void setPresetsShown(bool areShown);
    /// Whose strength it is, read out before each part's own name where there are several editors.
    void setCaption(const QString& caption);

  Q_SIGNALS:
    /// By the user. A slider that is dragged says so once, when it is let go.
    void edited(bool limitElo, qint64 elo);

  private:
    void takeElo(qint64 elo);
    void showStrength(qint64 elo);
    void retranslate();

    const char* switchKey_;
    QString caption_;
    PanelContext context_;
    bool limitElo_ = false;
    qint64 elo_ = 1800;
    TextLabel* switchCaption_;
    ToggleSwitch* limit_;
    QWidget* strengthRows_;
    TextLabel* strength_;
    ValueSlider* slider_;
    ChoiceGroup* presets_;
};

/// How a strength is written: "1800 ELO".
QString eloText(qint64 elo);

}  // namespace orlix
