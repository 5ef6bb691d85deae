#include "ui/promotion_picker.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QTest>

#include "board_test_support.h"
#include "ui/board_view.h"
#include "ui/piece_view.h"
#include "ui/theme.h"

namespace orlix {
namespace {

using test::at;
using test::isNear;
using test::pictureOf;
using test::settle;
using test::TestGame;

class PromotionPickerTest : public ::testing::Test {
  protected:
    PromotionPickerTest() {
        window_.resize(640, 640);
        board_.setGeometry(0, 0, 640, 640);
        window_.show();
        window_.activateWindow();
        settle();
    }

    void pushPawn() {
        game_.game.loadFEN(QStringLiteral("4k3/6P1/8/8/8/8/1p6/4K3 w - - 0 1"));
        game_.play("g7", "g8");
        settle();
    }
    void pushBlackPawn() {
        game_.game.loadFEN(QStringLiteral("4k3/6P1/8/8/8/8/1p6/4K3 b - - 0 1"));
        game_.play("b2", "b1");
        settle();
    }
    PromotionPicker* picker() { return board_.findChild<PromotionPicker*>(); }
    QList<QAbstractButton*> buttons() { return picker()->findChildren<QAbstractButton*>(); }
    std::optional<PieceType> pieceOn(const char* square) {
        const std::optional<Piece>& piece = game_.game.board()[at(square)];
        return piece ? std::optional(piece->type) : std::nullopt;
    }
    QStringList labels() {
        QStringList texts;
        for (const QAbstractButton* button : buttons())
            texts << button->text();
        return texts;
    }

    TestGame game_;
    Theme theme_;
    QWidget window_;
    BoardView board_{game_.game, game_.loc, theme_, game_.system, &window_};
};

TEST_F(PromotionPickerTest, coversTheBoardWhileAPromotionIsPending) {
    EXPECT_EQ(picker(), nullptr) << "built when it is first needed";
    pushPawn();
    ASSERT_NE(picker(), nullptr);
    EXPECT_TRUE(picker()->isVisible());
    EXPECT_EQ(picker()->geometry(), board_.rect());
    game_.game.cancelPromotion();
    EXPECT_FALSE(picker()->isVisible());
}

TEST_F(PromotionPickerTest, aBoardThatComesLaterShowsThePendingPromotionToo) {
    pushPawn();
    BoardView later(game_.game, game_.loc, theme_, game_.system);
    ASSERT_NE(later.findChild<PromotionPicker*>(), nullptr);
    EXPECT_FALSE(later.findChild<PromotionPicker*>()->isHidden());
}

TEST_F(PromotionPickerTest, offersQueenRookBishopKnightAndCancelByName) {
    pushPawn();
    EXPECT_EQ(labels(),
              (QStringList{QStringLiteral("Queen"), QStringLiteral("Rook"), QStringLiteral("Bishop"),
                           QStringLiteral("Knight"), QStringLiteral("Cancel")}));
    EXPECT_EQ(picker()->accessibleName(), QStringLiteral("Pawn Promotion"));
    for (const QAbstractButton* button : buttons())
        EXPECT_EQ(button->accessibleName(), button->text());
}

TEST_F(PromotionPickerTest, speaksTheLanguageThatIsChosenMeanwhile) {
    pushPawn();
    game_.loc.setCurrentLanguage(Language::german);
    EXPECT_EQ(labels(),
              (QStringList{game_.loc.text("queen"), game_.loc.text("rook"), game_.loc.text("bishop"),
                           game_.loc.text("knight"), game_.loc.text("btn_cancel")}));
    EXPECT_EQ(picker()->accessibleName(), game_.loc.text("promote_pawn"));
    EXPECT_NE(labels().front(), QStringLiteral("Queen"));
}

TEST_F(PromotionPickerTest, eachButtonPromotesToItsPiece) {
    const std::array pieces{PieceType::queen, PieceType::rook, PieceType::bishop, PieceType::knight};
    for (int index = 0; index < 4; ++index) {
        pushPawn();
        QTest::mouseClick(buttons()[index], Qt::LeftButton);
        EXPECT_EQ(pieceOn("g8"), pieces[static_cast<std::size_t>(index)]);
        EXPECT_FALSE(game_.game.pendingPromotion());
        EXPECT_FALSE(picker()->isVisible());
    }
}

TEST_F(PromotionPickerTest, cancelLeavesThePawnWhereItWas) {
    pushPawn();
    QTest::mouseClick(buttons()[4], Qt::LeftButton);
    EXPECT_EQ(pieceOn("g7"), PieceType::pawn);
    EXPECT_FALSE(game_.game.pendingPromotion());
    EXPECT_FALSE(game_.game.selectedSquare());
    EXPECT_FALSE(picker()->isVisible());
}

TEST_F(PromotionPickerTest, escapeCancels) {
    pushPawn();
    QTest::keyClick(buttons()[1], Qt::Key_Escape);
    EXPECT_EQ(pieceOn("g7"), PieceType::pawn);
    EXPECT_FALSE(game_.game.pendingPromotion());
}

TEST_F(PromotionPickerTest, returnTakesTheButtonInFocusTheQueenFirst) {
    pushPawn();
    EXPECT_EQ(QApplication::focusWidget(), buttons()[0]);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_EQ(pieceOn("g8"), PieceType::queen);

    pushPawn();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Enter);
    EXPECT_EQ(pieceOn("g8"), PieceType::bishop);
}

TEST_F(PromotionPickerTest, focusGoesRoundInsideAndReturnsAfterwards) {
    QWidget other(&window_);
    other.setFocusPolicy(Qt::StrongFocus);
    other.show();
    other.setFocus();
    pushPawn();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Left);
    EXPECT_EQ(QApplication::focusWidget(), buttons()[4]);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), buttons()[0]);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
    EXPECT_EQ(QApplication::focusWidget(), buttons()[4]);
    game_.game.cancelPromotion();
    EXPECT_EQ(QApplication::focusWidget(), &other);
}

TEST_F(PromotionPickerTest, theBoardUnderneathTakesNoClicks) {
    pushPawn();
    QTest::mouseClick(picker(), Qt::LeftButton, {}, QPoint(20, 20));
    EXPECT_TRUE(game_.game.pendingPromotion());
    EXPECT_TRUE(game_.game.selectedSquare());
}

TEST_F(PromotionPickerTest, piecesHaveTheMoversColour) {
    const auto share = [this](PieceColor color) {
        const QImage image = pictureOf(*buttons()[0], 1);
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                count += isNear(image.pixelColor(x, y), PieceView::bodyColor(color)) ? 1 : 0;
            }
        }
        return count;
    };
    theme_.setScheme(Theme::Scheme::dark);
    pushPawn();
    EXPECT_GT(share(PieceColor::white), 300);
    EXPECT_EQ(share(PieceColor::black), 0);
    game_.game.cancelPromotion();
    pushBlackPawn();
    EXPECT_GT(share(PieceColor::black), 300);
    EXPECT_EQ(share(PieceColor::white), 0);
}

TEST_F(PromotionPickerTest, dimsTheBoardAroundItsPanel) {
    const QColor before = pictureOf(board_, 1).pixelColor(75, 5);
    pushPawn();
    const QColor after = pictureOf(board_, 1).pixelColor(75, 5);
    EXPECT_LT(after.lightness(), before.lightness() * 0.7);
}

TEST_F(PromotionPickerTest, followsTheBoardsSizeAndStaysInsideItWhenSmall) {
    pushPawn();
    game_.loc.setCurrentLanguage(Language::german);
    board_.resize(330, 330);
    EXPECT_EQ(picker()->geometry(), QRect(1, 1, 328, 328));
    for (const QAbstractButton* button : buttons()) {
        EXPECT_TRUE(picker()->rect().contains(button->geometry())) << button->text().toStdString();
    }
}

TEST_F(PromotionPickerTest, noTextIsCutInAnyLanguage) {
    pushPawn();
    for (const int side : {300, 330, 640}) {
        board_.resize(side, side);
        for (const Language language : allLanguages) {
            game_.loc.setCurrentLanguage(language);
            QList<ShownText> texts = picker()->shownTexts();
            for (const QAbstractButton* button : buttons())
                texts += dynamic_cast<const ShowsText&>(*button).shownTexts();
            ASSERT_EQ(texts.size(), 6);
            EXPECT_EQ(texts.front().text, game_.loc.text("promote_pawn"));
            for (const ShownText& shown : texts) {
                EXPECT_LE(shown.needed.width(), shown.room.width()) << side << shown.text.toStdString();
                EXPECT_LE(shown.needed.height(), shown.room.height()) << side << shown.text.toStdString();
            }
        }
    }
}

TEST_F(PromotionPickerTest, theTitleIsPainted) {
    pushPawn();
    // Above the buttons, inside of the panel.
    const int bottom = buttons()[0]->y() - 4;
    const QRect title(buttons()[0]->x(), bottom - 24, 200, 24);
    const QImage image = pictureOf(*picker(), 1);
    int ink = 0;
    for (int y = title.top(); y < title.bottom(); ++y) {
        for (int x = title.left(); x < title.right(); ++x)
            ink += isNear(image.pixelColor(x, y), theme_.color(ColorRole::text), 40) ? 1 : 0;
    }
    EXPECT_GT(ink, 100);
}

TEST_F(PromotionPickerTest, spacePressesNoButton) {
    pushPawn();
    QTest::keyClick(buttons()[0], Qt::Key_Space);
    EXPECT_TRUE(game_.game.pendingPromotion());
    EXPECT_TRUE(picker()->isVisible());
}

}  // namespace
}  // namespace orlix
