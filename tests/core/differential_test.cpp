#include "core/proof_support.h"
#include "core/reference_rules.h"

namespace orlix {
namespace {

// Promoted pieces and pawns come back with ids of their own: equal but for the id on `square`.
void expectEqualButForId(ChessBoard actual, const ChessBoard& expected, Square square, bool hasNewId,
                         const std::string& context) {
    if (hasNewId && actual[square] && expected[square]) actual[square]->id = expected[square]->id;
    EXPECT_TRUE(actual == expected) << context << "\n  is       " << actual.fen() << "\n  expected "
                                    << expected.fen();
}

void compareMoves(const ChessBoard& board) {
    ASSERT_EQ(texts(board.generateLegalMoves()), texts(reference::legalMoves(board))) << board.fen();
    ASSERT_EQ(board.gameEndReason(), reference::gameEndReason(board)) << board.fen();
}

void compareAttacks(const ChessBoard& board) {
    for (const Square square : Square::allSquares()) {
        for (const PieceColor color : allPieceColors) {
            ASSERT_EQ(board.isSquareAttacked(square, color), reference::isAttacked(board, square, color))
                << board.fen() << ' ' << square.algebraic();
        }
    }
}

void comparePlayAndUndo(const ChessBoard& board, const Move& move) {
    const std::string context = board.fen() + ' ' + move.uciString();
    ChessBoard expected = board;
    const MoveRecord record{move,
                            reference::san(board, move),
                            reference::capturedPiece(board, move),
                            board.castlingRights,
                            board.enPassantTarget,
                            board.halfmoveClock,
                            {}};
    reference::apply(expected, move);
    expected.history.push_back(record);
    expected.history.back().fenAfter = expected.fen();
    ++expected.positionHistory[expected.positionHashKey()];

    ChessBoard actual = board;
    ASSERT_TRUE(actual.play(move)) << context;
    EXPECT_EQ(actual.history.back().san, record.san) << context;
    expectEqualButForId(actual, expected, move.to, move.promotion.has_value(), context);

    reference::undo(expected);
    ASSERT_TRUE(actual.undo()) << context;
    expectEqualButForId(actual, expected, move.from, move.promotion.has_value(), context + " undone");
}

TEST(Rules, agreeWithTheReferenceOverNonsensePositions) {
    std::mt19937_64 random(20261120);
    const int positions = isSanitized ? 300 : 6000;
    std::uint64_t moveCount = 0;
    for (int i = 0; i < positions && !::testing::Test::HasFailure(); ++i) {
        const ChessBoard board = nonsensePosition(random);
        compareMoves(board);
        compareAttacks(board);
        const std::vector<Move> moves = board.generateLegalMoves();
        moveCount += moves.size();
        // Two at random, and every move with a rule of its own: onto the target, by a king's jump.
        for (int pick = 0; pick < 2 && !moves.empty(); ++pick) {
            comparePlayAndUndo(board, moves[below(random, moves.size())]);
        }
        for (const Move& move : moves) {
            const bool isCastling =
                board[move.from]->type == PieceType::king && std::abs(move.to.file - move.from.file) == 2;
            if (isCastling || move.to == board.enPassantTarget) comparePlayAndUndo(board, move);
        }
    }
    EXPECT_GT(moveCount, static_cast<std::uint64_t>(positions) * 10);
}

TEST(Rules, agreeWithTheReferenceOverRandomGames) {
    std::mt19937_64 random(64);
    const int games = isSanitized ? 2 : 15;
    for (int game = 0; game < games && !::testing::Test::HasFailure(); ++game) {
        ChessBoard board;
        for (int ply = 0; ply < 160 && !board.isGameOver(); ++ply) {
            compareMoves(board);
            const std::vector<Move> moves = board.generateLegalMoves();
            const Move move = moves[below(random, moves.size())];
            if (ply % 4 == game % 4) compareAttacks(board);
            comparePlayAndUndo(board, move);
            if (::testing::Test::HasFailure()) return;
            ASSERT_TRUE(board.play(move));
        }
    }
}

}  // namespace
}  // namespace orlix
