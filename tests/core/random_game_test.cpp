#include <algorithm>
#include <iterator>
#include <map>
#include <set>

#include "core/proof_support.h"

namespace orlix {
namespace {

std::set<std::string> idsOf(const ChessBoard& board) {
    std::set<std::string> ids;
    for (const auto& piece : board.squares) {
        if (!piece) continue;
        EXPECT_TRUE(ids.insert(piece->id.text()).second) << "two pieces with one id: " << board.fen();
    }
    return ids;
}

std::string keyOf(const std::string& fen) {
    std::size_t end = 0;
    for (int field = 0; field < 4; ++field)
        end = fen.find(' ', end + 1);
    return fen.substr(0, end);
}

// The ids on the board change only as pieces are captured or promoted.
void checkIdentities(const std::set<std::string>& before, const std::set<std::string>& after,
                     const MoveRecord& record) {
    std::set<std::string> gone;
    std::set<std::string> fresh;
    std::set_difference(before.begin(), before.end(), after.begin(), after.end(),
                        std::inserter(gone, gone.end()));
    std::set_difference(after.begin(), after.end(), before.begin(), before.end(),
                        std::inserter(fresh, fresh.end()));
    const std::size_t promoted = record.move.promotion ? 1 : 0;
    EXPECT_EQ(gone.size(), promoted + (record.capturedPiece ? 1 : 0));
    EXPECT_EQ(fresh.size(), promoted);
    if (record.capturedPiece) {
        EXPECT_EQ(gone.count(record.capturedPiece->id.text()), 1U);
    }
}

void checkRepetitions(const ChessBoard& board, const std::string& startKey) {
    std::unordered_map<std::string, std::int64_t> expected{{startKey, 1}};
    for (const MoveRecord& record : board.history)
        ++expected[keyOf(record.fenAfter)];
    EXPECT_EQ(board.positionHistory, expected);
}

TEST(RandomGames, keepTheirBooksAndUnwindToTheStart) {
    std::map<GameEndReason::Kind, int> endings;
    const std::uint64_t seeds = isSanitized ? 10 : 150;
    for (std::uint64_t seed = 1; seed <= seeds && !HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937_64 random(seed);
        ChessBoard board;
        const std::string startKey = board.positionHashKey();
        std::vector<std::string> fens{board.fen()};
        // Odd seeds play on after the game's end by rule, as long as there are moves.
        while (fens.size() < 500) {
            const std::vector<Move> moves = board.generateLegalMoves();
            if (moves.empty() || (seed % 2 == 0 && board.isGameOver())) break;
            const std::set<std::string> before = idsOf(board);
            ASSERT_TRUE(board.play(moves[below(random, moves.size())]));
            checkIdentities(before, idsOf(board), board.history.back());
            EXPECT_EQ(board.history.back().fenAfter, board.fen());
            fens.push_back(board.fen());
        }
        if (const auto reason = board.gameEndReason()) ++endings[reason->kind];
        EXPECT_EQ(board.history.size() + 1, fens.size());
        checkRepetitions(board, startKey);

        while (!board.history.empty()) {
            fens.pop_back();
            ASSERT_TRUE(board.undo());
            ASSERT_EQ(board.fen(), fens.back());
        }
        EXPECT_EQ(board.positionHistory, ChessBoard().positionHistory);
        EXPECT_FALSE(board.undo());
    }
    if (!isSanitized) {
        EXPECT_GT(endings[GameEndReason::Kind::checkmate], 0);
        EXPECT_GT(endings[GameEndReason::Kind::stalemate], 0);
        EXPECT_GT(endings[GameEndReason::Kind::fiftyMoveRule], 0);
        EXPECT_GT(endings[GameEndReason::Kind::insufficientMaterial], 0);
    }
}

TEST(RandomGames, replayedFromTheirMovesTheyGiveTheSameRecords) {
    std::mt19937_64 random(7);
    ChessBoard board;
    while (!board.isGameOver() && board.history.size() < 300) {
        const std::vector<Move> moves = board.generateLegalMoves();
        ASSERT_TRUE(board.play(moves[below(random, moves.size())]));
    }
    ChessBoard replay;
    for (const MoveRecord& record : board.history) {
        const auto move = Move::fromUci(record.move.uciString());
        ASSERT_TRUE(move && replay.play(*move));
        EXPECT_EQ(replay.history.back().san, record.san);
        EXPECT_EQ(replay.history.back().fenAfter, record.fenAfter);
    }
    EXPECT_EQ(replay.positionHistory, board.positionHistory);
}

}  // namespace
}  // namespace orlix
