#include <gtest/gtest.h>

#include <QAccessible>
#include <QTest>
#include <string>
#include <vector>

#include "board_clicks.h"
#include "board_test_support.h"
#include "l10n/extra_texts.h"
#include "ui/assistive_technology.h"
#include "ui/board_view.h"
#include "ui/theme.h"

namespace orlix {
namespace {

using test::at;
using test::TestGame;

struct Heard {
    QAccessible::Event type;
    QString name;         ///< of what the event is about, when it came
    QString description;  ///< likewise
};

class Listener : public AssistiveTechnology {
  public:
    bool isListening = true;
    std::vector<Heard> events;

    bool isActive() const override { return isListening; }
    void tell(QAccessibleEvent& event) override {
        QAccessibleInterface* about = event.accessibleInterface();
        ASSERT_NE(about, nullptr);
        events.push_back(
            {event.type(), about->text(QAccessible::Name), about->text(QAccessible::Description)});
    }
};

class BoardAccessibilityTest : public ::testing::Test {
  protected:
    BoardAccessibilityTest() {
        game_.system.reducedMotion = true;
        view_.resize(400, 400);
        view_.show();
        view_.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&view_));
        view_.clearFocus();
        view_.setAssistiveTechnology(listener_);
        Q_EMIT game_.game.changed();  // what stands already is no news
    }

    std::vector<Heard>& heard() { return listener_.events; }
    QAccessibleInterface* board() { return QAccessible::queryAccessibleInterface(&view_); }
    QAccessibleInterface* cell(const char* square) {
        for (int index = 0; index < 64; ++index) {
            QAccessibleInterface* child = board()->child(index);
            if (child->text(QAccessible::Name).startsWith(QLatin1String(square))) return child;
        }
        return nullptr;
    }
    std::string nameOf(const char* square) { return cell(square)->text(QAccessible::Name).toStdString(); }
    /// What the alerts told since the last call, oldest first.
    std::vector<std::string> alerts() {
        std::vector<std::string> told;
        for (const Heard& each : heard()) {
            if (each.type == QAccessible::Alert) told.push_back(each.description.toStdString());
        }
        heard().clear();
        return told;
    }
    std::vector<std::string> focused() {
        std::vector<std::string> names;
        for (const Heard& each : heard()) {
            if (each.type == QAccessible::Focus) names.push_back(each.name.toStdString());
        }
        heard().clear();
        return names;
    }
    using Texts = std::vector<std::string>;

    Listener listener_;
    TestGame game_;
    Theme theme_;
    BoardView view_{game_.game, game_.loc, theme_, game_.system};
};

TEST_F(BoardAccessibilityTest, isATableOfEightByEightCells) {
    ASSERT_NE(board(), nullptr);
    EXPECT_EQ(board()->role(), QAccessible::Table);
    EXPECT_EQ(board()->text(QAccessible::Name), QStringLiteral("Chess board"));
    ASSERT_EQ(board()->childCount(), 64);
    QAccessibleTableInterface* table = board()->tableInterface();
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->rowCount(), 8);
    EXPECT_EQ(table->columnCount(), 8);
    for (int index = 0; index < 64; ++index) {
        QAccessibleInterface* child = board()->child(index);
        ASSERT_NE(child, nullptr);
        EXPECT_TRUE(child->isValid());
        EXPECT_EQ(child->role(), QAccessible::Cell);
        EXPECT_EQ(child->parent(), board());
        EXPECT_EQ(board()->indexOfChild(child), index);
        EXPECT_EQ(table->cellAt(index / 8, index % 8), child);
        EXPECT_EQ(child->tableCellInterface()->rowIndex(), index / 8);
        EXPECT_EQ(child->tableCellInterface()->columnIndex(), index % 8);
    }
    EXPECT_EQ(board()->child(64), nullptr);
    EXPECT_EQ(board()->child(-1), nullptr);
    EXPECT_EQ(table->columnDescription(0), QStringLiteral("a"));
    EXPECT_EQ(table->rowDescription(0), QStringLiteral("8"));
}

TEST_F(BoardAccessibilityTest, cellsStandInTheOrderShownAlsoWhenFlipped) {
    EXPECT_EQ(board()->child(0)->text(QAccessible::Name), QStringLiteral("a8, black rook"));
    EXPECT_EQ(board()->child(63)->text(QAccessible::Name), QStringLiteral("h1, white rook"));
    game_.game.flipBoard();
    EXPECT_EQ(board()->child(0)->text(QAccessible::Name), QStringLiteral("h1, white rook"));
    EXPECT_EQ(board()->child(63)->text(QAccessible::Name), QStringLiteral("a8, black rook"));
    EXPECT_EQ(board()->tableInterface()->columnDescription(0), QStringLiteral("h"));
    EXPECT_EQ(board()->tableInterface()->rowDescription(0), QStringLiteral("1"));
}

TEST_F(BoardAccessibilityTest, rectanglesAreWhereTheSquaresAre) {
    for (const bool isFlipped : {false, true}) {
        if (isFlipped) game_.game.flipBoard();
        for (const Square square : Square::allSquares()) {
            QAccessibleInterface* child = cell(square.algebraic().c_str());
            const QRect place = view_.squareRect(square).toRect();
            EXPECT_EQ(child->rect(), QRect(view_.mapToGlobal(place.topLeft()), place.size()));
            const QPoint centre = child->rect().center();
            EXPECT_EQ(board()->childAt(centre.x(), centre.y()), child) << square.algebraic();
        }
    }
}

TEST_F(BoardAccessibilityTest, namesTellPieceSelectionTargetLastMoveAndCheck) {
    EXPECT_EQ(nameOf("e2"), "e2, white pawn");
    EXPECT_EQ(nameOf("e4"), "e4, empty");
    EXPECT_EQ(nameOf("d8"), "d8, black queen");
    game_.click("e2");
    EXPECT_EQ(nameOf("e2"), "e2, white pawn, selected");
    EXPECT_EQ(nameOf("e4"), "e4, empty, possible move");
    EXPECT_TRUE(cell("e2")->state().selected);
    EXPECT_FALSE(cell("e4")->state().selected);
    EXPECT_EQ(board()->tableInterface()->selectedCells(), QList{cell("e2")});
    game_.click("e4");
    EXPECT_EQ(nameOf("e2"), "e2, empty, last move");
    EXPECT_EQ(nameOf("e4"), "e4, white pawn, last move");
    game_.play("f7", "f6");
    game_.play("d1", "h5");
    EXPECT_EQ(nameOf("e8"), "e8, black king, in check");
}

TEST_F(BoardAccessibilityTest, everyPieceHasItsWordsInEveryLanguage) {
    game_.loc.setCurrentLanguage(Language::german);
    EXPECT_EQ(nameOf("d1"), "d1, weiße Dame");
    EXPECT_EQ(nameOf("g8"), "g8, schwarzer Springer");
    game_.loc.setCurrentLanguage(Language::french);
    EXPECT_EQ(nameOf("a1"), "a1, tour blanche");
    EXPECT_EQ(nameOf("e8"), "e8, roi noir");
    game_.loc.setCurrentLanguage(Language::dutch);
    EXPECT_EQ(nameOf("c1"), "c1, witte loper");
    EXPECT_EQ(nameOf("a7"), "a7, zwarte pion");
    EXPECT_EQ(nameOf("e4"), "e4, leeg");
}

TEST_F(BoardAccessibilityTest, focusFollowsTheCursor) {
    view_.setFocus(Qt::TabFocusReason);
    EXPECT_EQ(focused().back(), "e2, white pawn");
    EXPECT_EQ(board()->focusChild(), cell("e2"));
    EXPECT_TRUE(cell("e2")->state().focused);
    QTest::keyClick(&view_, Qt::Key_Up);
    EXPECT_EQ(focused(), Texts{"e3, empty"});
    EXPECT_EQ(board()->focusChild(), cell("e3"));
    EXPECT_FALSE(cell("e2")->state().focused);
    cell("b1")->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    EXPECT_EQ(view_.cursorSquare(), at("b1"));
}

TEST_F(BoardAccessibilityTest, aSelectedSquareUnderTheCursorTellsItsNewName) {
    view_.setFocus(Qt::TabFocusReason);
    heard().clear();
    QTest::keyClick(&view_, Qt::Key_Return);
    bool isRenamed = false;
    bool isStateTold = false;
    for (const Heard& each : heard()) {
        const bool isIt = each.name == QLatin1String("e2, white pawn, selected");
        isRenamed = isRenamed || (isIt && each.type == QAccessible::NameChanged);
        isStateTold = isStateTold || (isIt && each.type == QAccessible::StateChanged);
    }
    EXPECT_TRUE(isRenamed);
    EXPECT_TRUE(isStateTold);
}

#ifdef __linux__
TEST_F(BoardAccessibilityTest, pressingACellIsOneClick) {
    test::clicks().clear();
    cell("g1")->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(test::clicks(), std::vector<Square>{at("g1")});
    EXPECT_EQ(game_.game.selectedSquare(), at("g1"));
}
#endif  // __linux__

TEST_F(BoardAccessibilityTest, movesAreAnnounced) {
    game_.play("e2", "e4");
    EXPECT_EQ(alerts(), Texts{"white pawn from e2 to e4"});
    game_.play("d7", "d5");
    game_.play("e4", "d5");
    EXPECT_EQ(alerts(),
              (Texts{"black pawn from d7 to d5", "white pawn from e4 to d5, captured: black pawn"}));
    game_.game.undoMove();
    EXPECT_EQ(alerts(), Texts{"Move taken back"});
    game_.click("g1");
    EXPECT_TRUE(alerts().empty()) << "a selection is no news";
    game_.game.startNewGame();
    EXPECT_EQ(alerts(), Texts{"White to move"});
    game_.game.togglePause();
    game_.game.togglePause();
    EXPECT_EQ(alerts(), (Texts{"Paused", "White to move"}));
}

TEST_F(BoardAccessibilityTest, castlingCheckPromotionAndTheEndAreAnnounced) {
    game_.game.loadFEN(QStringLiteral("8/4P3/8/8/8/k7/8/4K2R w K - 0 1"));
    heard().clear();
    game_.play("e1", "g1");
    EXPECT_EQ(alerts(), Texts{"white king from e1 to g1, castling"});
    game_.play("a3", "a4");
    heard().clear();
    game_.play("e7", "e8");
    EXPECT_EQ(alerts(), Texts{"Pawn Promotion"});
    game_.game.confirmPromotion(PieceType::queen);
    EXPECT_EQ(alerts(), Texts{"white pawn from e7 to e8, promotion: white queen, CHECK!"});
    game_.game.resign(PieceColor::black);
    EXPECT_EQ(alerts(), Texts{"Black resigned. White wins!"});
}

TEST_F(BoardAccessibilityTest, mateIsAnnouncedWithItsMove) {
    for (const auto& [from, to] : std::vector<std::pair<const char*, const char*>>{
             {"f2", "f3"}, {"e7", "e5"}, {"g2", "g4"}, {"d8", "h4"}}) {
        heard().clear();
        game_.play(from, to);
    }
    EXPECT_EQ(alerts(), Texts{"black queen from d8 to h4, Checkmate! Black wins!"});
}

TEST_F(BoardAccessibilityTest, inspectedMovesAreAnnounced) {
    game_.play("e2", "e4");
    game_.play("f7", "f6");
    game_.play("d1", "h5");
    heard().clear();
    game_.game.inspectMove(0);
    EXPECT_EQ(alerts(), Texts{"white pawn from e2 to e4"});
    game_.game.inspectMove(1);
    EXPECT_EQ(alerts(), Texts{"black pawn from f7 to f6"});
    game_.game.inspectMove(std::nullopt);
    EXPECT_EQ(alerts(), Texts{"white queen from d1 to h5, CHECK!"});
}

TEST_F(BoardAccessibilityTest, thePromotionPickerIsReachableWhileItIsOpen) {
    game_.game.loadFEN(QStringLiteral("8/4P3/8/8/8/k7/8/4K3 w - - 0 1"));
    game_.play("e7", "e8");
    ASSERT_EQ(board()->childCount(), 65);
    QAccessibleInterface* picker = board()->child(64);
    EXPECT_EQ(picker->text(QAccessible::Name), QStringLiteral("Pawn Promotion"));
    EXPECT_EQ(board()->indexOfChild(picker), 64);
    game_.game.cancelPromotion();
    EXPECT_EQ(board()->childCount(), 64);
}

TEST_F(BoardAccessibilityTest, nothingIsPutIntoWordsWhileNobodyListens) {
    listener_.isListening = false;
    heard().clear();
    game_.play("e2", "e4");
    view_.setFocus(Qt::TabFocusReason);
    QTest::keyClick(&view_, Qt::Key_Up);
    EXPECT_TRUE(heard().empty());
    EXPECT_TRUE(view_.announcement().isEmpty());
    listener_.isListening = true;
    game_.click("e7");
    EXPECT_TRUE(alerts().empty()) << "what was missed is not told later";
    game_.click("e5");
    EXPECT_EQ(alerts(), Texts{"black pawn from e7 to e5"});
}

TEST_F(BoardAccessibilityTest, cellsOutliveNoBoard) {
    auto other = std::make_unique<BoardView>(game_.game, game_.loc, theme_, game_.system);
    QAccessibleInterface* table = QAccessible::queryAccessibleInterface(other.get());
    const QAccessible::Id id = QAccessible::uniqueId(table->child(5));
    EXPECT_NE(QAccessible::accessibleInterface(id), nullptr);
    other.reset();
    EXPECT_EQ(QAccessible::accessibleInterface(id), nullptr);
}

}  // namespace
}  // namespace orlix
