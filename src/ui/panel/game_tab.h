// The game as it stands: the series that it belongs to, its moves, and the way back from an inspected
// position.
#pragma once

#include <QWidget>

#include "ui/panel/panel_context.h"

class QVBoxLayout;

namespace orlix {

class AutomatchWidget;
class PanelButton;

class GameTab : public QWidget {
    Q_OBJECT
  public:
    explicit GameTab(const PanelContext& context, QWidget* parent = nullptr);

  private:
    void takeSeries();
    void takeGame();
    void retranslate();

    PanelContext context_;
    QVBoxLayout* layout_;
    AutomatchWidget* series_ = nullptr;  ///< made when a series first runs; comes and goes with it
    PanelButton* back_ = nullptr;        ///< made when a past position is first inspected
};

}  // namespace orlix
