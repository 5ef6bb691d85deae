// How a running series stands, above the moves of its current game: who plays, what the engines think of the
// position, the score, and the pause before the next game. Shown only while a series runs.
#pragma once

#include <array>

#include "ui/controls/card.h"
#include "ui/panel/panel_context.h"

namespace orlix {

class ElidedLabel;
class FigureLabel;
class FigureRow;
class PanelButton;
class SectionHead;
class TextLabel;

class AutomatchWidget : public Card {
    Q_OBJECT
  public:
    explicit AutomatchWidget(const PanelContext& context, QWidget* parent = nullptr);

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    enum Figure { evaluation, material, moves, score1, score2, figureCount };
    /// One player: the colour and the name.
    struct Player {
        TextLabel* color = nullptr;
        ElidedLabel* name = nullptr;
    };

    void buildPlayers();
    void takeSeries();
    void takeGame();
    void takeEvaluation();
    void retranslate();

    PanelContext context_;
    SectionHead* head_;
    FigureLabel* games_;
    std::array<Player, 2> players_;  ///< White and Black
    FigureRow* figures_;
    FigureLabel* countdown_;
    PanelButton* stop_;
};

}  // namespace orlix
