// Settings of the next game. Choices stay in the tab until Start hands all of them over; whenever the tab is
// opened it shows what is in force.
#pragma once

#include <QWidget>

#include "ui/panel/new_game_settings.h"
#include "ui/panel/panel_context.h"

class QVBoxLayout;

namespace orlix {

class Card;
class ChoiceGroup;
class EngineNotice;
class EngineSeatEditor;
class LocalizedText;
class PanelButton;
class Stepper;
class TextLabel;
class ValueSlider;

class NewGameTab : public QWidget {
    Q_OBJECT
  public:
    /// `state` is the panel's and outlives the tab.
    NewGameTab(const PanelContext& context, PanelState& state, QWidget* parent = nullptr);

    /// What Start would hand over.
    NewGameSettings draft() const;

  Q_SIGNALS:
    void addEngineRequested();
    void started();

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    Card* addCard(const char* titleKey);
    void buildModeCard();
    void buildTimeCard();
    void buildEngineCard();
    void buildThinkingCard();
    QLayout* buildFooter();
    /// Drops what was chosen and not started, and shows what is in force.
    void open();
    /// Takes over what was changed elsewhere; the rest of what was chosen here stays, also while another tab
    /// is shown.
    void followForce();
    /// Puts the engine in force into a seat whose chosen one is not registered any more.
    void replaceMissingEngines();
    void takeTime(const TimeControlConfig& time);
    void takeThinkingMode(const EngineThinkingMode& mode);
    void takeSeats();
    void updateEngineThinkingMode();
    void showDraft();
    void showThinking();
    void dropCachedSizes();
    void retranslate();
    void start();

    PanelContext context_;
    PanelState& state_;
    NewGameSettings inForce_;  ///< as last seen
    GameMode mode_ = GameMode::humanVsEngine;
    PlayerColorChoice color_ = PlayerColorChoice::white;
    TimeControlPreset preset_ = TimeControlPreset::blitz5_3;
    EngineThinkingMode thinkingMode_ = GameClock{};
    bool isStarting_ = false;

    QVBoxLayout* content_ = nullptr;
    QList<std::pair<Card*, const char*>> titles_;
    ChoiceGroup* modes_ = nullptr;
    QWidget* colorRow_ = nullptr;
    ChoiceGroup* colors_ = nullptr;
    ChoiceGroup* presets_ = nullptr;
    QWidget* customRows_ = nullptr;
    Stepper* minutes_ = nullptr;
    Stepper* increment_ = nullptr;
    Card* engineCard_ = nullptr;
    EngineNotice* notice_ = nullptr;
    EngineSeatEditor* opponent_ = nullptr;
    QWidget* sides_ = nullptr;
    EngineSeatEditor* white_ = nullptr;
    EngineSeatEditor* black_ = nullptr;
    Card* thinkingCard_ = nullptr;
    ChoiceGroup* thinking_ = nullptr;
    QWidget* thinkingRow_ = nullptr;
    TextLabel* thinkingCaption_ = nullptr;
    TextLabel* thinkingValue_ = nullptr;
    ValueSlider* moveTime_ = nullptr;
    ValueSlider* depth_ = nullptr;
    PanelButton* start_ = nullptr;
};

}  // namespace orlix
