#include "core/piece.h"

#include <gmock/gmock.h>

#include <unordered_set>

namespace orlix {
namespace {

using ::testing::ElementsAre;

struct TypeRow {
    PieceType type;
    char letter;
    std::int64_t value;
    const char* sanLetter;
    const char* whiteSymbol;
    const char* blackSymbol;
};

constexpr std::array<TypeRow, 6> typeTable{{
    {PieceType::pawn, 'p', 1, "", "♙", "♟"},
    {PieceType::knight, 'n', 3, "N", "♘", "♞"},
    {PieceType::bishop, 'b', 3, "B", "♗", "♝"},
    {PieceType::rook, 'r', 5, "R", "♖", "♜"},
    {PieceType::queen, 'q', 9, "Q", "♕", "♛"},
    {PieceType::king, 'k', 0, "K", "♔", "♚"},
}};

TEST(PieceType, lettersValuesAndSymbolsFollowTheTable) {
    for (const TypeRow& row : typeTable) {
        SCOPED_TRACE(row.letter);
        EXPECT_EQ(rawValue(row.type), row.letter);
        EXPECT_EQ(value(row.type), row.value);
        EXPECT_EQ(sanLetter(row.type), row.sanLetter);
        EXPECT_EQ(pieceTypeFromRawValue(std::string(1, row.letter)), row.type);

        const Piece white = Piece::make(row.type, PieceColor::white);
        const Piece black = Piece::make(row.type, PieceColor::black);
        EXPECT_EQ(white.unicodeSymbol(), row.whiteSymbol);
        EXPECT_EQ(black.unicodeSymbol(), row.blackSymbol);
        EXPECT_EQ(white.fenChar(), row.letter - 'a' + 'A');
        EXPECT_EQ(black.fenChar(), row.letter);
    }
}

TEST(PieceType, casesAreListedFromPawnToKing) {
    EXPECT_THAT(allPieceTypes, ElementsAre(PieceType::pawn, PieceType::knight, PieceType::bishop,
                                           PieceType::rook, PieceType::queen, PieceType::king));
}

TEST(PieceType, readsTheSixLowerCaseLettersOnly) {
    for (const std::string text :
         {"P", "N", "B", "R", "Q", "K", "", "x", "1", "pawn", "pp", " p", "\u212A"}) {
        EXPECT_EQ(pieceTypeFromRawValue(text), std::nullopt) << text;
    }
}

TEST(PieceColor, lettersNamesAndOpponents) {
    EXPECT_THAT(allPieceColors, ElementsAre(PieceColor::white, PieceColor::black));
    EXPECT_EQ(rawValue(PieceColor::white), 'w');
    EXPECT_EQ(rawValue(PieceColor::black), 'b');
    EXPECT_EQ(name(PieceColor::white), "White");
    EXPECT_EQ(name(PieceColor::black), "Black");
    EXPECT_EQ(opponent(PieceColor::white), PieceColor::black);
    EXPECT_EQ(opponent(PieceColor::black), PieceColor::white);
}

TEST(PieceColor, readsItsTwoLettersOnly) {
    EXPECT_EQ(pieceColorFromRawValue("w"), PieceColor::white);
    EXPECT_EQ(pieceColorFromRawValue("b"), PieceColor::black);
    for (const std::string text : {"", "W", "B", "white", "wb", " w"}) {
        EXPECT_EQ(pieceColorFromRawValue(text), std::nullopt) << text;
    }
}

TEST(Piece, twoOfTheSameKindDifferAndACopyDoesNot) {
    const Piece one = Piece::make(PieceType::knight, PieceColor::white);
    const Piece other = Piece::make(PieceType::knight, PieceColor::white);
    const Piece copy = one;
    EXPECT_NE(one, other);
    EXPECT_EQ(one, copy);
    EXPECT_EQ(std::hash<Piece>{}(one), std::hash<Piece>{}(copy));
    EXPECT_NE(std::hash<Piece>{}(one), std::hash<Piece>{}(other));
}

TEST(Piece, equalityAndHashUseTypeAndColorToo) {
    const Piece piece = Piece::make(PieceType::knight, PieceColor::white);
    Piece otherType = piece;
    otherType.type = PieceType::bishop;
    Piece otherColor = piece;
    otherColor.color = PieceColor::black;
    EXPECT_NE(piece, otherType);
    EXPECT_NE(piece, otherColor);
    const std::hash<Piece> hash;
    EXPECT_EQ((std::unordered_set<std::size_t>{hash(piece), hash(otherType), hash(otherColor)}.size()), 3U);
}

TEST(Piece, readsItsFenLetterWithANewIdentity) {
    for (const TypeRow& row : typeTable) {
        SCOPED_TRACE(row.letter);
        for (const PieceColor color : allPieceColors) {
            const std::string letter(1, Piece::make(row.type, color).fenChar());
            const auto one = Piece::fromFenChar(letter);
            const auto other = Piece::fromFenChar(letter);
            ASSERT_TRUE(one && other);
            EXPECT_EQ(one->type, row.type);
            EXPECT_EQ(one->color, color);
            EXPECT_NE(one->id, other->id);
        }
    }
}

TEST(Piece, otherCharactersAreNoPiece) {
    for (const std::string text : {"", "1", "x", "X", "/", "pp", "Pp", "♔", "\u00E9", "\uFF2B", "\xFF"}) {
        EXPECT_EQ(Piece::fromFenChar(text), std::nullopt) << text;
    }
}

TEST(Piece, theKelvinSignIsAnUpperCaseK) {
    // Its lower case is the letter k, so case folding makes a white king of it.
    const auto king = Piece::fromFenChar("\u212A");
    ASSERT_TRUE(king);
    EXPECT_EQ(king->type, PieceType::king);
    EXPECT_EQ(king->color, PieceColor::white);
}

}  // namespace
}  // namespace orlix
