// One registered engine: its name and Elo, the test with its outcome, the strength editor, and removal.
#pragma once

#include "engine/engine_configuration.h"
#include "engine/engine_manager.h"
#include "ui/controls/card.h"
#include "ui/panel/panel_context.h"

namespace orlix {

class ElidedLabel;
class EloEditor;
class IconButton;
class PanelButton;
class TextLabel;

class EngineRow : public Card {
    Q_OBJECT
  public:
    EngineRow(const EngineConfiguration& engine, const PanelContext& context, QWidget* parent = nullptr);

    const EngineConfiguration& engine() const { return engine_; }
    void setEngine(const EngineConfiguration& engine);
    void setEditing(bool isEditing);
    /// Puts the keyboard on the button that removes the engine.
    void focusRemoval();

  Q_SIGNALS:
    void editingToggled(bool isEditing);  ///< by the user
    void removalRequested();

  private:
    enum class TestState { none, running, passed, failed };

    void startTest();
    void finishTest(const EngineManager::EngineTestResult& result);
    void showTest();
    void showEngine();
    void retranslate();

    PanelContext context_;
    EngineConfiguration engine_;
    TestState testState_ = TestState::none;
    QString testText_;
    ElidedLabel* name_;
    TextLabel* elo_;
    ElidedLabel* path_;
    PanelButton* test_;
    IconButton* edit_;
    IconButton* remove_;
    TextLabel* outcome_;
    EloEditor* editor_ = nullptr;  ///< built when first opened
};

}  // namespace orlix
