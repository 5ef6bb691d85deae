// The settings of a series: the engines and their strength, how many games, whose colours, and the pause
// between games. Every choice is in force at once; while a series runs only what can sensibly be changed then
// is on offer. Once a series was started all but the number of games is folded away: the history has its
// room.
#pragma once

#include "ui/controls/card.h"
#include "ui/panel/panel_context.h"

namespace orlix {

class AutomatchEngineEditor;
class ChoiceGroup;
class EngineNotice;
class FigureLabel;
class IconButton;
class SectionHead;
class Stepper;
class TextLabel;
class ToggleSwitch;
class ValueSlider;

class AutomatchConfiguration : public Card {
    Q_OBJECT
  public:
    static constexpr int mostGames = 9999;

    explicit AutomatchConfiguration(const PanelContext& context, QWidget* parent = nullptr);

    void takeSeries();

  Q_SIGNALS:
    void addEngineRequested();

  private:
    void buildEngines();
    void buildGames();
    void buildColors();
    void buildPause();
    /// A line of the card that can be hidden as a whole.
    QWidget* addLine();
    TextLabel* addCaption(QWidget* line, const char* key, int stretch);
    void showParts();
    void retranslate();

    PanelContext context_;
    SectionHead* head_;
    IconButton* unfold_;
    bool isUnfolded_ = true;
    EngineNotice* notice_ = nullptr;
    AutomatchEngineEditor* engine1_ = nullptr;
    AutomatchEngineEditor* engine2_ = nullptr;
    Stepper* games_ = nullptr;
    FigureLabel* gamesText_ = nullptr;
    QWidget* presetLine_ = nullptr;
    QWidget* colorLine_ = nullptr;
    QWidget* pauseLine_ = nullptr;
    ChoiceGroup* presets_ = nullptr;
    ToggleSwitch* alternate_ = nullptr;
    ValueSlider* pause_ = nullptr;
    FigureLabel* pauseText_ = nullptr;
};

}  // namespace orlix
