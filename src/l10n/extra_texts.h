// The interface's few texts without a key: menu names, notices, and what is read out to users of assistive
// technology. To add one, add a case here (before `end`) and its row, in the same place, in the .cpp file.
#pragma once

#include <QString>

#include "l10n/language.h"

namespace orlix {

enum class ExtraText {
    gameMenu,
    noEngineRegistered,
    noEngineChosen,      ///< engines are registered, but none plays on the empty side
    newGameSeatsEngine,  ///< an engine was chosen after the game had begun
    checkingEngine,
    showLivePosition,
    noAutomatchGames,
    seriesSettings,
    matchStrength,    ///< what the difference and its companion in the scoreboard are
    averageGameTime,  ///< of the games of a series
    board,
    squareEmpty,
    squareSelected,
    squareLegalTarget,
    squareLastMove,
    squareInCheck,
    evaluation,
    engineAdded,  ///< with %1 for the engine's name
    whitePawn,    ///< the pieces in the order of `PieceType`, White's first
    whiteKnight,
    whiteBishop,
    whiteRook,
    whiteQueen,
    whiteKing,
    blackPawn,
    blackKnight,
    blackBishop,
    blackRook,
    blackQueen,
    blackKing,
    moveFromTo,    ///< with %1 for the piece, %2 and %3 for the squares
    moveCaptures,  ///< with %1 for the piece that is gone
    movePromotes,  ///< with %1 for the new piece
    moveCastles,
    moveTakenBack,
    checkForUpdates,
    quit,
    checkAgain,
    softwareUpdate,
    releaseAvailable,     ///< with %1 for the version and %2 for the build
    releaseUnverifiable,  ///< the feed does not say how the release can be verified
    releaseNotes,
    installRelease,
    updateChecking,
    updateUpToDate,     ///< with %1 for the version
    updateCheckFailed,  ///< with %1 for the reason
    updateVerifying,    ///< with %1 for the version
    updateVerified,
    updaterNotStarted,  ///< with %1 for the reason
    end                 ///< no text: how many there are
};

QString extraText(Language language, ExtraText text);

}  // namespace orlix
