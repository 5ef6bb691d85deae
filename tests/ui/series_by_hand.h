// Games of a series that end when a test says so, told to the series as the game manager tells it.
#pragma once

#include <chrono>

#include "automatch/automatch_manager.h"
#include "core/chess_board.h"
#include "game/game_manager.h"
#include "support/fake_time_source.h"

namespace orlix::test {

/// The ways in which games of a series end, over and over.
inline GameEndReason endOfGame(int number) {
    switch (number % 7) {
        case 0: return GameEndReason::checkmate(PieceColor::white);
        case 1: return GameEndReason::timeout(PieceColor::black);
        case 2: return GameEndReason::threefoldRepetition();
        case 3: return GameEndReason::checkmate(PieceColor::black);
        case 4: return GameEndReason::timeout(PieceColor::white);
        case 5: return GameEndReason::insufficientMaterial();
        default: return GameEndReason::resignation(PieceColor::white);
    }
}

/// The shortest mate.
inline ChessBoard shortGame() {
    ChessBoard board;
    for (const char* text : {"f2f3", "e7e5", "g2g4", "d8h4"})
        board.play(*Move::fromUci(text));
    return board;
}

/// Ends the running game; the next one then waits for its countdown.
inline void endGame(AutomatchManager& series, const GameEndReason& reason) {
    static const ChessBoard board = shortGame();
    series.handleGameEnd(reason, board, QStringLiteral("[Event \"Game %1\"]").arg(series.currentGameIndex()));
}

/// Plays `count` games of a running series to their end, each `seconds` long, and the pauses between them.
inline void playGames(AutomatchManager& series, FakeTimeSource& time, int count, int seconds = 1) {
    for (int number = 0; number < count && series.isAutomatchActive(); ++number) {
        time.advance(std::chrono::seconds(seconds));
        endGame(series, endOfGame(number));
        time.runDue();
        while (series.isCountingDown())
            time.advance(std::chrono::milliseconds(200));
    }
}

}  // namespace orlix::test
