#include <cstdint>

#include "core/board_builder.h"

namespace orlix {
namespace {

TEST(Play, movesThatAreNotLegalLeaveTheBoardUntouched) {
    struct Case {
        const char* name;
        const char* fen;
        Move move;
    };
    const std::vector<Case> cases{
        {"empty origin", "4k3/8/8/8/8/8/8/4K3 w - - 0 1", mv("a1a2")},
        {"the other side's piece", "4k3/8/8/8/8/8/8/4K3 w - - 0 1", mv("e8e7")},
        {"not how it moves", "4k3/8/8/8/8/8/8/4K3 w - - 0 1", mv("e1e3")},
        {"into check", "4kr2/8/8/8/8/8/8/4K3 w - - 0 1", mv("e1f1")},
        {"promotion missing", "8/4P3/8/8/8/8/8/K1k5 w - - 0 1", mv("e7e8")},
        {"promotion to a king", "8/4P3/8/8/8/8/8/K1k5 w - - 0 1", mv("e7e8k")},
        {"promotion to a pawn", "8/4P3/8/8/8/8/8/K1k5 w - - 0 1", mv("e7e8p")},
        {"promotion not needed", "4k3/8/8/8/8/8/4P3/4K3 w - - 0 1", mv("e2e4q")},
        {"promotion of a king", "4k3/8/8/8/8/8/4P3/4K3 w - - 0 1", mv("e1d1q")},
        {"outside the board", "4k3/8/8/8/8/8/4P3/4K3 w - - 0 1", Move{{4, 1}, {4, 99}, {}}},
        {"another name of the same index", "4k3/8/8/8/8/8/4P3/4K3 w - - 0 1", Move{{12, 0}, {4, 2}, {}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        ChessBoard board = ChessBoard::fromFen(c.fen);
        const ChessBoard before = board;
        EXPECT_FALSE(board.play(c.move));
        EXPECT_EQ(board, before);
    }
}

TEST(Play, everyFieldOfThePositionFollowsTheMove) {
    struct Case {
        const char* name;
        const char* fen;
        const char* move;
        const char* after;
    };
    const std::vector<Case> cases{
        {"double step sets the target though nobody can take",
         "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", "e2e4",
         "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1"},
        {"black's double step counts the move", "4k3/3p4/8/8/8/8/8/4K3 b - - 5 7", "d7d5",
         "4k3/8/8/3p4/8/8/8/4K3 w - d6 0 8"},
        {"single step sets no target", "4k3/8/8/8/8/8/3P4/4K3 w - - 5 7", "d2d3",
         "4k3/8/8/8/8/3P4/8/4K3 b - - 0 7"},
        {"a quiet move clears the target", "4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 8", "e1e2",
         "4k3/8/8/3pP3/8/8/4K3/8 b - - 1 8"},
        {"a capture resets the clock", "4k3/8/8/8/8/8/4r3/4K3 w - - 41 60", "e1e2",
         "4k3/8/8/8/8/8/4K3/8 b - - 0 60"},
        {"en passant", "4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 8", "e5d6", "4k3/8/3P4/8/8/8/8/4K3 b - - 0 8"},
        {"en passant by black", "4k3/8/8/8/3pP3/8/8/4K3 b - e3 0 8", "d4e3",
         "4k3/8/8/8/8/4p3/8/4K3 w - - 0 9"},
        {"en passant without a pawn to take", "4k3/8/8/4P3/8/8/8/4K3 w - d6 3 8", "e5d6",
         "4k3/8/3P4/8/8/8/8/4K3 b - - 0 8"},
        {"en passant on the last rank stays a pawn", "7k/4P3/8/8/8/8/8/4K3 w - d8 3 8", "e7d8",
         "3P3k/8/8/8/8/8/8/4K3 b - - 0 8"},
        {"white castles king side", "4k3/8/8/8/8/8/8/R3K2R w KQ - 3 9", "e1g1",
         "4k3/8/8/8/8/8/8/R4RK1 b - - 4 9"},
        {"white castles queen side", "4k3/8/8/8/8/8/8/R3K2R w KQ - 3 9", "e1c1",
         "4k3/8/8/8/8/8/8/2KR3R b - - 4 9"},
        {"black castles king side", "r3k2r/8/8/8/8/8/8/4K3 b kq - 3 9", "e8g8",
         "r4rk1/8/8/8/8/8/8/4K3 w - - 4 10"},
        {"black castles queen side", "r3k2r/8/8/8/8/8/8/4K3 b kq - 3 9", "e8c8",
         "2kr3r/8/8/8/8/8/8/4K3 w - - 4 10"},
        {"castling without a rook moves the king alone", "4k3/8/8/8/8/8/8/4K3 w K - 3 9", "e1g1",
         "4k3/8/8/8/8/8/8/6K1 b - - 4 9"},
        {"castling moves whatever stands in the corner", "4k3/8/8/8/8/8/8/4K2n w K - 3 9", "e1g1",
         "4k3/8/8/8/8/8/8/5nK1 b - - 4 9"},
        {"castling clears the target", "4k3/8/8/8/8/8/8/4K2R w K c6 3 9", "e1g1",
         "4k3/8/8/8/8/8/8/5RK1 b - - 4 9"},
        {"a king move clears both its flags", "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1", "e1e2",
         "r3k2r/8/8/8/8/8/4K3/R6R b kq - 1 1"},
        {"black's king too", "r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1", "e8d8",
         "r2k3r/8/8/8/8/8/8/R3K2R w KQ - 1 2"},
        {"a rook leaves a1", "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1", "a1b1",
         "r3k2r/8/8/8/8/8/8/1R2K2R b Kkq - 1 1"},
        {"a rook leaves h1", "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1", "h1h2",
         "r3k2r/8/8/8/8/8/7R/R3K3 b Qkq - 1 1"},
        {"a rook leaves a8", "r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1", "a8b8",
         "1r2k2r/8/8/8/8/8/8/R3K2R w KQk - 1 2"},
        {"a rook leaves h8", "r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1", "h8h7",
         "r3k3/7r/8/8/8/8/8/R3K2R w KQq - 1 2"},
        {"rook takes rook: both corners", "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1", "a1a8",
         "R3k2r/8/8/8/8/8/8/4K2R b Kk - 0 1"},
        {"a bishop lands on h8", "4k2r/8/8/8/3B4/8/8/4K3 w k - 0 1", "d4h8",
         "4k2B/8/8/8/8/8/8/4K3 b - - 0 1"},
        {"a rook of the other colour leaves the corner", "4k3/8/8/8/8/8/8/r2K4 b Q - 0 1", "a1a2",
         "4k3/8/8/8/8/8/r7/3K4 w - - 1 2"},
        {"another piece leaving the corner keeps the flag", "4k3/8/8/8/8/8/8/N3K3 w Q - 0 1", "a1b3",
         "4k3/8/8/8/8/1N6/8/4K3 b Q - 1 1"},
        {"an own piece landing in the corner clears the flag", "4k3/8/8/8/8/1N6/8/4K3 w Q - 0 1", "b3a1",
         "4k3/8/8/8/8/8/8/N3K3 b - - 1 1"},
        {"promotion", "7k/4P3/8/8/8/8/8/4K3 w - - 9 9", "e7e8n", "4N2k/8/8/8/8/8/8/4K3 b - - 0 9"},
        {"promotion with capture of a rook at home", "r3k3/1P6/8/8/8/8/8/4K3 w q - 9 9", "b7a8r",
         "R3k3/8/8/8/8/8/8/4K3 b - - 0 9"},
        {"counters below zero go on from there", "4k3/8/8/8/8/8/8/4K3 b - - -7 -3", "e8e7",
         "8/4k3/8/8/8/8/8/4K3 w - - -6 -2"},
        {"a double step onto a loaded target", "4k3/8/8/8/8/8/4P3/4K3 w - e4 1 1", "e2e4",
         "4k3/8/8/8/4P3/8/8/4K3 b - e3 0 1"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        ChessBoard board = ChessBoard::fromFen(c.fen);
        ASSERT_TRUE(board.play(mv(c.move)));
        EXPECT_EQ(board.fen(), c.after);
    }
}

TEST(Play, recordHoldsWhatWasBefore) {
    ChessBoard board = ChessBoard::fromFen("r3k3/1P6/8/8/8/8/8/4K3 w q e6 9 9");
    const std::optional<Piece> rook = board[sq("a8")];
    ASSERT_TRUE(board.play(mv("b7a8q")));
    ASSERT_EQ(board.history.size(), 1U);
    const MoveRecord& record = board.history.front();
    EXPECT_EQ(record.move, mv("b7a8q"));
    EXPECT_EQ(record.san, "bxa8=Q+");
    EXPECT_EQ(record.capturedPiece, rook);
    EXPECT_EQ(record.previousCastling, (CastlingRights{false, false, false, true}));
    EXPECT_EQ(record.previousEnPassant, sq("e6"));
    EXPECT_EQ(record.previousHalfmove, 9);
    EXPECT_EQ(record.fenAfter, board.fen());
    EXPECT_EQ(record.fenAfter, "Q3k3/8/8/8/8/8/8/4K3 b - - 0 9");
}

TEST(Play, capturedPieceIsWhatLeavesTheBoard) {
    struct Case {
        const char* name;
        const char* fen;
        const char* move;
        std::optional<std::string> capturedFrom;
    };
    const std::vector<Case> cases{
        {"quiet move", "4k3/8/8/8/8/8/8/4K3 w - - 0 1", "e1e2", std::nullopt},
        {"capture", "4k3/8/8/8/8/8/4r3/4K3 w - - 0 1", "e1e2", "e2"},
        {"en passant", "4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 8", "e5d6", "d5"},
        {"en passant with nobody there", "4k3/8/8/4P3/8/8/8/4K3 w - d6 0 8", "e5d6", std::nullopt},
        {"a piece on the target square", "4k3/8/3n4/3pP3/8/8/8/4K3 w - d6 0 8", "e5d6", "d6"},
        {"a step onto the target takes nothing", "4k3/8/8/3pP3/8/8/8/4K3 w - e6 0 8", "e5e6", std::nullopt},
        {"castling", "4k3/8/8/8/8/8/8/4K2R w K - 0 1", "e1g1", std::nullopt},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        ChessBoard board = ChessBoard::fromFen(c.fen);
        const std::optional<Piece> expected = c.capturedFrom ? board[sq(*c.capturedFrom)] : std::nullopt;
        ASSERT_TRUE(board.play(mv(c.move)));
        EXPECT_EQ(board.history.back().capturedPiece, expected);
    }
}

TEST(Play, piecesKeepTheirIdentityExceptThroughPromotion) {
    ChessBoard board = ChessBoard::fromFen("4k3/1P6/8/8/8/8/8/4K2R w K - 0 1");
    const Piece king = *board[sq("e1")];
    const Piece rook = *board[sq("h1")];
    const Piece pawn = *board[sq("b7")];
    ASSERT_TRUE(board.play(mv("e1g1")));
    EXPECT_EQ(board[sq("g1")], king);
    EXPECT_EQ(board[sq("f1")], rook);
    ASSERT_TRUE(board.play(mv("e8e7")));
    ASSERT_TRUE(board.play(mv("b7b8q")));
    EXPECT_NE(board[sq("b8")]->id, pawn.id);
    EXPECT_EQ(board[sq("b8")]->type, PieceType::queen);
    EXPECT_EQ(board[sq("b8")]->color, PieceColor::white);
}

TEST(Play, repetitionsAreCountedByKey) {
    ChessBoard board;
    const std::string start = board.positionHashKey();
    ASSERT_TRUE(board.play(mv("e2e4")));
    EXPECT_EQ(board.enPassantTarget, sq("e3"));
    EXPECT_EQ(board.positionHashKey(), "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3");
    EXPECT_EQ(board.positionHistory.size(), 2U);
    EXPECT_EQ(board.positionHistory.at(start), 1);
    EXPECT_EQ(board.positionHistory.at(board.positionHashKey()), 1);

    // The same placement without the target is another position.
    board = played(board, "g8f6 g1f3 f6g8 f3g1");
    EXPECT_EQ(board.positionHistory.at(board.positionHashKey()), 1);
    board = played(board, "g8f6 g1f3 f6g8 f3g1");
    EXPECT_EQ(board.positionHistory.at(board.positionHashKey()), 2);

    // A key that was taken out counts from nothing.
    board.positionHistory.clear();
    ASSERT_TRUE(board.play(mv("g8f6")));
    EXPECT_EQ(board.positionHistory.size(), 1U);
    EXPECT_EQ(board.positionHistory.at(board.positionHashKey()), 1);
}

TEST(Play, countersOfAnySizeAreSafe) {
    ChessBoard board =
        ChessBoard::fromFen("4k3/8/8/8/8/8/8/4K3 b - - 9223372036854775807 9223372036854775807");
    const std::string before = board.fen();
    ASSERT_TRUE(board.play(mv("e8e7")));
    EXPECT_EQ(board.halfmoveClock, INT64_MAX);
    EXPECT_EQ(board.gameEndReason(), GameEndReason::fiftyMoveRule());
    ASSERT_TRUE(board.undo());
    EXPECT_EQ(board.fen(), before);
}

}  // namespace
}  // namespace orlix
