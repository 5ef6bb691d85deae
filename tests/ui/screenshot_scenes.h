// The states of the window that scripts/screenshots renders: what each is called and how the window gets
// there, over fakes of the platform.
#pragma once

#include <QString>
#include <functional>
#include <vector>

#include "l10n/language.h"
#include "shell.h"
#include "ui/theme.h"

namespace orlix::test {

struct PictureOf {
    QString name;
    std::function<void(Shell&)> scene;  ///< brings a window that is not built yet into the state
    Theme::Scheme scheme = Theme::Scheme::light;
    Language language = Language::english;
};

/// The board and the game: each state once.
std::vector<PictureOf> gamePictures();
/// The panel's tabs and what they open: each state once.
std::vector<PictureOf> tabPictures();
/// A series of engine games in the panel: each state once, the fullest in every language and scheme.
std::vector<PictureOf> seriesPictures();
/// The sheet about updates: each state in both schemes, those with long texts in every language.
std::vector<PictureOf> updatePictures();
/// The three fullest views in every language and scheme.
std::vector<PictureOf> fullestPictures();

// Steps that scenes of both kinds take.
void showTwoPeople(Shell& shell);
void showAgainstEngine(Shell& shell);
void showTab(Shell& shell, int index);
/// Moves as "e2e4", by clicks; each takes 3.7 seconds of the mover's clock.
void playMoves(Shell& shell, const QStringList& moves);
const QStringList& openGame();

}  // namespace orlix::test
