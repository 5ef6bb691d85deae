#include <gmock/gmock.h>

#include <limits>
#include <set>

#include "core/chess_board.h"

namespace orlix {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

const std::string emptyPlacement = "8/8/8/8/8/8/8/8";
const std::string startPlacement = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR";
const std::string startKey = startPlacement + " w KQkq -";

ChessBoard afterE4() {
    ChessBoard board;
    EXPECT_TRUE(board.play(*Move::fromUci("e2e4")));
    return board;
}

TEST(Fen, aNewBoardIsTheStandardStart) {
    const ChessBoard board;
    EXPECT_EQ(board.fen(), ChessBoard::standardStartingFEN);
    EXPECT_EQ(board.positionHashKey(), startKey);
    EXPECT_EQ(board.turn, PieceColor::white);
    EXPECT_EQ(board.castlingRights, (CastlingRights{true, true, true, true}));
    EXPECT_EQ(board.enPassantTarget, std::nullopt);
    EXPECT_EQ(board.halfmoveClock, 0);
    EXPECT_EQ(board.fullmoveNumber, 1);
    EXPECT_THAT(board.history, IsEmpty());
    EXPECT_THAT(board.positionHistory, ElementsAre(Pair(startKey, 1)));
}

TEST(Fen, theFirstRankGivenIsTheEighth) {
    const ChessBoard board = ChessBoard::fromFen("k6r/8/8/8/8/8/8/Q6B w - - 0 1");
    EXPECT_EQ(board.squares[0]->fenChar(), 'Q');
    EXPECT_EQ(board.squares[7]->fenChar(), 'B');
    EXPECT_EQ(board.squares[56]->fenChar(), 'k');
    EXPECT_EQ(board.squares[63]->fenChar(), 'r');
    EXPECT_EQ(board[*Square::fromText("h8")], board.squares[63]);
    EXPECT_EQ(board.at(7, 0), board.squares[7]);
}

TEST(Fen, fourFieldsAreEnough) {
    const ChessBoard board = ChessBoard::fromFen(emptyPlacement + " w - -");
    EXPECT_EQ(board.fen(), emptyPlacement + " w - - 0 1");
    for (const auto& piece : board.squares)
        EXPECT_EQ(piece, std::nullopt);
}

TEST(Fen, refusedTextThrowsItsCodeAndMessageAndLeavesTheBoard) {
    struct Case {
        std::string name;
        std::string fen;
        int code;
        std::string message;
    };
    const std::string components = "Invalid FEN: insufficient components";
    const std::string ranks = "Invalid FEN: rank count != 8";
    const std::string overflow = "Invalid FEN: file overflow";
    const std::vector<Case> cases{
        {"empty", "", 1, components},
        {"only white space", " \n ", 1, components},
        {"three fields", startPlacement + " w KQkq", 1, components},
        {"three fields and trailing spaces", startPlacement + " w KQkq   ", 1, components},
        {"tabs do not separate", startPlacement + "\tw\tKQkq\t-", 1, components},
        {"seven ranks", "8/8/8/8/8/8/8 w - -", 2, ranks},
        {"nine ranks", "8/8/8/8/8/8/8/8/8 w - -", 2, ranks},
        {"a slash at the end", emptyPlacement + "/ w - -", 2, ranks},
        {"too few fields is found before too few ranks", "8/8 w -", 1, components},
        {"two spaces make an empty field", "x  8 -", 2, ranks},
        {"piece after eight squares", "8/8/8/8/8/8/8/8P w - -", 3, overflow},
        {"ninth piece", "rnbqkbnrr/8/8/8/8/8/8/8 w - -", 3, overflow},
        {"piece after digits that overflow", "44p/8/8/8/8/8/8/8 w - -", 3, overflow},
        {"piece after a nine", "8/8/8/8/8/8/8/9k w - -", 3, overflow},
        {"skipped characters before the ninth piece", "8xxp/8/8/8/8/8/8/8 w - -", 3, overflow},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        ChessBoard board = afterE4();
        const ChessBoard before = board;
        try {
            board.load(c.fen);
            ADD_FAILURE() << "was accepted";
        } catch (const FenError& error) {
            EXPECT_EQ(error.code(), c.code);
            EXPECT_EQ(error.what(), c.message);
        }
        EXPECT_EQ(board, before);
        EXPECT_THROW(ChessBoard::fromFen(c.fen), FenError);
    }
    EXPECT_EQ(FenError::domain, "Velmorandix");
}

TEST(Fen, lenientTextIsReadAsFarAsItGoes) {
    struct Case {
        std::string name;
        std::string fen;
        std::string readAs;
    };
    const std::vector<Case> cases{
        {"short rank of digits", "7/8/8/8/8/8/8/8 w - - 0 1", emptyPlacement + " w - - 0 1"},
        {"short rank of pieces", "ppp/8/8/8/8/8/8/8 w - - 0 1", "ppp5/8/8/8/8/8/8/8 w - - 0 1"},
        {"empty ranks", "/////// w - - 0 1", emptyPlacement + " w - - 0 1"},
        {"a nine alone", "9/8/8/8/8/8/8/8 w - - 0 1", emptyPlacement + " w - - 0 1"},
        {"digits beyond the rank", "44/8/8/8/8/8/8/p99 w - - 0 1", "8/8/8/8/8/8/8/p7 w - - 0 1"},
        {"a zero advances nothing", "p0p/8/8/8/8/8/8/8 w - - 0 1", "pp6/8/8/8/8/8/8/8 w - - 0 1"},
        {"each digit by itself", "11p/8/8/8/8/8/8/8 w - - 0 1", "2p5/8/8/8/8/8/8/8 w - - 0 1"},
        {"unknown characters are skipped", "x.p-Z+q/8/8/8/8/8/8/8 w - - 0 1", "pq6/8/8/8/8/8/8/8 w - - 0 1"},
        {"characters beyond ASCII are skipped", "\u00E9p\u265Bq\u0664r/8/8/8/8/8/8/8 w - - 0 1",
         "pqr5/8/8/8/8/8/8/8 w - - 0 1"},
        {"broken UTF-8 is skipped", "\xFFp\xE2\x99q/8/8/8/8/8/8/8 w - - 0 1", "pq6/8/8/8/8/8/8/8 w - - 0 1"},
        {"a Kelvin sign is a white king", "\u212A/8/8/8/8/8/8/8 w - - 0 1", "K7/8/8/8/8/8/8/8 w - - 0 1"},
        {"no kings, many kings, pawns on back ranks", "pPpK4/8/8/8/8/8/8/KKKPpppp b - - 0 1",
         "pPpK4/8/8/8/8/8/8/KKKPpppp b - - 0 1"},
        {"black to move", emptyPlacement + " b - - 0 1", emptyPlacement + " b - - 0 1"},
        {"capital B", emptyPlacement + " B - - 0 1", emptyPlacement + " w - - 0 1"},
        {"turn x", emptyPlacement + " x - - 0 1", emptyPlacement + " w - - 0 1"},
        {"turn black in full", emptyPlacement + " black - - 0 1", emptyPlacement + " w - - 0 1"},
        {"two spaces make the turn empty", emptyPlacement + "  b - - 0 1", emptyPlacement + " w - - 0 0"},
        {"castling in any order", emptyPlacement + " w qkQK - 0 1", emptyPlacement + " w KQkq - 0 1"},
        {"castling among other letters", emptyPlacement + " w xqyqz - 0 1", emptyPlacement + " w q - 0 1"},
        {"target as written", emptyPlacement + " w - b5 0 1", emptyPlacement + " w - b5 0 1"},
        {"target in capitals", emptyPlacement + " w - E3 0 1", emptyPlacement + " w - e3 0 1"},
        {"target with a tab around", emptyPlacement + " w - e3\t 0 1", emptyPlacement + " w - e3 0 1"},
        {"target that is no square", emptyPlacement + " w - e9 0 1", emptyPlacement + " w - - 0 1"},
        {"empty target", emptyPlacement + " w -  7 9", emptyPlacement + " w - - 7 9"},
        {"clock abc", emptyPlacement + " w - - abc 5", emptyPlacement + " w - - 0 5"},
        {"number abc", emptyPlacement + " w - - 5 abc", emptyPlacement + " w - - 5 1"},
        {"no number", emptyPlacement + " w - - 12", emptyPlacement + " w - - 12 1"},
        {"number 0 as written", emptyPlacement + " w - - 0 0", emptyPlacement + " w - - 0 0"},
        {"signs", emptyPlacement + " w - - -3 +4", emptyPlacement + " w - - -3 4"},
        {"fractions are no integers", emptyPlacement + " w - - 1.5 2.0", emptyPlacement + " w - - 0 1"},
        {"too large for 64 bits", emptyPlacement + " w - - 9223372036854775808 9223372036854775808",
         emptyPlacement + " w - - 0 1"},
        {"largest", emptyPlacement + " w - - 9223372036854775807 -9223372036854775808",
         emptyPlacement + " w - - 9223372036854775807 -9223372036854775808"},
        {"fields after the sixth", emptyPlacement + " w - - 3 4 x y z", emptyPlacement + " w - - 3 4"},
        {"white space around", " \n\t" + startPlacement + " w KQkq - 0 1 \r\n",
         startPlacement + " w KQkq - 0 1"},
        {"wide white space around", "\u3000" + startPlacement + " w KQkq - 0 1\u00A0",
         startPlacement + " w KQkq - 0 1"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(ChessBoard::fromFen(c.fen).fen(), c.readAs);
    }
}

TEST(Fen, loadingReplacesHistoryAndRepetitions) {
    ChessBoard board = afterE4();
    board.load(emptyPlacement + " b Kq e3 4 5");
    EXPECT_THAT(board.history, IsEmpty());
    EXPECT_THAT(board.positionHistory, ElementsAre(Pair(emptyPlacement + " b Kq e3", 1)));
}

TEST(Fen, aBoardCanLoadTextOfItsOwnHistory) {
    ChessBoard board = afterE4();
    const std::string expected = board.history.back().fenAfter;
    board.load(board.history.back().fenAfter);
    EXPECT_EQ(board.fen(), expected);
}

TEST(Fen, loadingDrawsANewIdentityForEveryPiece) {
    const ChessBoard one;
    const ChessBoard other;
    std::set<std::string> ids;
    for (const ChessBoard* board : {&one, &other}) {
        for (const auto& piece : board->squares) {
            if (piece) ids.insert(piece->id.text());
        }
    }
    EXPECT_EQ(ids.size(), 64U);
    EXPECT_NE(one, other);
    EXPECT_EQ(one.fen(), other.fen());
    EXPECT_EQ(one.positionHistory, other.positionHistory);
}

TEST(Fen, keyLeavesTheCountersOut) {
    EXPECT_EQ(ChessBoard::fromFen(startKey + " 12 34").positionHashKey(), startKey);
    EXPECT_EQ(ChessBoard::fromFen(startKey + " 12 34").fen(), startKey + " 12 34");
    EXPECT_EQ(ChessBoard::fromFen("8/8/8/8/8/8/8/8 b Qk d6 1 2").positionHashKey(),
              "8/8/8/8/8/8/8/8 b Qk d6");
}

TEST(ChessBoard, equalityUsesAllEightFields) {
    const ChessBoard board = afterE4();
    const ChessBoard copy = board;
    EXPECT_EQ(board, copy);
    std::vector<ChessBoard> others(9, board);
    others[0].squares[12] = Piece::make(PieceType::queen, PieceColor::white);
    others[1].turn = PieceColor::white;
    others[2].castlingRights.whiteKingside = false;
    others[3].enPassantTarget.reset();
    others[4].halfmoveClock = 1;
    others[5].fullmoveNumber = 2;
    others[6].history.clear();
    others[7].positionHistory.clear();
    others[8].squares[0]->id = Uuid::random();
    for (std::size_t i = 0; i < others.size(); ++i)
        EXPECT_NE(board, others[i]) << i;
}

TEST(ChessBoard, aCopyLivesOnItsOwn) {
    ChessBoard board = afterE4();
    const ChessBoard copy = board;
    ASSERT_TRUE(board.play(*Move::fromUci("e7e5")));
    board.squares[0].reset();
    EXPECT_EQ(copy.history.size(), 1U);
    EXPECT_EQ(copy.positionHistory.size(), 2U);
    EXPECT_TRUE(copy.squares[0].has_value());
}

TEST(ChessBoard, squaresAreWrittenThroughBothAccessors) {
    ChessBoard board;
    board[Square{4, 3}] = Piece::make(PieceType::queen, PieceColor::white);
    board.at(0, 0).reset();
    EXPECT_EQ(board.squares[28]->type, PieceType::queen);
    EXPECT_EQ(board.squares[0], std::nullopt);
}

TEST(ChessBoardDeathTest, anIndexOutsideTheBoardStopsTheProgram) {
    ::testing::FLAGS_gtest_death_test_style = "threadsafe";
    ChessBoard board;
    const ChessBoard& constant = board;
    EXPECT_DEATH(board[(Square{0, 8})].reset(), "");
    EXPECT_DEATH(static_cast<void>(constant.at(-1, 0).has_value()), "");
    EXPECT_DEATH(static_cast<void>(constant.at(7, 8).has_value()), "");
}

}  // namespace
}  // namespace orlix
