#include "core/move.h"

#include <gmock/gmock.h>

#include <unordered_set>

#include "core/move_record.h"

namespace orlix {
namespace {

constexpr Square e2{4, 1};
constexpr Square e4{4, 3};
constexpr Square e7{4, 6};
constexpr Square e8{4, 7};

TEST(Move, uciTextIsFromToAndThePromotionLetter) {
    EXPECT_EQ((Move{e2, e4, {}}).uciString(), "e2e4");
    EXPECT_EQ((Move{e7, e8, PieceType::queen}).uciString(), "e7e8q");
    EXPECT_EQ((Move{{0, 1}, {0, 0}, PieceType::knight}).uciString(), "a2a1n");
    EXPECT_EQ((Move{e7, e8, PieceType::rook}).description(), "e7e8r");
}

TEST(Move, readsUciText) {
    struct Case {
        std::string text;
        std::optional<Move> move;
    };
    const std::vector<Case> cases{
        {"e2e4", Move{e2, e4, {}}},
        {"E2E4", Move{e2, e4, {}}},
        {" e2e4\n", Move{e2, e4, {}}},
        {"\u00A0e2e4\u2028", Move{e2, e4, {}}},
        {" E7E8Q ", Move{e7, e8, PieceType::queen}},
        {"e7e8r", Move{e7, e8, PieceType::rook}},
        {"e7e8b", Move{e7, e8, PieceType::bishop}},
        {"e7e8n", Move{e7, e8, PieceType::knight}},
        {"e7e8k", Move{e7, e8, PieceType::king}},
        {"e7e8p", Move{e7, e8, PieceType::pawn}},
        {"e7e8\u212A", Move{e7, e8, PieceType::king}},
        // An unknown fifth character does not refuse the move.
        {"e7e8x", Move{e7, e8, {}}},
        {"e2e4e", Move{e2, e4, {}}},
        {"e2e4+", Move{e2, e4, {}}},
        {"e2e4\u00E9", Move{e2, e4, {}}},
        {"e2e4\u265B", Move{e2, e4, {}}},
        {"e2e2", Move{e2, e2, {}}},
        {"", std::nullopt},
        {"e2e", std::nullopt},
        {"e2", std::nullopt},
        {"e2e4qq", std::nullopt},
        {"e2e4\u00E9\u00E9", std::nullopt},
        {"e2-e4", std::nullopt},
        {"e2 e4", std::nullopt},
        {"e2e9", std::nullopt},
        {"i2e4", std::nullopt},
        {"0000", std::nullopt},
        {"(none)", std::nullopt},
        {"e7e8 q", std::nullopt},
        // Four bytes, but not four characters; and four characters, but not four squares' worth.
        {"\u00E92e", std::nullopt},
        {"\u00E92e4", std::nullopt},
        {"e2\u00E94", std::nullopt},
        {"e2 4", std::nullopt},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Move::fromUci(c.text), c.move) << '"' << c.text << '"';
    }
    EXPECT_EQ(Move::fromUci(" E7E8Q ")->uciString(), "e7e8q");
}

TEST(Move, equalityAndHashUseAllThreeFields) {
    const Move move{e7, e8, PieceType::queen};
    const std::vector<Move> others{
        {e2, e8, PieceType::queen}, {e7, e4, PieceType::queen}, {e7, e8, PieceType::rook}, {e7, e8, {}}};
    std::unordered_set<std::size_t> hashes{std::hash<Move>{}(move)};
    for (const Move& other : others) {
        EXPECT_NE(move, other);
        hashes.insert(std::hash<Move>{}(other));
    }
    EXPECT_EQ(hashes.size(), 5U);
    EXPECT_EQ(std::hash<Move>{}(move), std::hash<Move>{}(Move{e7, e8, PieceType::queen}));
}

TEST(MoveRecord, equalityAndHashUseEveryField) {
    MoveRecord record;
    record.move = Move{e2, e4, {}};
    record.san = "e4";
    record.capturedPiece = Piece::make(PieceType::pawn, PieceColor::black);
    record.previousEnPassant = Square{3, 5};
    record.fenAfter = "fen";

    std::vector<MoveRecord> others(7, record);
    others[0].move.to = e8;
    others[1].san = "e4+";
    others[2].capturedPiece = Piece::make(PieceType::pawn, PieceColor::black);
    others[3].previousCastling.blackKingside = true;
    others[4].previousEnPassant.reset();
    others[5].previousHalfmove = 1;
    others[6].fenAfter = "other";
    std::unordered_set<std::size_t> hashes{std::hash<MoveRecord>{}(record)};
    for (const MoveRecord& other : others) {
        EXPECT_NE(record, other);
        hashes.insert(std::hash<MoveRecord>{}(other));
    }
    EXPECT_EQ(hashes.size(), 8U);
    const MoveRecord copy = record;
    EXPECT_EQ(record, copy);
    EXPECT_EQ(std::hash<MoveRecord>{}(record), std::hash<MoveRecord>{}(copy));
}

}  // namespace
}  // namespace orlix
