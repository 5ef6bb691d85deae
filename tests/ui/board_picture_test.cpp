#include "ui/board_picture.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "board_test_support.h"

namespace orlix {
namespace {

using test::at;
using test::TestGame;
using Target = BoardPicture::Target;

std::set<std::string> squaresWhere(const BoardPicture& picture, bool (*holds)(const BoardPicture::Cell&)) {
    std::set<std::string> names;
    for (const Square square : Square::allSquares()) {
        if (holds(picture[square])) names.insert(square.algebraic());
    }
    return names;
}

std::set<std::string> lastMove(const BoardPicture& picture) {
    return squaresWhere(picture, [](const BoardPicture::Cell& cell) { return cell.isLastMove; });
}
std::set<std::string> selection(const BoardPicture& picture) {
    return squaresWhere(picture, [](const BoardPicture::Cell& cell) { return cell.isSelected; });
}
std::set<std::string> checks(const BoardPicture& picture) {
    return squaresWhere(picture, [](const BoardPicture::Cell& cell) { return cell.isInCheck; });
}
std::set<std::string> dots(const BoardPicture& picture) {
    return squaresWhere(picture, [](const BoardPicture::Cell& cell) { return cell.target == Target::dot; });
}
std::set<std::string> rings(const BoardPicture& picture) {
    return squaresWhere(picture, [](const BoardPicture::Cell& cell) { return cell.target == Target::ring; });
}
using Names = std::set<std::string>;

TEST(BoardPicture, showsThePiecesOfTheStart) {
    const TestGame game;
    const BoardPicture picture = BoardPicture::of(game.game);
    EXPECT_EQ(picture[at("a1")].piece, (BoardPicture::PieceLook{PieceType::rook, PieceColor::white}));
    EXPECT_EQ(picture[at("d8")].piece, (BoardPicture::PieceLook{PieceType::queen, PieceColor::black}));
    EXPECT_FALSE(picture[at("e4")].piece);
    EXPECT_EQ(lastMove(picture), Names{});
    EXPECT_EQ(selection(picture), Names{});
    EXPECT_FALSE(picture.isFlipped);
    EXPECT_FALSE(picture.promotingColor);
}

TEST(BoardPicture, theSelectedPieceShowsItsTargets) {
    TestGame game;
    game.click("g1");
    const BoardPicture picture = BoardPicture::of(game.game);
    EXPECT_EQ(selection(picture), Names{"g1"});
    EXPECT_EQ(dots(picture), (Names{"f3", "h3"}));
    EXPECT_EQ(rings(picture), Names{});
}

TEST(BoardPicture, capturesShowARingAndQuietMovesADot) {
    TestGame game;
    game.play("e2", "e4");
    game.play("d7", "d5");
    game.click("e4");
    const BoardPicture picture = BoardPicture::of(game.game);
    EXPECT_EQ(dots(picture), Names{"e5"});
    EXPECT_EQ(rings(picture), Names{"d5"});
}

TEST(BoardPicture, aPawnThatCanTakeEnPassantShowsTheRingOnTheEmptySquare) {
    TestGame game;
    game.game.loadFEN(QStringLiteral("4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1"));
    game.click("e5");
    const BoardPicture picture = BoardPicture::of(game.game);
    EXPECT_EQ(dots(picture), Names{"e6"});
    EXPECT_EQ(rings(picture), Names{"d6"});
}

TEST(BoardPicture, anotherPieceOnTheEnPassantSquareIsNoCapture) {
    TestGame game;
    game.game.loadFEN(QStringLiteral("4k3/8/8/3pP3/8/8/8/3RK3 w - d6 0 1"));
    game.game.loadFEN(QStringLiteral("4k3/8/8/2BpP3/8/8/8/4K3 w - d6 0 1"));
    game.click("c5");
    const BoardPicture picture = BoardPicture::of(game.game);
    EXPECT_TRUE(dots(picture).count("d6"));
    EXPECT_FALSE(rings(picture).count("d6"));
}

TEST(BoardPicture, theLastMoveIsMarkedAtBothEnds) {
    TestGame game;
    game.play("e2", "e4");
    EXPECT_EQ(lastMove(BoardPicture::of(game.game)), (Names{"e2", "e4"}));
    game.play("e7", "e5");
    EXPECT_EQ(lastMove(BoardPicture::of(game.game)), (Names{"e7", "e5"}));
    game.game.undoMove();
    EXPECT_EQ(lastMove(BoardPicture::of(game.game)), (Names{"e2", "e4"}));
}

TEST(BoardPicture, whileAPlyIsInspectedItsOwnMoveAndPositionAreShown) {
    TestGame game;
    game.play("e2", "e4");
    game.play("d7", "d5");
    game.play("e4", "d5");
    game.click("d8");
    game.game.inspectMove(0);
    const BoardPicture past = BoardPicture::of(game.game);
    EXPECT_EQ(lastMove(past), (Names{"e2", "e4"}));
    EXPECT_TRUE(past[at("e4")].piece);
    EXPECT_TRUE(past[at("d7")].piece);
    EXPECT_EQ(selection(past), Names{}) << "the selection belongs to the live position";
    EXPECT_EQ(dots(past), Names{});
    EXPECT_EQ(rings(past), Names{});

    game.game.inspectMove(1);
    EXPECT_EQ(lastMove(BoardPicture::of(game.game)), (Names{"d7", "d5"}));
    game.game.inspectMove(99);
    EXPECT_EQ(lastMove(BoardPicture::of(game.game)), (Names{"e4", "d5"})) << "out of range shows the game";
    game.game.inspectMove(std::nullopt);
    const BoardPicture live = BoardPicture::of(game.game);
    EXPECT_EQ(lastMove(live), (Names{"e4", "d5"}));
    EXPECT_EQ(selection(live), Names{"d8"});
}

TEST(BoardPicture, onlyTheKingOfTheSideToMoveIsMarkedInCheck) {
    TestGame game;
    game.game.loadFEN(QStringLiteral("rnb1kbnr/pppp1ppp/8/4p3/6Pq/5P2/PPPPP2P/RNBQKBNR w KQkq - 1 3"));
    EXPECT_EQ(checks(BoardPicture::of(game.game)), Names{"e1"});
    // The same attack with Black to move: the attacked king is not the one to move.
    game.game.loadFEN(QStringLiteral("rnb1kbnr/pppp1ppp/8/4p3/6Pq/5P2/PPPPP2P/RNBQKBNR b KQkq - 1 3"));
    EXPECT_EQ(checks(BoardPicture::of(game.game)), Names{});
}

TEST(BoardPicture, checkIsThatOfTheInspectedPosition) {
    TestGame game;
    game.play("e2", "e4");
    game.play("f7", "f6");
    game.play("d1", "h5");
    EXPECT_EQ(checks(BoardPicture::of(game.game)), Names{"e8"});
    game.play("g7", "g6");
    EXPECT_EQ(checks(BoardPicture::of(game.game)), Names{});
    game.game.inspectMove(2);
    EXPECT_EQ(checks(BoardPicture::of(game.game)), Names{"e8"});
}

TEST(BoardPicture, aPendingPromotionNamesItsColour) {
    TestGame game;
    game.game.loadFEN(QStringLiteral("4k3/8/8/8/8/8/6p1/4K3 b - - 0 1"));
    game.play("g2", "g1");
    EXPECT_EQ(BoardPicture::of(game.game).promotingColor, PieceColor::black);
    game.game.cancelPromotion();
    EXPECT_EQ(BoardPicture::of(game.game).promotingColor, std::nullopt);
}

}  // namespace
}  // namespace orlix
