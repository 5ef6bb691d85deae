// One of the two engines of a series: who plays, and how strong it may be. What is chosen is in force at
// once.
#pragma once

#include <QWidget>

#include "engine/engine_configuration.h"
#include "ui/panel/panel_context.h"

namespace orlix {

class EloEditor;
class PickerButton;

class AutomatchEngineEditor : public QWidget {
    Q_OBJECT
  public:
    enum class Slot { engine1, engine2 };

    AutomatchEngineEditor(Slot slot, const PanelContext& context, QWidget* parent = nullptr);

    /// Shows what the series holds, and the engines on offer.
    void takeSeries();

  private:
    void choose(int index);
    void dropCachedSizes();
    void retranslate();

    Slot slot_;
    PanelContext context_;
    QList<EngineConfiguration> offered_;
    PickerButton* picker_;
    EloEditor* elo_;
};

}  // namespace orlix
