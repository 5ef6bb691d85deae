// The "Game" menu: its commands, their shortcuts, and their texts in the current language. Owned by the menu
// bar it is added to; main thread only.
#pragma once

#include <QMenu>

class QMenuBar;

namespace orlix {

class GameManager;
class LocalizationManager;
class PGNExporter;

class GameMenu : public QMenu {
    Q_OBJECT
  public:
    /// Adds itself to `menuBar`. The references outlive the menu.
    GameMenu(GameManager& game, LocalizationManager& loc, PGNExporter& exporter, QMenuBar* menuBar);

  private:
    void retitle();

    GameManager& game_;
    LocalizationManager& loc_;
    QAction* newGame_;
    QAction* savePGN_;
    QAction* flipBoard_;
    QAction* undo_;
    QAction* pauseOrResume_;
    QAction* resign_;
};

}  // namespace orlix
