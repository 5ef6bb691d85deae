// A long game for measurements, the same at every call.
#pragma once

#include <cstddef>
#include <random>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "core/chess_board.h"

namespace orlix::test {

/// The moves, as UCI writes them, of a game of `plies` that does not end with them. Throws std::runtime_error
/// when it comes to an end all the same.
inline std::vector<std::string> endlessGame(std::size_t plies) {
    std::mt19937 random(20261121);
    ChessBoard board;
    std::vector<std::string> moves;
    while (moves.size() < plies) {
        std::vector<ChessBoard> next;
        for (const Move& move : board.generateLegalMoves()) {
            ChessBoard after = board;
            after.play(move);
            if (!after.isGameOver()) next.push_back(std::move(after));
        }
        if (next.empty()) throw std::runtime_error("the game comes to an end");
        board = next[random() % next.size()];
        moves.push_back(board.history.back().move.uciString());
    }
    return moves;
}

}  // namespace orlix::test
