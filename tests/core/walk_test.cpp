#include <set>

#include "core/proof_support.h"
#include "core/san.h"

namespace orlix {
namespace {

// Visits a tree of positions and checks at every node what must hold at all of them.
class Walk {
  public:
    explicit Walk(std::uint64_t leafStride) : leafStride_(leafStride) {}

    void visit(ChessBoard& board, int depth) {
        ++nodes_;
        checkFen(board);
        checkSans(board);
        if (depth == 0) return;
        for (const Move& move : board.generateLegalMoves()) {
            if (depth == 1 && leaves_++ % leafStride_ != 0) continue;
            const ChessBoard before = board;
            ASSERT_TRUE(board.play(move));
            ASSERT_NE(board, before);
            visit(board, depth - 1);
            const Piece moved = *board[move.to];
            ASSERT_TRUE(board.undo());
            if (move.promotion) {
                ASSERT_NE(board[move.from]->id, moved.id) << board.fen();
                // The pawn that comes back is a new piece; all else is as it was.
                ASSERT_NE(board[move.from]->id, before[move.from]->id) << board.fen();
                board[move.from]->id = before[move.from]->id;
            }
            ASSERT_EQ(board, before) << before.fen() << ' ' << move.uciString();
        }
    }

    std::uint64_t nodes() const { return nodes_; }

  private:
    static void checkFen(const ChessBoard& board) {
        const std::string fen = board.fen();
        ASSERT_EQ(ChessBoard::fromFen(fen).fen(), fen);
    }

    static void checkSans(const ChessBoard& board) {
        const TrialPosition position(board);
        TrialMoveList moves;
        position.legalMoves(moves);
        std::vector<std::string> sans;
        for (const TrialMove move : moves)
            sans.push_back(standardAlgebraicNotation(position, move, moves));
        std::sort(sans.begin(), sans.end());
        ASSERT_EQ(std::adjacent_find(sans.begin(), sans.end()), sans.end()) << board.fen();
    }

    std::uint64_t leafStride_;
    std::uint64_t leaves_ = 0;
    std::uint64_t nodes_ = 0;
};

class TreeWalk : public ::testing::TestWithParam<PerftPosition> {};

TEST_P(TreeWalk, undoFenAndSanHoldAtEveryNode) {
    const PerftPosition& start = GetParam();
    Walk walk(start.walkStride);
    ChessBoard board = ChessBoard::fromFen(start.fen);
    walk.visit(board, start.walkDepth - (isSanitized ? 1 : 0));
    EXPECT_GE(walk.nodes(), isSanitized ? 1000U : 100000U);
    RecordProperty("nodes", std::to_string(walk.nodes()));
}

INSTANTIATE_TEST_SUITE_P(Known, TreeWalk, ::testing::ValuesIn(perftPositions()),
                         [](const auto& tested) { return std::string(tested.param.name); });

}  // namespace
}  // namespace orlix
