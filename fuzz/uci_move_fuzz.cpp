// Any text is no move, or a move between two squares whose text reads back to the same move.
#include "core/chess_board.h"
#include "fuzz_target.h"

using orlix::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto move = orlix::Move::fromUci(orlix::fuzz::textOf(data, size));
    if (!move) return 0;
    for (const orlix::Square square : {move->from, move->to}) {
        require(orlix::Square::fromIndex(square.index()) == square, "both squares are on the board");
    }
    require(orlix::Move::fromUci(move->uciString()) == move, "the written move reads back to itself");
    static const orlix::ChessBoard start;
    orlix::ChessBoard board = start;
    if (!board.play(*move)) require(board == start, "a refused move leaves the board as it was");
    return 0;
}
