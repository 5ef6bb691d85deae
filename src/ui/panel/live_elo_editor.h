// Strength of the engines that play in the running game, changed while they play. Shown for every seat that
// an engine holds; gone when none does.
#pragma once

#include <array>

#include "core/piece.h"
#include "ui/controls/card.h"
#include "ui/panel/panel_context.h"

namespace orlix {

class EloEditor;

class LiveEloEditor : public Card {
    Q_OBJECT
  public:
    explicit LiveEloEditor(const PanelContext& context, QWidget* parent = nullptr);

    /// Shows what is in force. Called by the tab whenever the game or its engines changed.
    void takeGame();

  private:
    EloEditor* editor(PieceColor color);  ///< built when first needed

    PanelContext context_;
    std::array<EloEditor*, 2> editors_{};  ///< White's, Black's
};

}  // namespace orlix
