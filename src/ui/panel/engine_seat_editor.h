// Chooses the engine of one seat and how strong it may be. Edits a value; what becomes of it is the tab's.
#pragma once

#include <QWidget>

#include "ui/panel/new_game_settings.h"
#include "ui/panel/panel_context.h"

namespace orlix {

class ChoiceGroup;
class LocalizedText;
class PickerButton;
class TextLabel;
class ToggleSwitch;
class ValueSlider;

class EngineSeatEditor : public QWidget {
    Q_OBJECT
  public:
    enum class Role { opponent, white, black };

    EngineSeatEditor(Role role, const PanelContext& context, QWidget* parent = nullptr);

    /// Shows `seat` without a signal. A strength outside the slider's range is shown and kept as it is.
    void setSeat(const EngineSeat& seat);
    const EngineSeat& seat() const { return seat_; }
    /// Takes the engines on offer from the registry anew.
    void refreshEngines();

  Q_SIGNALS:
    void edited();  ///< by the user

  private:
    void retranslate();
    void showStrength();

    Role role_;
    PanelContext context_;
    EngineSeat seat_;
    PickerButton* picker_;
    TextLabel* strengthCaption_;
    TextLabel* strength_;
    LocalizedText* switchCaption_;
    ToggleSwitch* limit_;
    ValueSlider* slider_;
    ChoiceGroup* presets_;
};

}  // namespace orlix
