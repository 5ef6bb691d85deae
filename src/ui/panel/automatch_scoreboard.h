// The card at the top of the automatch tab: games played, the score, how the series stands, and in one quiet
// line what the score says about the engines' strength. Takes what the series holds; repaints what differs.
#pragma once

#include "ui/controls/card.h"
#include "ui/panel/panel_context.h"

namespace orlix {

class AutomatchScoreFigures;
class FigureLabel;
class SectionHead;
class TextLabel;

class AutomatchScoreboard : public Card {
    Q_OBJECT
  public:
    explicit AutomatchScoreboard(const PanelContext& context, QWidget* parent = nullptr);

    /// Shows what the series holds now.
    void takeSeries();

  private:
    void showState();
    void retranslate();

    PanelContext context_;
    SectionHead* head_;
    FigureLabel* games_;
    AutomatchScoreFigures* figures_;
    TextLabel* state_;
    FigureLabel* countdown_;
    TextLabel* verdict_;
    TextLabel* strength_;
    FigureLabel* average_;
};

}  // namespace orlix
