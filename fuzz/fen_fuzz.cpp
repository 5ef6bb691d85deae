// Any text is either refused with one of the three codes or makes a board that all rules can work on.
#include "core/chess_board.h"
#include "fuzz_target.h"

using orlix::fuzz::require;

namespace {

void checkRules(orlix::ChessBoard& board) {
    const std::string fen = board.fen();
    require(orlix::ChessBoard::fromFen(fen).fen() == fen, "a written FEN reads back to itself");
    require(board.history.empty() && board.positionHistory.size() == 1, "loading starts the books");

    const std::vector<orlix::Move> moves = board.generateLegalMoves();
    const auto reason = board.gameEndReason();
    require(!moves.empty() || reason.has_value(), "without moves the game is over");
    static_cast<void>(board.capturedPieces());
    static_cast<void>(board.materialScore());

    for (const orlix::Move& move : moves) {
        require(board.play(move), "a generated move can be played");
        require(!board.history.back().san.empty(), "a played move has a SAN");
        require(board.history.back().fenAfter == board.fen(), "the record holds the FEN after the move");
        require(board.undo(), "a played move can be taken back");
        require(board.history.empty() && board.positionHistory.size() == 1, "taking back restores the books");
        // Where a FEN put a piece onto its en-passant square, taking back does not restore the placement.
        if (board.fen() != fen) {
            require(move.to == board.enPassantTarget, "only en passant may come back otherwise");
            board = orlix::ChessBoard::fromFen(fen);
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    orlix::ChessBoard board;
    const orlix::ChessBoard before = board;
    try {
        board.load(orlix::fuzz::textOf(data, size));
    } catch (const orlix::FenError& error) {
        require(error.code() >= 1 && error.code() <= 3, "a refusal has one of the three codes");
        require(board == before, "a refused text leaves the board as it was");
        return 0;
    }
    checkRules(board);
    return 0;
}
