#include "core/square.h"

#include <gmock/gmock.h>

#include <limits>
#include <unordered_set>

namespace orlix {
namespace {

TEST(Square, indexCountsFilesThenRanks) {
    struct Case {
        const char* name;
        std::int64_t index;
    };
    for (const Case& c : {Case{"a1", 0}, Case{"b1", 1}, Case{"h1", 7}, Case{"a2", 8}, Case{"e4", 28},
                          Case{"a8", 56}, Case{"h8", 63}}) {
        SCOPED_TRACE(c.name);
        const auto square = Square::fromText(c.name);
        ASSERT_TRUE(square);
        EXPECT_EQ(square->index(), c.index);
        EXPECT_EQ(square->id(), c.index);
        EXPECT_EQ(Square::fromIndex(c.index), square);
        EXPECT_EQ(square->algebraic(), c.name);
        EXPECT_EQ(square->description(), c.name);
        EXPECT_EQ(square->fileChar(), c.name[0]);
        EXPECT_EQ(square->rankChar(), c.name[1]);
    }
}

TEST(Square, indexesOutsideTheBoardHaveNoSquare) {
    for (const std::int64_t index :
         {std::int64_t{64}, std::int64_t{65}, std::int64_t{-1}, std::numeric_limits<std::int64_t>::max(),
          std::numeric_limits<std::int64_t>::min()}) {
        EXPECT_EQ(Square::fromIndex(index), std::nullopt) << index;
    }
}

TEST(Square, allSquaresAreInIndexOrder) {
    const auto& squares = Square::allSquares();
    ASSERT_EQ(squares.size(), 64U);
    for (std::int64_t i = 0; i < 64; ++i) {
        EXPECT_EQ(squares[static_cast<std::size_t>(i)].index(), i);
        EXPECT_EQ(squares[static_cast<std::size_t>(i)].file, i % 8);
        EXPECT_EQ(squares[static_cast<std::size_t>(i)].rank, i / 8);
    }
    EXPECT_EQ(&squares, &Square::allSquares());
}

TEST(Square, everySquareReadsBackFromItsName) {
    for (const Square square : Square::allSquares()) {
        EXPECT_EQ(Square::fromText(square.algebraic()), square);
    }
}

TEST(Square, shadesAlternateFromTheDarkCornerA1) {
    EXPECT_FALSE(Square::fromText("a1")->isLight());
    EXPECT_TRUE(Square::fromText("h1")->isLight());
    EXPECT_TRUE(Square::fromText("a8")->isLight());
    EXPECT_FALSE(Square::fromText("h8")->isLight());
    int light = 0;
    for (const Square square : Square::allSquares())
        light += square.isLight() ? 1 : 0;
    EXPECT_EQ(light, 32);
}

TEST(Square, textIsTrimmedAndReadInEitherCase) {
    const Square e4{4, 3};
    for (const std::string text :
         {"e4", "E4", " e4", "e4\n", "  E4 \r\n", "\t\u00A0e4\u2003", "\u3000e4\u0085"}) {
        EXPECT_EQ(Square::fromText(text), e4) << '"' << text << '"';
    }
    EXPECT_EQ(Square::fromText("A1"), (Square{0, 0}));
    EXPECT_EQ(Square::fromText("H8"), (Square{7, 7}));
}

TEST(Square, otherTextIsNoSquare) {
    for (const std::string text :
         {"",        " ",       "e",       "4",       "e9",       "e0",       "i1",      "`1",
          "@1",      "I1",      "e44",     "ee4",     "e 4",      "4e",       "-",       "\u00E9",
          "\u00E94", "\uFF454", "e\uFF14", "e\u0664", "e4\u0301", "e4\u200B", "\xFF\xFE"}) {
        EXPECT_EQ(Square::fromText(text), std::nullopt) << '"' << text << '"';
    }
}

TEST(Square, equalityAndHashUseBothFields) {
    EXPECT_EQ((Square{3, 4}), (Square{3, 4}));
    EXPECT_NE((Square{3, 4}), (Square{4, 3}));
    // The same index by other coordinates is another square.
    EXPECT_NE((Square{8, 0}), (Square{0, 1}));
    std::unordered_set<std::size_t> hashes;
    for (const Square square : Square::allSquares())
        hashes.insert(std::hash<Square>{}(square));
    EXPECT_EQ(hashes.size(), 64U);
    EXPECT_EQ(std::hash<Square>{}(Square{3, 4}), std::hash<Square>{}(Square{3, 4}));
}

}  // namespace
}  // namespace orlix
