// Short ways to write boards, moves and expectations in the tests of the rules.
#pragma once

#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "core/chess_board.h"

namespace orlix {

inline Square sq(std::string_view text) {
    return Square::fromText(text).value();
}

inline Move mv(std::string_view text) {
    return Move::fromUci(text).value();
}

inline std::vector<std::string> texts(const std::vector<Move>& moves) {
    std::vector<std::string> result;
    for (const Move& move : moves)
        result.push_back(move.uciString());
    return result;
}

/// A board on which the moves, in UCI text separated by spaces, have been played.
inline ChessBoard played(ChessBoard board, const std::string& moves) {
    std::size_t start = 0;
    while (start < moves.size()) {
        const std::size_t end = std::min(moves.find(' ', start), moves.size());
        const std::string text = moves.substr(start, end - start);
        EXPECT_TRUE(board.play(mv(text))) << text << " in " << board.fen();
        start = end + 1;
    }
    return board;
}

}  // namespace orlix
