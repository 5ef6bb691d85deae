// Leafing through the game by key: Left, Right, Home and End. Used by the views that hold the game's keys;
// main thread only.
#pragma once

class QKeyEvent;

namespace orlix {

class GameManager;

/// Shows the ply that the key asks for: one back, one on, the first, or the live position. True when the key
/// is one of these, whether or not there was anywhere to go; modified keys are others.
///
/// The last ply is shown as the live position, as a click on it in the move list does: there moves are
/// played.
bool stepThroughGame(GameManager& game, const QKeyEvent& event);

}  // namespace orlix
