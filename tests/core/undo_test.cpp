#include "core/board_builder.h"

namespace orlix {
namespace {

TEST(Undo, withoutHistoryNothingHappens) {
    ChessBoard board;
    const ChessBoard before = board;
    EXPECT_FALSE(board.undo());
    EXPECT_EQ(board, before);
}

TEST(Undo, givesBackTheBoardWithEveryIdentity) {
    struct Case {
        const char* name;
        const char* fen;
        const char* move;
    };
    const std::vector<Case> cases{
        {"step", "4k3/8/8/8/8/8/3P4/4K3 w - - 5 7", "d2d3"},
        {"double step", "4k3/3p4/8/8/8/8/8/4K3 b - e3 5 7", "d7d5"},
        {"capture", "4k3/8/8/8/8/8/4r3/4K3 w - - 41 60", "e1e2"},
        {"pawn capture beside the target", "4k3/8/5p2/3pP3/8/8/8/4K3 w - d6 0 8", "e5f6"},
        {"en passant", "4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 8", "e5d6"},
        {"en passant by black", "4k3/8/8/8/3pP3/8/8/4K3 b - e3 0 8", "d4e3"},
        {"en passant with nobody there", "4k3/8/8/4P3/8/8/8/4K3 w - d6 0 8", "e5d6"},
        {"another piece captures on the target square", "4k3/8/3n4/3p4/8/8/8/3QK3 w - d6 0 8", "d1d5"},
        {"a knight goes onto the target square", "4k3/8/8/3pN3/8/8/8/4K3 w - d7 0 8", "e5d7"},
        {"a knight captures on the target square", "4k3/3r4/8/3pN3/8/8/8/4K3 w - d7 0 8", "e5d7"},
        {"white castles king side", "4k3/8/8/8/8/8/8/R3K2R w KQ - 3 9", "e1g1"},
        {"white castles queen side", "4k3/8/8/8/8/8/8/R3K2R w KQ - 3 9", "e1c1"},
        {"black castles king side", "r3k2r/8/8/8/8/8/8/4K3 b kq - 3 9", "e8g8"},
        {"black castles queen side", "r3k2r/8/8/8/8/8/8/4K3 b kq - 3 9", "e8c8"},
        {"castling without a rook", "4k3/8/8/8/8/8/8/4K3 w KQ - 3 9", "e1c1"},
        {"a rook at home is captured", "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1", "a1a8"},
        {"a king steps", "r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 12 34", "e8d8"},
        {"counters below zero", "4k3/8/8/8/8/8/8/4K3 b - - -7 -3", "e8e7"},
        {"move number 0", "4k3/8/8/8/8/8/8/4K3 b - - 0 0", "e8e7"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        ChessBoard board = ChessBoard::fromFen(c.fen);
        const ChessBoard before = board;
        ASSERT_TRUE(board.play(mv(c.move)));
        ASSERT_NE(board, before);
        EXPECT_TRUE(board.undo());
        EXPECT_EQ(board, before);
    }
}

TEST(Undo, aPromotionGivesBackANewPawn) {
    for (const char* move : {"b7b8q", "b7a8n"}) {
        SCOPED_TRACE(move);
        ChessBoard board = ChessBoard::fromFen("r3k3/1P6/8/8/8/8/8/4K3 w q - 9 9");
        const ChessBoard before = board;
        ASSERT_TRUE(board.play(mv(move)));
        const Piece promoted = *board[mv(move).to];
        ASSERT_TRUE(board.undo());
        ASSERT_TRUE(board[sq("b7")]);
        EXPECT_NE(board[sq("b7")]->id, promoted.id);
        EXPECT_EQ(board[sq("b7")]->type, PieceType::pawn);
        EXPECT_EQ(board[sq("b7")]->color, PieceColor::white);
        EXPECT_NE(board[sq("b7")]->id, before[sq("b7")]->id);
        board[sq("b7")] = before[sq("b7")];
        EXPECT_EQ(board, before);
    }
}

TEST(Undo, aPieceCapturedOnTheEnPassantSquareComesBackBesideIt) {
    // The target square alone decides: a piece that a FEN put onto it comes back where a pawn would have
    // stood.
    ChessBoard board = ChessBoard::fromFen("4k3/8/3n4/4P3/8/8/8/4K3 w - d6 0 8");
    const std::optional<Piece> knight = board[sq("d6")];
    ASSERT_TRUE(board.play(mv("e5d6")));
    ASSERT_TRUE(board.undo());
    EXPECT_EQ(board[sq("d5")], knight);
    EXPECT_EQ(board.fen(), "4k3/8/8/3nP3/8/8/8/4K3 w - d6 0 8");
}

TEST(Undo, aCaptureThatPromotesOnTheEnPassantSquareComesBackOntoIt) {
    // The piece taken back is a queen, not a pawn, so the square beside the origin is not considered.
    ChessBoard board = ChessBoard::fromFen("3n3k/4P3/8/8/8/8/8/4K3 w - d8 0 8");
    const std::string before = board.fen();
    ASSERT_TRUE(board.play(mv("e7d8q")));
    ASSERT_TRUE(board.undo());
    EXPECT_EQ(board.fen(), before);
}

TEST(Undo, whateverTheEmptiedSquareHeldComesBack) {
    // The target of a FEN may have any piece behind it, an own one included.
    for (const char* fen : {"4k3/8/8/3rP3/8/8/8/4K3 w - d6 0 8", "4k3/8/8/3RP3/8/8/8/4K3 w - d6 0 8"}) {
        SCOPED_TRACE(fen);
        ChessBoard board = ChessBoard::fromFen(fen);
        const ChessBoard before = board;
        ASSERT_TRUE(board.play(mv("e5d6")));
        EXPECT_EQ(board[sq("d5")], std::nullopt);
        ASSERT_TRUE(board.undo());
        EXPECT_EQ(board, before);
    }
}

TEST(Undo, repetitionsAreUncounted) {
    ChessBoard board = played(ChessBoard(), "g1f3 g8f6 f3g1 f6g8");
    const std::string start = board.positionHashKey();
    EXPECT_EQ(board.positionHistory.at(start), 2);
    ASSERT_TRUE(board.undo());
    EXPECT_EQ(board.positionHistory.at(start), 1);
    const std::string third = board.positionHashKey();
    ASSERT_TRUE(board.undo());
    EXPECT_EQ(board.positionHistory.count(third), 0U);
}

TEST(Undo, aKeyThatIsNotInTheTableIsNoObstacle) {
    ChessBoard board = played(ChessBoard(), "e2e4");
    board.positionHistory.clear();
    EXPECT_TRUE(board.undo());
    EXPECT_TRUE(board.positionHistory.empty());
}

TEST(Undo, theWholeGameUnwinds) {
    const ChessBoard start;
    ChessBoard board =
        played(start, "e2e4 d7d5 e4d5 d8d5 b1c3 d5e5 f1e2 c8g4 g1f3 e5a5 e1g1 b8c6 h2h3 e8c8 h3g4");
    EXPECT_EQ(board.history.size(), 15U);
    while (!board.history.empty())
        ASSERT_TRUE(board.undo());
    EXPECT_EQ(board, start);
}

}  // namespace
}  // namespace orlix
