#include "core/proof_support.h"
#include "core/trial_position.h"

namespace orlix {
namespace {

std::uint64_t leavesOf(const TrialPosition& position, std::size_t depth) {
    TrialMoveList moves;
    position.legalMoves(moves);
    if (depth == 1) return moves.size();
    std::uint64_t leaves = 0;
    for (const TrialMove move : moves) {
        TrialPosition next = position;
        next.apply(move);
        leaves += leavesOf(next, depth - 1);
    }
    return leaves;
}

std::uint64_t leavesByPlaying(ChessBoard& board, std::size_t depth) {
    const std::vector<Move> moves = board.generateLegalMoves();
    if (depth == 1) return moves.size();
    std::uint64_t leaves = 0;
    for (const Move& move : moves) {
        EXPECT_TRUE(board.play(move));
        leaves += leavesByPlaying(board, depth - 1);
        EXPECT_TRUE(board.undo());
    }
    return leaves;
}

class Perft : public ::testing::TestWithParam<PerftPosition> {};

TEST_P(Perft, countsTheKnownNumberOfLeaves) {
    const auto& [name, fen, leaves, stride, walkDepth] = GetParam();
    ASSERT_GE(leaves.back(), 2'000'000U);
    const std::size_t depths = leaves.size() - (isSanitized ? 1 : 0);
    const TrialPosition position(ChessBoard::fromFen(fen));
    for (std::size_t depth = 1; depth <= depths; ++depth) {
        EXPECT_EQ(leavesOf(position, depth), leaves[depth - 1]) << "depth " << depth;
    }
}

TEST_P(Perft, playedOnTheBoardItCountsTheSame) {
    const auto& [name, fen, leaves, stride, walkDepth] = GetParam();
    ChessBoard board = ChessBoard::fromFen(fen);
    const std::size_t depths = isSanitized ? 2 : 3;
    for (std::size_t depth = 1; depth <= depths; ++depth) {
        EXPECT_EQ(leavesByPlaying(board, depth), leaves[depth - 1]) << "depth " << depth;
    }
}

INSTANTIATE_TEST_SUITE_P(Known, Perft, ::testing::ValuesIn(perftPositions()),
                         [](const auto& tested) { return std::string(tested.param.name); });

}  // namespace
}  // namespace orlix
