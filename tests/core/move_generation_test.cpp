#include <algorithm>

#include "core/board_builder.h"

namespace orlix {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

std::vector<std::string> movesFrom(const std::string& fen, std::string_view from) {
    return texts(ChessBoard::fromFen(fen).legalMoves(sq(from)));
}

TEST(MoveGeneration, theStartHasTwentyMovesInOrder) {
    EXPECT_THAT(texts(ChessBoard().generateLegalMoves()),
                ElementsAre("b1a3", "b1c3", "g1f3", "g1h3", "a2a3", "a2a4", "b2b3", "b2b4", "c2c3", "c2c4",
                            "d2d3", "d2d4", "e2e3", "e2e4", "f2f3", "f2f4", "g2g3", "g2g4", "h2h3", "h2h4"));
}

TEST(MoveGeneration, blackIsListedFromTheFirstRankToo) {
    const ChessBoard board = played(ChessBoard(), "e2e4");
    EXPECT_THAT(texts(board.generateLegalMoves()),
                ElementsAre("a7a6", "a7a5", "b7b6", "b7b5", "c7c6", "c7c5", "d7d6", "d7d5", "e7e6", "e7e5",
                            "f7f6", "f7f5", "g7g6", "g7g5", "h7h6", "h7h5", "b8a6", "b8c6", "g8f6", "g8h6"));
}

TEST(MoveGeneration, eachPieceListsItsTargetsInItsOwnOrder) {
    struct Case {
        const char* name;
        const char* fen;
        const char* from;
        std::vector<std::string> moves;
    };
    const std::vector<Case> cases{
        {"knight",
         "8/8/8/8/4N3/8/8/8 w - - 0 1",
         "e4",
         {"e4c3", "e4c5", "e4d2", "e4d6", "e4f2", "e4f6", "e4g3", "e4g5"}},
        {"knight in the corner", "8/8/8/8/8/8/8/N7 w - - 0 1", "a1", {"a1b3", "a1c2"}},
        {"bishop",
         "8/8/8/8/8/2B5/8/8 w - - 0 1",
         "c3",
         {"c3d4", "c3e5", "c3f6", "c3g7", "c3h8", "c3d2", "c3e1", "c3b4", "c3a5", "c3b2", "c3a1"}},
        {"rook", "8/8/8/8/8/2R5/8/8 b - - 0 1", "c3", {}},
        {"black rook",
         "8/8/8/8/8/2r5/8/8 b - - 0 1",
         "c3",
         {"c3c4", "c3c5", "c3c6", "c3c7", "c3c8", "c3c2", "c3c1", "c3d3", "c3e3", "c3f3", "c3g3", "c3h3",
          "c3b3", "c3a3"}},
        {"queen: bishop rays, then rook rays",
         "8/8/8/8/8/8/1Q6/8 w - - 0 1",
         "b2",
         {"b2c3", "b2d4", "b2e5", "b2f6", "b2g7", "b2h8", "b2c1", "b2a3", "b2a1", "b2b3", "b2b4", "b2b5",
          "b2b6", "b2b7", "b2b8", "b2b1", "b2c2", "b2d2", "b2e2", "b2f2", "b2g2", "b2h2", "b2a2"}},
        {"rays end at own pieces and on captures",
         "8/8/8/2p5/8/P1R2p2/2N5/8 w - - 0 1",
         "c3",
         {"c3c4", "c3c5", "c3d3", "c3e3", "c3f3", "c3b3"}},
        {"king",
         "8/8/8/8/4K3/8/8/8 w - - 0 1",
         "e4",
         {"e4d3", "e4d4", "e4d5", "e4e3", "e4e5", "e4f3", "e4f4", "e4f5"}},
        {"castling comes last, king side first",
         "8/8/8/8/8/8/8/R3K2R w KQ - 0 1",
         "e1",
         {"e1d1", "e1d2", "e1e2", "e1f1", "e1f2", "e1g1", "e1c1"}},
        {"pawn: steps, then captures to the lower and the higher file",
         "8/8/8/8/8/p1p5/1P6/8 w - - 0 1",
         "b2",
         {"b2b3", "b2b4", "b2a3", "b2c3"}},
        {"black pawn", "8/1p6/P1P5/8/8/8/8/8 b - - 0 1", "b7", {"b7b6", "b7b5", "b7a6", "b7c6"}},
        {"promotion by step and capture",
         "r7/1P6/8/8/8/8/8/8 w - - 0 1",
         "b7",
         {"b7b8q", "b7b8r", "b7b8b", "b7b8n", "b7a8q", "b7a8r", "b7a8b", "b7a8n"}},
        {"promotion by both captures",
         "r1r5/1P6/8/8/8/8/8/8 w - - 0 1",
         "b7",
         {"b7b8q", "b7b8r", "b7b8b", "b7b8n", "b7a8q", "b7a8r", "b7a8b", "b7a8n", "b7c8q", "b7c8r", "b7c8b",
          "b7c8n"}},
        {"black promotion", "8/8/8/8/8/8/6p1/8 b - - 0 1", "g2", {"g2g1q", "g2g1r", "g2g1b", "g2g1n"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_THAT(movesFrom(c.fen, c.from), ElementsAreArray(c.moves));
    }
}

TEST(MoveGeneration, pawnsStepOnlyWhereTheyMay) {
    struct Case {
        const char* name;
        const char* fen;
        const char* from;
        std::vector<std::string> moves;
    };
    const std::vector<Case> cases{
        {"blocked", "8/8/8/8/8/4p3/4P3/8 w - - 0 1", "e2", {}},
        {"blocked two ahead", "8/8/8/8/4p3/8/4P3/8 w - - 0 1", "e2", {"e2e3"}},
        {"no double step after the start rank", "8/8/8/8/8/4P3/8/8 w - - 0 1", "e3", {"e3e4"}},
        {"white pawn on the first rank steps once", "8/8/8/8/8/8/8/4P3 w - - 0 1", "e1", {"e1e2"}},
        {"white pawn on the last rank is stuck", "3ppp2/4P3/8/8/8/8/8/8 w - - 0 1", "e8", {}},
        {"white pawn on the eighth rank", "3pPp2/8/8/8/8/8/8/8 w - - 0 1", "e8", {}},
        {"black pawn on the first rank", "8/8/8/8/8/8/8/3PpP2 b - - 0 1", "e1", {}},
        {"black pawn on the eighth rank steps once", "4p3/8/8/8/8/8/8/8 b - - 0 1", "e8", {"e8e7"}},
        {"captures do not wrap around the edge", "8/8/8/7p/P7/7p/8/8 w - - 0 1", "a4", {"a4a5"}},
        {"nor on the other side", "8/8/p7/7P/p7/8/8/8 w - - 0 1", "h5", {"h5h6"}},
        {"own pieces are not captured", "8/8/8/3NpN2/4P3/8/8/8 w - - 0 1", "e4", {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_THAT(movesFrom(c.fen, c.from), ElementsAreArray(c.moves));
    }
}

TEST(MoveGeneration, theEnPassantTargetIsTakenAsWritten) {
    struct Case {
        const char* name;
        const char* fen;
        const char* from;
        std::vector<std::string> moves;
    };
    const std::vector<Case> cases{
        {"as played", "8/8/8/3pP3/8/8/8/8 w - d6 0 1", "e5", {"e5e6", "e5d6"}},
        {"black", "8/8/8/8/3pP3/8/8/8 b - e3 0 1", "d4", {"d4d3", "d4e3"}},
        {"not beside the target", "8/8/8/3p1P2/8/8/8/8 w - d6 0 1", "f5", {"f5f6"}},
        {"no pawn to take", "8/8/8/4P3/8/8/8/8 w - d6 0 1", "e5", {"e5e6", "e5d6"}},
        {"on any rank", "8/8/8/8/8/8/4P3/8 w - f3 0 1", "e2", {"e2e3", "e2e4", "e2f3"}},
        {"on the last rank without promotion",
         "8/4P3/8/8/8/8/8/8 w - d8 0 1",
         "e7",
         {"e7e8q", "e7e8r", "e7e8b", "e7e8n", "e7d8"}},
        {"an enemy piece on it is captured as usual",
         "8/8/3n4/4P3/8/8/8/8 w - d6 0 1",
         "e5",
         {"e5e6", "e5d6"}},
        {"an enemy piece on it on the last rank promotes",
         "3n4/4P3/8/8/8/8/8/8 w - d8 0 1",
         "e7",
         {"e7e8q", "e7e8r", "e7e8b", "e7e8n", "e7d8q", "e7d8r", "e7d8b", "e7d8n"}},
        {"even onto an own piece", "8/8/3N4/4P3/8/8/8/8 w - d6 0 1", "e5", {"e5e6", "e5d6"}},
        {"taking would uncover the king along the rank", "8/8/8/K2pP2r/8/8/8/8 w - d6 0 1", "e5", {"e5e6"}},
        {"taking answers a check by the pawn", "8/8/8/8/1k1Pp3/8/8/7K b - d3 0 1", "e4", {"e4e3", "e4d3"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_THAT(movesFrom(c.fen, c.from), ElementsAreArray(c.moves));
    }
}

TEST(MoveGeneration, castlingNeedsItsFlagEmptySquaresAndSafety) {
    struct Case {
        const char* name;
        const char* fen;
        bool kingside;
        bool queenside;
    };
    const std::vector<Case> cases{
        {"both", "8/8/8/8/8/8/8/R3K2R w KQ - 0 1", true, true},
        {"black both", "r3k2r/8/8/8/8/8/8/8 b kq - 0 1", true, true},
        {"only the king side's flag", "8/8/8/8/8/8/8/R3K2R w K - 0 1", true, false},
        {"only the queen side's flag", "8/8/8/8/8/8/8/R3K2R w Q - 0 1", false, true},
        {"the other colour's flags", "8/8/8/8/8/8/8/R3K2R w kq - 0 1", false, false},
        {"black with white's flags", "r3k2r/8/8/8/8/8/8/8 b KQ - 0 1", false, false},
        {"flags without rooks", "8/8/8/8/8/8/8/4K3 w KQ - 0 1", true, true},
        {"f1 occupied", "8/8/8/8/8/8/8/R3KB1R w KQ - 0 1", false, true},
        {"g1 occupied", "8/8/8/8/8/8/8/R3K1NR w KQ - 0 1", false, true},
        {"d1 occupied", "8/8/8/8/8/8/8/R2QK2R w KQ - 0 1", true, false},
        {"c1 occupied", "8/8/8/8/8/8/8/R1B1K2R w KQ - 0 1", true, false},
        {"b1 occupied", "8/8/8/8/8/8/8/RN2K2R w KQ - 0 1", true, false},
        {"f1 attacked by a bishop on a6", "8/8/b7/8/8/8/8/4K2R w K - 0 1", false, false},
        {"f1 attacked", "5r2/8/8/8/8/8/8/R3K2R w KQ - 0 1", false, true},
        {"g1 attacked", "6r1/8/8/8/8/8/8/R3K2R w KQ - 0 1", false, true},
        {"h1 attacked", "7r/8/8/8/8/8/8/R3K2R w KQ - 0 1", true, true},
        {"d1 attacked", "3r4/8/8/8/8/8/8/R3K2R w KQ - 0 1", true, false},
        {"c1 attacked", "2r5/8/8/8/8/8/8/R3K2R w KQ - 0 1", true, false},
        {"b1 attacked", "1r6/8/8/8/8/8/8/R3K2R w KQ - 0 1", true, true},
        {"a1 attacked", "r7/8/8/8/8/8/8/R3K2R w KQ - 0 1", true, true},
        {"in check", "4r3/8/8/8/8/8/8/R3K2R w KQ - 0 1", false, false},
        {"king off its square", "8/8/8/8/8/8/8/R2K3R w KQ - 0 1", false, false},
        {"king on e of another rank", "8/8/8/8/8/8/4K3/R6R w KQ - 0 1", false, false},
        {"white king on black's square", "r3K2r/8/8/8/8/8/8/8 w KQkq - 0 1", false, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const ChessBoard board = ChessBoard::fromFen(c.fen);
        const std::string rank = board.turn == PieceColor::white ? "1" : "8";
        const auto moves = texts(board.generateLegalMoves());
        const std::string kingside = "e" + rank + "g" + rank;
        const std::string queenside = "e" + rank + "c" + rank;
        EXPECT_EQ(std::count(moves.begin(), moves.end(), kingside), c.kingside ? 1 : 0);
        EXPECT_EQ(std::count(moves.begin(), moves.end(), queenside), c.queenside ? 1 : 0);
    }
}

TEST(MoveGeneration, movesThatLeaveTheKingAttackedAreDropped) {
    struct Case {
        const char* name;
        const char* fen;
        std::vector<std::string> moves;
    };
    const std::vector<Case> cases{
        {"pinned rook stays on its file",
         "4r3/8/8/8/8/8/4R3/4K3 w - - 0 1",
         {"e1d1", "e1d2", "e1f1", "e1f2", "e2e3", "e2e4", "e2e5", "e2e6", "e2e7", "e2e8"}},
        {"pinned knight stays", "8/8/8/8/7b/8/5N2/4K3 w - - 0 1", {"e1d1", "e1d2", "e1e2", "e1f1"}},
        {"a check is answered", "8/8/8/8/8/8/3q4/R3K3 w Q - 0 1", {"e1d2", "e1f1"}},
        {"kings keep apart", "8/8/8/8/8/k7/8/K7 w - - 0 1", {"a1b1"}},
        {"double check moves the king", "4r3/8/8/8/8/3n4/8/4K2R w - - 0 1", {"e1d1", "e1d2", "e1f1"}},
        {"the king does not stay on the checking line",
         "8/8/8/8/r3K3/8/8/8 w - - 0 1",
         {"e4d3", "e4d5", "e4e3", "e4e5", "e4f3", "e4f5"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_THAT(texts(ChessBoard::fromFen(c.fen).generateLegalMoves()), ElementsAreArray(c.moves));
    }
}

TEST(MoveGeneration, withoutAKingEveryMoveIsLegal) {
    EXPECT_THAT(texts(ChessBoard::fromFen("4r3/8/8/8/8/8/4R3/8 w - - 0 1").generateLegalMoves()),
                ElementsAre("e2e3", "e2e4", "e2e5", "e2e6", "e2e7", "e2e8", "e2e1", "e2f2", "e2g2", "e2h2",
                            "e2d2", "e2c2", "e2b2", "e2a2"));
}

TEST(MoveGeneration, ofSeveralKingsTheFirstInIndexOrderCounts) {
    // The king on a1 is safe; the one on h8 may stay attacked.
    const ChessBoard board = ChessBoard::fromFen("6rK/8/8/8/8/8/8/K7 w - - 0 1");
    EXPECT_THAT(texts(board.generateLegalMoves()),
                ElementsAre("a1a2", "a1b1", "a1b2", "h8g7", "h8g8", "h8h7"));
    EXPECT_EQ(board.findKing(PieceColor::white), sq("a1"));
    EXPECT_FALSE(board.isKingInCheck(PieceColor::white));
    // A king that moves before the other in index order becomes the one that counts.
    EXPECT_THAT(texts(ChessBoard::fromFen("8/8/8/8/8/8/K7/1K5r w - - 0 1").legalMoves(sq("a2"))),
                ElementsAre("a2a1"));
}

TEST(MoveGeneration, sidesWithoutPiecesHaveNoMoves) {
    EXPECT_THAT(ChessBoard::fromFen("8/8/8/8/8/8/8/8 w - - 0 1").generateLegalMoves(), IsEmpty());
    EXPECT_THAT(ChessBoard::fromFen("8/8/8/8/8/8/8/K7 b - - 0 1").generateLegalMoves(), IsEmpty());
}

TEST(MoveGeneration, movesFromASquareAreTheListFiltered) {
    const ChessBoard board =
        ChessBoard::fromFen("r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1");
    std::vector<Move> joined;
    for (const Square square : Square::allSquares()) {
        const std::vector<Move> moves = board.legalMoves(square);
        joined.insert(joined.end(), moves.begin(), moves.end());
    }
    EXPECT_EQ(joined, board.generateLegalMoves());
    EXPECT_EQ(joined.size(), 48U);
    EXPECT_THAT(board.legalMoves(sq("e4")), IsEmpty());
    EXPECT_THAT(board.legalMoves(sq("h8")), IsEmpty());      // not the side to move
    EXPECT_THAT(board.legalMoves(Square{8, 0}), IsEmpty());  // the index of a2, but not a2
}

TEST(Attack, eachKindOfPieceAttacksItsSquares) {
    struct Case {
        const char* name;
        const char* fen;
        PieceColor by;
        std::vector<std::string> attacked;
    };
    const std::vector<Case> cases{
        {"white pawn", "8/8/8/8/4P3/8/8/8 w - - 0 1", PieceColor::white, {"d5", "f5"}},
        {"black pawn", "8/8/8/8/4p3/8/8/8 w - - 0 1", PieceColor::black, {"d3", "f3"}},
        {"pawn at the edge", "8/8/8/8/P6P/8/8/8 w - - 0 1", PieceColor::white, {"b5", "g5"}},
        {"white pawn on the last rank attacks nothing", "4P3/8/8/8/8/8/8/8 w - - 0 1", PieceColor::white, {}},
        {"white pawn on the first rank", "8/8/8/8/8/8/8/4P3 w - - 0 1", PieceColor::white, {"d2", "f2"}},
        {"knight", "8/8/8/8/8/8/8/N7 w - - 0 1", PieceColor::white, {"c2", "b3"}},
        {"king", "8/8/8/8/8/8/8/k7 w - - 0 1", PieceColor::black, {"b1", "a2", "b2"}},
        {"bishop up to and onto a defender",
         "8/8/8/4p3/8/8/8/B7 w - - 0 1",
         PieceColor::white,
         {"b2", "c3", "d4", "e5"}},
        {"rook up to and onto its own",
         "8/8/8/8/N7/8/8/RN6 w - - 0 1",
         PieceColor::white,
         {"b1", "a2", "d2", "a3", "c3", "a4", "b2", "c5", "b6"}},
        {"queen in the corner",
         "8/8/8/8/8/P1P5/8/Q1P5 w - - 0 1",
         PieceColor::white,
         {"b1", "c1", "a2", "b2", "d2", "a3", "c3", "b4", "d4"}},
        {"the other colour attacks nothing", "8/8/8/8/8/8/8/Q7 w - - 0 1", PieceColor::black, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const ChessBoard board = ChessBoard::fromFen(c.fen);
        std::vector<std::string> attacked;
        for (const Square square : Square::allSquares()) {
            if (board.isSquareAttacked(square, c.by)) attacked.push_back(square.algebraic());
        }
        std::vector<std::string> expected = c.attacked;
        std::sort(expected.begin(), expected.end(),
                  [](const std::string& a, const std::string& b) { return sq(a).index() < sq(b).index(); });
        EXPECT_EQ(attacked, expected);
    }
}

TEST(Attack, checkNeedsAKingAndAnAttacker) {
    EXPECT_TRUE(ChessBoard::fromFen("4r3/8/8/8/8/8/8/4K3 w - - 0 1").isKingInCheck(PieceColor::white));
    EXPECT_FALSE(ChessBoard::fromFen("4r3/8/8/8/8/8/8/3K4 w - - 0 1").isKingInCheck(PieceColor::white));
    EXPECT_FALSE(ChessBoard::fromFen("4r3/8/8/8/8/8/8/8 w - - 0 1").isKingInCheck(PieceColor::white));
    // Not only the side to move is looked at.
    EXPECT_TRUE(ChessBoard::fromFen("4k3/8/8/8/8/8/8/4R3 w - - 0 1").isKingInCheck(PieceColor::black));
}

TEST(Attack, theKingIsFoundInIndexOrder) {
    const ChessBoard board = ChessBoard::fromFen("K6k/8/8/8/8/7k/K7/8 w - - 0 1");
    EXPECT_EQ(board.findKing(PieceColor::white), sq("a2"));
    EXPECT_EQ(board.findKing(PieceColor::black), sq("h3"));
    EXPECT_EQ(ChessBoard::fromFen("8/8/8/8/8/8/8/k7 w - - 0 1").findKing(PieceColor::white), std::nullopt);
}

}  // namespace
}  // namespace orlix
