#include "core/board_builder.h"

namespace orlix {
namespace {

using Reason = std::optional<GameEndReason>;

TEST(GameEnd, isTestedInItsOrder) {
    struct Case {
        const char* name;
        const char* fen;
        Reason reason;
    };
    const std::vector<Case> cases{
        {"start", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", {}},
        {"black is mated", "R5k1/5ppp/8/8/8/8/8/4K3 b - - 0 1", GameEndReason::checkmate(PieceColor::white)},
        {"white is mated", "rnb1kbnr/pppp1ppp/8/4p3/6Pq/5P2/PPPPP2P/RNBQKBNR w KQkq - 1 3",
         GameEndReason::checkmate(PieceColor::black)},
        {"stalemate", "7k/8/5KQ1/8/8/8/8/8 b - - 0 1", GameEndReason::stalemate()},
        {"no king and no moves", "8/8/8/8/8/8/8/K6R b - - 0 1", GameEndReason::stalemate()},
        {"empty board", "8/8/8/8/8/8/8/8 w - - 0 1", GameEndReason::stalemate()},
        {"mate at a hundred plies is mate", "R5k1/5ppp/8/8/8/8/8/4K3 b - - 100 80",
         GameEndReason::checkmate(PieceColor::white)},
        {"stalemate at a hundred plies is stalemate", "7k/8/5KQ1/8/8/8/8/8 b - - 100 80",
         GameEndReason::stalemate()},
        {"ninety-nine plies", "4k2r/8/8/8/8/8/8/4K2R w - - 99 80", {}},
        {"a hundred plies", "4k2r/8/8/8/8/8/8/4K2R w - - 100 80", GameEndReason::fiftyMoveRule()},
        {"more plies", "4k2r/8/8/8/8/8/8/4K2R w - - 250 180", GameEndReason::fiftyMoveRule()},
        {"fifty moves before material", "4k3/8/8/8/8/8/8/4K3 w - - 100 80", GameEndReason::fiftyMoveRule()},
        {"material", "4k3/8/8/8/8/8/8/4K3 w - - 0 1", GameEndReason::insufficientMaterial()},
        {"a negative clock", "4k2r/8/8/8/8/8/8/4K2R w - - -5 80", {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const ChessBoard board = ChessBoard::fromFen(c.fen);
        EXPECT_EQ(board.gameEndReason(), c.reason);
        EXPECT_EQ(board.isGameOver(), c.reason.has_value());
    }
}

TEST(GameEnd, aQuietHundredthPlyDraws) {
    const ChessBoard board = played(ChessBoard::fromFen("4k2r/8/8/8/8/8/8/R3K3 w - - 99 80"), "a1a2");
    EXPECT_EQ(board.gameEndReason(), GameEndReason::fiftyMoveRule());
}

TEST(GameEnd, aMateOnTheHundredthPlyIsMate) {
    const ChessBoard board = played(ChessBoard::fromFen("6k1/5ppp/8/8/8/8/8/R3K3 w - - 99 80"), "a1a8");
    EXPECT_EQ(board.gameEndReason(), GameEndReason::checkmate(PieceColor::white));
}

TEST(GameEnd, theThirdOccurrenceDraws) {
    ChessBoard board = played(ChessBoard(), "g1f3 g8f6 f3g1 f6g8 g1f3 g8f6 f3g1");
    EXPECT_EQ(board.gameEndReason(), std::nullopt);
    ASSERT_TRUE(board.play(mv("f6g8")));
    EXPECT_EQ(board.positionHistory.at("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -"), 3);
    EXPECT_EQ(board.gameEndReason(), GameEndReason::threefoldRepetition());
    ASSERT_TRUE(board.undo());
    EXPECT_EQ(board.gameEndReason(), std::nullopt);
}

TEST(GameEnd, repetitionComesAfterFiftyMovesAndBeforeMaterial) {
    const ChessBoard fifty = played(ChessBoard::fromFen("4k3/8/8/8/8/8/8/4K3 w - - 92 80"),
                                    "e1e2 e8e7 e2e1 e7e8 e1e2 e8e7 e2e1 e7e8");
    EXPECT_EQ(fifty.gameEndReason(), GameEndReason::fiftyMoveRule());
    const ChessBoard bare = played(ChessBoard::fromFen("4k3/8/8/8/8/8/8/4K3 w - - 0 1"),
                                   "e1e2 e8e7 e2e1 e7e8 e1e2 e8e7 e2e1 e7e8");
    EXPECT_EQ(bare.gameEndReason(), GameEndReason::threefoldRepetition());
}

TEST(GameEnd, aMateThatRepeatsAThirdTimeIsMate) {
    ChessBoard board = ChessBoard::fromFen("R5k1/5ppp/8/8/8/8/8/4K3 b - - 0 1");
    board.positionHistory[board.positionHashKey()] = 3;
    EXPECT_EQ(board.gameEndReason(), GameEndReason::checkmate(PieceColor::white));
}

TEST(GameEnd, reasonsCompareByCaseAndWinner) {
    EXPECT_EQ(GameEndReason::timeout(PieceColor::white), GameEndReason::timeout(PieceColor::white));
    EXPECT_NE(GameEndReason::timeout(PieceColor::white), GameEndReason::timeout(PieceColor::black));
    EXPECT_NE(GameEndReason::timeout(PieceColor::white), GameEndReason::resignation(PieceColor::white));
    EXPECT_NE(GameEndReason::timeout(PieceColor::white), GameEndReason::checkmate(PieceColor::white));
    EXPECT_NE(GameEndReason::stalemate(), GameEndReason::insufficientMaterial());
    EXPECT_EQ(GameEndReason::checkmate(PieceColor::black).winner, PieceColor::black);
    EXPECT_EQ(GameEndReason::threefoldRepetition().winner, std::nullopt);
    using Kind = GameEndReason::Kind;
    EXPECT_LT(Kind::checkmate, Kind::timeout);
    EXPECT_LT(Kind::timeout, Kind::resignation);
    EXPECT_LT(Kind::resignation, Kind::stalemate);
    EXPECT_LT(Kind::stalemate, Kind::fiftyMoveRule);
    EXPECT_LT(Kind::fiftyMoveRule, Kind::threefoldRepetition);
    EXPECT_LT(Kind::threefoldRepetition, Kind::insufficientMaterial);
}

}  // namespace
}  // namespace orlix
