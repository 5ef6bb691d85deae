// A person who plays legal moves, not good ones, against the engine of a PlayedApplication. Main thread.
#pragma once

#include <QStringList>
#include <functional>

#include "core/chess_board.h"
#include "e2e/played_application.h"

namespace orlix::e2e {

/// Plays White until the game ends or `mostPlies` are played, and gives the position with its history. Each
/// move of the person is confirmed by the position that the program sends to the engine, each answer by the
/// tint that the board shows. Throws std::runtime_error when either does not come. `played` hears every ply.
ChessBoard playAgainstEngine(PlayedApplication& application, int mostPlies,
                             const std::function<void(const MoveRecord&)>& played = {});

/// The moves of a position's history in UCI text.
QStringList uciMoves(const ChessBoard& board);

/// The moves of the only game in a PGN file as pgn-extract reads them, in UCI text; throws when it refuses
/// the file.
QStringList movesReadByPgnExtract(const QString& path);

}  // namespace orlix::e2e
