#include <QScrollBar>

#include "l10n/extra_texts.h"
#include "panel_fixture.h"
#include "text_draws.h"
#include "ui/move_list_view.h"

namespace orlix::test {
namespace {

class PanelMoveList : public PanelTest {
  protected:
    void SetUp() override {
        PanelTest::SetUp();
        playAgainstPerson();
    }
    MoveListView* list() const { return panel->findChild<MoveListView*>(); }
    void clickPly(int index) const {
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, list()->cell(index).center());
    }
    /// Shows a game of knights going back and forth: a shown game has no end by the rules.
    void playPlies(int count) const {
        QStringList moves;
        const char* tours[] = {"g1f3", "g8f6", "f3g1", "f6g8"};
        for (int ply = 0; ply < count; ++ply)
            moves.append(QString::fromLatin1(tours[ply % 4]));
        game->replayGame(moves, std::nullopt);
    }
};

TEST_F(PanelMoveList, movesStandInPairsInThreeAlignedColumns) {
    play("e2", "e4");
    play("e7", "e5");
    play("g1", "f3");
    EXPECT_EQ(list()->moves(),
              (QStringList{QStringLiteral("e4"), QStringLiteral("e5"), QStringLiteral("Nf3")}));
    EXPECT_EQ(list()->cell(0).top(), list()->cell(1).top());
    EXPECT_LT(list()->cell(0).right(), list()->cell(1).left());
    EXPECT_EQ(list()->cell(0).left(), list()->cell(2).left());
    EXPECT_EQ(list()->cell(2).top(), list()->cell(0).top() + MoveListView::rowHeight);
}

TEST_F(PanelMoveList, aGameThatBlackBeginsIsPairedFromItsFirstMoveToo) {
    game->loadFEN(QStringLiteral("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1"));
    play("e7", "e5");
    play("g1", "f3");
    EXPECT_EQ(list()->moves(), (QStringList{QStringLiteral("e5"), QStringLiteral("Nf3")}));
    EXPECT_EQ(list()->cell(0).top(), list()->cell(1).top());
}

TEST_F(PanelMoveList, theLastMoveIsHighlightedAndAClickInspectsAnother) {
    play("e2", "e4");
    play("e7", "e5");
    play("g1", "f3");
    EXPECT_EQ(list()->shownPly(), 2);
    clickPly(0);
    EXPECT_EQ(game->inspectingMoveIndex(), 0);
    EXPECT_EQ(list()->shownPly(), 0);
    clickPly(1);
    EXPECT_EQ(game->inspectingMoveIndex(), 1);
    clickPly(2);
    EXPECT_EQ(game->inspectingMoveIndex(), std::nullopt);
    EXPECT_EQ(list()->shownPly(), 2);
}

TEST_F(PanelMoveList, aClickBesideTheMovesOrWithAnotherButtonOrMovedAwayDoesNothing) {
    play("e2", "e4");
    play("e7", "e5");
    play("g1", "f3");
    clickPly(0);
    const QPoint emptyCell =
        list()->cell(2).center() + QPoint(list()->cell(1).left() - list()->cell(0).left(), 0);
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, emptyCell);
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, QPoint(10, 300));
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, QPoint(10, 1));
    QTest::mouseClick(list()->viewport(), Qt::RightButton, {}, list()->cell(1).center());
    QTest::mousePress(list()->viewport(), Qt::LeftButton, {}, list()->cell(1).center());
    QTest::mouseRelease(list()->viewport(), Qt::LeftButton, {}, list()->cell(2).center());
    EXPECT_EQ(game->inspectingMoveIndex(), 0);
}

TEST_F(PanelMoveList, aMoveUnderThePointerShowsThatItCanBeClicked) {
    play("e2", "e4");
    play("e7", "e5");
    QWidget* view = list()->viewport();
    const auto picture = [view] { return view->grab().toImage(); };
    const QImage before = picture();
    QTest::mouseMove(view, list()->cell(0).center());
    EXPECT_EQ(view->cursor().shape(), Qt::PointingHandCursor);
    EXPECT_NE(picture(), before);
    QTest::mouseMove(view, QPoint(view->width() / 2, view->height() - 5));
    EXPECT_EQ(view->cursor().shape(), Qt::ArrowCursor);
    EXPECT_EQ(picture(), before);
    QTest::mouseMove(view, list()->cell(0).center());
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(view, &leave);
    EXPECT_EQ(picture(), before);
}

TEST_F(PanelMoveList, theWayBackShowsWhileAPastPositionIsInspected) {
    play("e2", "e4");
    play("e7", "e5");
    clickPly(0);
    auto* back = find<PanelButton>("showLivePosition");
    ASSERT_TRUE(back);
    EXPECT_TRUE(back->isVisible());
    for (const Language language : allLanguages) {
        loc->setCurrentLanguage(language);
        EXPECT_EQ(back->label(), extraText(language, ExtraText::showLivePosition));
    }
    click(back);
    EXPECT_EQ(game->inspectingMoveIndex(), std::nullopt);
    EXPECT_FALSE(back->isVisible());
    clickPly(0);
    EXPECT_TRUE(back->isVisible());
    play("e2", "e4");  // ignored while inspecting
    EXPECT_TRUE(back->isVisible());
    game->undoMove();
    EXPECT_FALSE(back->isVisible());
}

TEST_F(PanelMoveList, anEmptyGameSaysSoInEveryLanguage) {
    for (const Language language : allLanguages) {
        loc->setCurrentLanguage(language);
        EXPECT_EQ(list()->shownTexts().at(0).text, loc->text("no_moves_yet"));
    }
    EXPECT_EQ(list()->shownPly(), -1);
    play("e2", "e4");
    EXPECT_EQ(list()->shownTexts().at(0).text, QStringLiteral("e4"));
    game->startNewGame();
    EXPECT_EQ(list()->shownTexts().at(0).text, loc->text("no_moves_yet"));
}

TEST_F(PanelMoveList, undoTakesTheMoveOutAndAnotherOneTakesItsPlace) {
    play("e2", "e4");
    play("e7", "e5");
    game->undoMove();
    EXPECT_EQ(list()->moves(), QStringList{QStringLiteral("e4")});
    EXPECT_EQ(list()->shownPly(), 0);
    play("c7", "c5");
    EXPECT_EQ(list()->moves(), (QStringList{QStringLiteral("e4"), QStringLiteral("c5")}));
}

TEST_F(PanelMoveList, aNewMoveRepaintsItsRowAndTheOneThatWasHighlighted) {
    playPlies(8);
    game->startNewGame();
    play("e2", "e4");
    play("e7", "e5");
    play("g1", "f3");
    play("b8", "c6");
    QCoreApplication::processEvents();
    PaintWatch watch(list()->viewport());
    play("f1", "b5");
    QCoreApplication::processEvents();
    const QRect allowed = list()->cell(3).united(list()->cell(4)).adjusted(-400, -2, 400, 2);
    EXPECT_EQ(watch.count, 1);
    EXPECT_TRUE(allowed.contains(watch.region.boundingRect()))
        << watch.region.boundingRect().top() << " " << watch.region.boundingRect().bottom();
}

TEST_F(PanelMoveList, theListFollowsTheGame) {
    playPlies(600);
    EXPECT_EQ(list()->moves().size(), 600);
    const QScrollBar* bar = list()->verticalScrollBar();
    EXPECT_GT(bar->maximum(), 0);
    EXPECT_EQ(bar->value(), bar->maximum());
    EXPECT_TRUE(list()->viewport()->rect().contains(list()->cell(599)));
    playPlies(603);
    EXPECT_TRUE(list()->viewport()->rect().contains(list()->cell(602)));
}

TEST_F(PanelMoveList, aReaderWhoScrolledAwayIsLeftAloneAndFollowedAgainAtTheEnd) {
    playPlies(600);
    list()->verticalScrollBar()->setValue(100);
    EXPECT_FALSE(list()->isFollowing());
    playPlies(601);
    EXPECT_EQ(list()->verticalScrollBar()->value(), 100);
    playPlies(602);
    EXPECT_EQ(list()->verticalScrollBar()->value(), 100);
    list()->verticalScrollBar()->setValue(list()->verticalScrollBar()->maximum());
    EXPECT_TRUE(list()->isFollowing());
    playPlies(604);
    EXPECT_EQ(list()->verticalScrollBar()->value(), list()->verticalScrollBar()->maximum());
}

TEST_F(PanelMoveList, comingBackToTheGameScrollsToItsEnd) {
    playPlies(600);
    list()->verticalScrollBar()->setValue(0);
    clickPly(4);
    EXPECT_EQ(game->inspectingMoveIndex(), 4);
    click(find("showLivePosition"));
    EXPECT_EQ(list()->verticalScrollBar()->value(), list()->verticalScrollBar()->maximum());
}

TEST_F(PanelMoveList, anInspectedMoveIsScrolledIntoSight) {
    playPlies(600);
    game->inspectMove(10);
    EXPECT_TRUE(list()->viewport()->rect().contains(list()->cell(10)));
    game->inspectMove(500);
    EXPECT_TRUE(list()->viewport()->rect().contains(list()->cell(500)));
}

TEST_F(PanelMoveList, aNewGameIsFollowedWhereverTheReaderWas) {
    playPlies(600);
    list()->verticalScrollBar()->setValue(100);
    game->startNewGame();
    EXPECT_TRUE(list()->isFollowing());
    EXPECT_EQ(list()->verticalScrollBar()->maximum(), 0);
}

TEST_F(PanelMoveList, ofAGameOfSixHundredPliesOnlyTheRowsInSightArePainted) {
    for (const int plies : {60, 600}) {
        playPlies(plies);
        for (const int scrolled : {list()->verticalScrollBar()->maximum(), 0}) {
            list()->verticalScrollBar()->setValue(scrolled);
            QStringList inSight;
            for (int ply = 0; ply < plies; ++ply) {
                const QRect row = list()->cell(ply).adjusted(0, -2, 0, 2);
                if (row.intersects(list()->viewport()->rect())) inSight.append(list()->moves()[ply]);
            }
            EXPECT_LT(inSight.size(), 60);
            const TextDraws draws(*list()->viewport());
            EXPECT_EQ(draws.texts().filter(QStringLiteral("N")), inSight)
                << plies << " plies, scrolled by " << scrolled;
            EXPECT_LT(draws.texts().size(), 4 * inSight.size()) << "a number has three digits at most";
        }
    }
}

}  // namespace
}  // namespace orlix::test
