// The menus: their commands, the shortcuts, and the texts in the current language. Owned by the menu bar that
// they are added to; main thread only.
#pragma once

#include <QMenu>
#include <optional>

class QMenuBar;

namespace orlix {

class GameManager;
class LocalizationManager;
class PGNExporter;
class UpdateController;

/// The menu in the application's own name. macOS has such a menu already and takes the commands over into it.
class ApplicationMenu : public QMenu {
    Q_OBJECT
  public:
    /// Adds itself to `menuBar`. The references outlive the menu.
    ApplicationMenu(UpdateController& updates, LocalizationManager& loc, QMenuBar* menuBar);

  private:
    void retitle();

    LocalizationManager& loc_;
    QAction* checkForUpdates_;
    QAction* quit_;
};

class GameMenu : public QMenu {
    Q_OBJECT
  public:
    /// Adds itself to `menuBar`. The references outlive the menu.
    GameMenu(GameManager& game, LocalizationManager& loc, PGNExporter& exporter, QMenuBar* menuBar);

  private:
    void retitle();
    void titlePause();

    GameManager& game_;
    LocalizationManager& loc_;
    QAction* newGame_;
    QAction* savePGN_;
    QAction* flipBoard_;
    QAction* undo_;
    QAction* pauseOrResume_;
    std::optional<bool> offersResume_;  ///< what its title says; unset before the first one
    QAction* resign_;
};

}  // namespace orlix
