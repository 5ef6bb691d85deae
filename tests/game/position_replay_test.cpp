#include "game/position_replay.h"

#include <gmock/gmock.h>

namespace orlix {
namespace {

ChessBoard boardAfter(std::initializer_list<const char*> moves, ChessBoard board = {}) {
    for (const char* text : moves) {
        EXPECT_TRUE(board.play(*Move::fromUci(text))) << text;
    }
    return board;
}

std::vector<Uuid> pieceIds(const ChessBoard& board) {
    std::vector<Uuid> ids;
    for (const auto& square : board.squares) {
        if (square) ids.push_back(square->id);
    }
    return ids;
}

TEST(PositionReplay, givesThePositionAfterEveryPly) {
    const ChessBoard game = boardAfter({"e2e4", "d7d5", "e4d5", "d8d5", "b1c3"});
    PositionReplay replay;
    ChessBoard expected;
    for (std::size_t plies = 0; plies <= game.history.size(); ++plies) {
        if (plies > 0) expected.play(game.history[plies - 1].move);
        const ChessBoard& shown = replay.after(game.history, plies);
        EXPECT_EQ(shown.fen(), expected.fen());
        EXPECT_EQ(shown.history.size(), plies);
    }
    EXPECT_EQ(replay.after(game.history, 2).fen(), boardAfter({"e2e4", "d7d5"}).fen());
}

TEST(PositionReplay, theSameMovesGiveTheSamePiecesAndNothingIsComputedAgain) {
    const ChessBoard game = boardAfter({"e2e4", "d7d5", "e4d5"});
    PositionReplay replay;
    const std::vector<Uuid> first = pieceIds(replay.after(game.history, 2));
    EXPECT_EQ(pieceIds(replay.after(game.history, 2)), first);
    // A board computed once more would have drawn new identities for all its pieces.
    EXPECT_NE(pieceIds(ChessBoard()), pieceIds(ChessBoard()));
    const ChessBoard copy = game;
    EXPECT_EQ(pieceIds(replay.after(copy.history, 2)), first);
}

TEST(PositionReplay, aContinuationKeepsThePiecesThatStand) {
    const ChessBoard game = boardAfter({"e2e4", "d7d5", "g1f3"});
    PositionReplay replay;
    const Square e4 = *Square::fromText("e4");
    const Uuid pawn = replay.after(game.history, 1)[e4]->id;
    EXPECT_EQ(replay.after(game.history, 3)[e4]->id, pawn);
}

TEST(PositionReplay, anotherGameOfTheSameLengthIsComputedAnew) {
    const ChessBoard first = boardAfter({"e2e4", "e7e5"});
    const ChessBoard second = boardAfter({"e2e4", "c7c5"});
    const ChessBoard third = boardAfter({"d2d4", "c7c5", "g1f3"});
    PositionReplay replay;
    EXPECT_EQ(replay.after(first.history, 2).fen(), first.fen());
    EXPECT_EQ(replay.after(second.history, 2).fen(), second.fen());
    EXPECT_EQ(replay.after(third.history, 3).fen(), third.fen());
}

TEST(PositionReplay, aShorterHistoryIsComputedAnew) {
    const ChessBoard longer = boardAfter({"e2e4", "e7e5", "g1f3"});
    const ChessBoard shorter = boardAfter({"e2e4"});
    PositionReplay replay;
    replay.after(longer.history, 3);
    EXPECT_EQ(replay.after(shorter.history, 1).fen(), shorter.fen());
}

TEST(PositionReplay, movesThatTheStandardStartDoesNotAllowAreLeftOut) {
    const ChessBoard game =
        boardAfter({"e1e2", "e8e7", "e2d3"}, ChessBoard::fromFen("4k3/8/8/8/8/8/8/4K3 w - - 0 1"));
    PositionReplay replay;
    EXPECT_EQ(replay.after(game.history, 3).fen(), ChessBoard::standardStartingFEN);
    EXPECT_EQ(pieceIds(replay.after(game.history, 3)), pieceIds(replay.after(game.history, 3)));
}

TEST(PositionReplay, promotionsOfDifferentPiecesAreDifferentMoves) {
    const auto play = [](const char* last) {
        return boardAfter({"a2a4", "b7b5", "a4b5", "a7a6", "b5a6", "c8b7", "a6b7", "h7h6", last});
    };
    const ChessBoard queen = play("b7a8q");
    const ChessBoard knight = play("b7a8n");
    PositionReplay replay;
    EXPECT_EQ(replay.after(queen.history, 9).fen(), queen.fen());
    EXPECT_EQ(replay.after(knight.history, 9).fen(), knight.fen());
}

}  // namespace
}  // namespace orlix
