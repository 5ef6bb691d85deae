#include <algorithm>
#include <set>

#include "core/board_builder.h"

namespace orlix {
namespace {

TEST(Material, insufficiencyCountsPieces) {
    struct Case {
        const char* name;
        const char* placement;
        bool insufficient;
    };
    const std::vector<Case> cases{
        {"two kings", "4k3/8/8/8/8/8/8/4K3", true},
        {"any two pieces", "4q3/8/8/8/8/8/8/4R3", true},
        {"empty", "8/8/8/8/8/8/8/8", false},
        {"one king", "8/8/8/8/8/8/8/4K3", false},
        {"knight", "4k3/8/8/8/8/8/8/4KN2", true},
        {"black bishop", "4kb2/8/8/8/8/8/8/4K3", true},
        {"pawn", "4k3/8/8/8/8/8/4P3/4K3", false},
        {"rook", "4k3/8/8/8/8/8/8/4K2R", false},
        {"queen", "4k3/8/8/8/8/8/8/3QK3", false},
        {"a knight among any three", "4k3/8/8/8/8/8/8/3QN3", true},
        {"two knights of three pieces", "4k3/8/8/8/8/8/8/3NN3", false},
        {"knight and bishop of three pieces", "4k3/8/8/8/8/8/8/3NB3", false},
        {"bishops on dark squares", "4kb2/8/8/8/8/8/8/2B1K3", true},
        {"bishops on light squares", "2b1k3/8/8/8/8/8/8/4KB2", true},
        {"bishops on different shades", "2b1k3/8/8/8/8/8/8/2B1K3", false},
        {"two bishops of one side on the same shade", "4k3/8/8/8/8/8/1B6/2B1K3", false},
        {"two bishops of one side", "4k3/8/8/8/8/8/8/2B1KB2", false},
        {"two bishops of two sides beside anything", "4qb2/8/8/8/8/8/8/2B1R3", true},
        {"three bishops", "4kb2/8/8/8/8/8/8/2B1B3", false},
        {"two knights", "4k3/8/8/8/8/8/8/2N1KN2", false},
        {"a knight each", "4kn2/8/8/8/8/8/8/2N1K3", false},
        {"bishop against knight", "4kn2/8/8/8/8/8/8/2B1K3", false},
        {"three bishops on one shade among five", "4kb2/8/8/8/8/8/1B6/2B1K3", false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(ChessBoard::fromFen(std::string(c.placement) + " w - - 0 1").hasInsufficientMaterial(),
                  c.insufficient);
    }
}

TEST(Material, scoreIsTheBalanceFromWhitesSide) {
    struct Case {
        const char* placement;
        std::int64_t score;
    };
    for (const Case& c :
         {Case{"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR", 0}, Case{"8/8/8/8/8/8/8/8", 0},
          Case{"8/8/8/8/8/8/8/P7", 1}, Case{"8/8/8/8/8/8/8/N7", 3}, Case{"8/8/8/8/8/8/8/B7", 3},
          Case{"8/8/8/8/8/8/8/R7", 5}, Case{"8/8/8/8/8/8/8/Q7", 9}, Case{"8/8/8/8/8/8/8/K7", 0},
          Case{"q7/8/8/8/8/8/8/K7", -9}, Case{"krp5/8/8/8/8/8/8/KQN5", 6}}) {
        EXPECT_EQ(ChessBoard::fromFen(std::string(c.placement) + " w - - 0 1").materialScore(), c.score)
            << c.placement;
    }
}

std::string sortedLetters(const std::vector<Piece>& pieces) {
    std::string letters;
    for (const Piece& piece : pieces)
        letters += piece.fenChar();
    std::sort(letters.begin(), letters.end());
    return letters;
}

TEST(Material, capturedPiecesAreTheMissingOnes) {
    struct Case {
        const char* name;
        const char* placement;
        const char* white;  // sorted
        const char* black;
    };
    const std::vector<Case> cases{
        {"start", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR", "", ""},
        {"empty", "8/8/8/8/8/8/8/8", "BBNNPPPPPPPPQRR", "bbnnppppppppqrr"},
        {"some", "rnbqkb1r/pppp1ppp/8/8/8/8/PPPPPPPP/RNB1KBNR", "Q", "np"},
        {"a second queen is not owed, its pawn is", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPP1/RNBQKBNQ", "PR", ""},
        {"three knights", "rnbqkbnr/pppppppp/8/8/8/7N/PPPPPPP1/RNBQKBNR", "P", ""},
        {"kings are never missing", "8/pppppppp/8/8/8/8/PPPPPPPP/RNBQ1BNR", "", "bbnnqrr"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const auto captured = ChessBoard::fromFen(std::string(c.placement) + " w - - 0 1").capturedPieces();
        EXPECT_EQ(sortedLetters(captured.white), c.white);
        EXPECT_EQ(sortedLetters(captured.black), c.black);
    }
}

TEST(Material, capturedPiecesAreNewOnes) {
    ChessBoard board = ChessBoard::fromFen("4k3/8/8/8/8/8/4r3/4K3 w - - 0 1");
    const auto one = board.capturedPieces();
    const auto other = board.capturedPieces();
    std::set<std::string> ids;
    for (const auto* pieces : {&one.white, &one.black, &other.white, &other.black}) {
        for (const Piece& piece : *pieces)
            ids.insert(piece.id.text());
    }
    EXPECT_EQ(ids.size(), 2U * (15U + 14U));
}

}  // namespace
}  // namespace orlix
