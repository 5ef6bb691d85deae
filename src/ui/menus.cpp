#include "ui/menus.h"

#include <QCoreApplication>
#include <QMenuBar>

#include "game/game_manager.h"
#include "l10n/extra_texts.h"
#include "l10n/localization_manager.h"
#include "records/pgn_exporter.h"
#include "update/update_controller.h"

namespace orlix {
namespace {

/// An ampersand in a text is a character, not the mark of a key.
QString menuTitle(QString text) {
    return text.replace(QLatin1Char('&'), QLatin1String("&&"));
}

}  // namespace

ApplicationMenu::ApplicationMenu(UpdateController& updates, LocalizationManager& loc, QMenuBar* menuBar)
    : QMenu(menuBar),
      loc_(loc),
      checkForUpdates_(addAction(QString(), this, [&updates] { updates.checkForUpdates(false); })),
      quit_(addAction(QString(), this, &QCoreApplication::quit)) {
    insertSeparator(quit_);
    checkForUpdates_->setMenuRole(QAction::ApplicationSpecificRole);
    quit_->setMenuRole(QAction::QuitRole);
    quit_->setShortcut(Qt::CTRL | Qt::Key_Q);  // the standard key is none outside the large desktops
    connect(&loc, &LocalizationManager::changed, this, &ApplicationMenu::retitle);
    retitle();
    menuBar->addMenu(this);
}

void ApplicationMenu::retitle() {
    setTitle(menuTitle(loc_.text("app_title")));
    checkForUpdates_->setText(menuTitle(loc_.text(ExtraText::checkForUpdates)));
    quit_->setText(menuTitle(loc_.text(ExtraText::quit)));
}

GameMenu::GameMenu(GameManager& game, LocalizationManager& loc, PGNExporter& exporter, QMenuBar* menuBar)
    : QMenu(menuBar), game_(game), loc_(loc) {
    const auto add = [this](const QKeySequence& shortcut, auto command) {
        QAction* action = addAction(QString(), this, command);
        action->setShortcut(shortcut);
        action->setMenuRole(QAction::NoRole);  // a title never moves a command to the application's menu
        return action;
    };
    // Qt's control key is the command key on macOS.
    newGame_ = add(Qt::CTRL | Qt::Key_N, [this] { game_.startNewGame(); });
    savePGN_ = add(Qt::CTRL | Qt::Key_S, [this, &exporter] {
        exporter.savePGNDialog(game_.exportPGN(), QStringLiteral("velmorandix_game.pgn"));
    });
    addSeparator();
    flipBoard_ = add(Qt::CTRL | Qt::Key_F, [this] { game_.flipBoard(); });
    undo_ = add(Qt::CTRL | Qt::Key_Z, [this] { game_.undoMove(); });
    pauseOrResume_ = add(Qt::Key_Space, [this] { game_.togglePause(); });
    pauseOrResume_->setAutoRepeat(false);  // holding the bar down is one press
    addSeparator();
    resign_ = add({}, [this] { game_.resign(game_.board().turn); });

    connect(&game_, &GameManager::changed, this, &GameMenu::titlePause);
    connect(&loc_, &LocalizationManager::changed, this, &GameMenu::retitle);
    retitle();
    menuBar->addMenu(this);
}

void GameMenu::retitle() {
    const auto set = [this](QAction* action, const char* key) { action->setText(menuTitle(loc_.text(key))); };
    setTitle(menuTitle(extraText(loc_.currentLanguage(), ExtraText::gameMenu)));
    set(newGame_, "btn_new_game");
    set(savePGN_, "btn_save_pgn");
    set(flipBoard_, "btn_flip_board");
    set(undo_, "btn_undo");
    set(resign_, "btn_resign");
    offersResume_.reset();
    titlePause();
}

void GameMenu::titlePause() {
    if (offersResume_ == game_.isPaused()) return;
    offersResume_ = game_.isPaused();
    pauseOrResume_->setText(menuTitle(loc_.text(*offersResume_ ? "btn_resume" : "btn_pause")));
}

}  // namespace orlix
