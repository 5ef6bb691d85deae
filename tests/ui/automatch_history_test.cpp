#include <QAccessible>
#include <QScrollBar>
#include <QStyledItemDelegate>

#include "automatch_panel_fixture.h"
#include "ui/panel/automatch_record_details.h"

namespace orlix::test {
namespace {

/// Paints as another delegate does, and counts the rows.
class CountingDelegate : public QStyledItemDelegate {
  public:
    explicit CountingDelegate(QAbstractItemDelegate* inner) : QStyledItemDelegate(inner), inner_(inner) {}
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        ++count;
        inner_->paint(painter, option, index);
    }
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        return inner_->sizeHint(option, index);
    }
    mutable int count = 0;

  private:
    QAbstractItemDelegate* inner_;
};

class AutomatchHistoryTest : public AutomatchPanel {
  protected:
    QString rowText(int row) const { return model().data(model().index(row), Qt::DisplayRole).toString(); }
    QScrollBar* bar() const { return list()->verticalScrollBar(); }
    bool detailsAreOpen() const { return panel->findChild<AutomatchRecordDetails*>()->isVisible(); }
    /// Makes the page settle after something in it changed its height.
    static void settleLayout() {
        for (int turn = 0; turn < 3; ++turn) {
            QCoreApplication::sendPostedEvents();
            QCoreApplication::processEvents();
        }
    }
};

TEST_F(AutomatchHistoryTest, beforeTheFirstGameItSaysWhatWillBeHere) {
    openTab();
    EXPECT_TRUE(isShown("emptyHistory"));
    EXPECT_FALSE(list()->isVisible());
    EXPECT_FALSE(detailsAreOpen());
    EXPECT_FALSE(find("copyAllGames")->isEnabled());
    EXPECT_FALSE(find("clearHistory")->isEnabled());
    for (const Language language : allLanguages) {
        loc->setCurrentLanguage(language);
        EXPECT_EQ(text("emptyHistory"), extraText(language, ExtraText::noAutomatchGames));
    }
}

TEST_F(AutomatchHistoryTest, theNewestGameStandsFirst) {
    startSeries();
    endAndGoOn(GameEndReason::checkmate(PieceColor::white));
    endAndGoOn(GameEndReason::stalemate());
    end(GameEndReason::timeout(PieceColor::black));
    ASSERT_EQ(model().rowCount(), 3);
    EXPECT_EQ(utf8(rowText(0)),
              "Partie #3, Stockfish – Gnuchess, 0 - 1, Zeitüberschreitung (Schwarz gewinnt)");
    EXPECT_EQ(utf8(rowText(1)), "Partie #2, Gnuchess – Stockfish, ½ - ½, Remis (Patt)");
    EXPECT_EQ(utf8(rowText(2)), "Partie #1, Stockfish – Gnuchess, 1 - 0, Schachmatt (Weiß gewinnt)");
    EXPECT_TRUE(model().row(0).blackWon);
    EXPECT_FALSE(model().row(0).whiteWon);
    EXPECT_FALSE(model().row(1).whiteWon || model().row(1).blackWon);
    EXPECT_TRUE(model().row(2).whiteWon);
    EXPECT_FALSE(isShown("emptyHistory"));
    EXPECT_TRUE(find("copyAllGames")->isEnabled());
    EXPECT_TRUE(find("clearHistory")->isEnabled());
    QStringList painted;
    for (const ShownText& shown : list()->shownTexts())
        painted.append(shown.text);
    EXPECT_TRUE(painted.contains(QStringLiteral("Partie #3")));
    EXPECT_TRUE(painted.contains(QStringLiteral("0 - 1")));
    EXPECT_TRUE(painted.contains(QStringLiteral("Zeitüberschreitung (Schwarz gewinnt)")));
}

TEST_F(AutomatchHistoryTest, aPressChoosesARowAndOpensItsDetailsAndASecondOneClosesThem) {
    openTab();
    automatch->setEngine2Limit(true, 1800);
    automatch->startAutomatch(10);
    playOn(3);
    press(middle(1));
    EXPECT_EQ(list()->chosenRow(), 1);
    EXPECT_TRUE(detailsAreOpen());
    const AutomatchGameRecord& record = automatch->history().at(1);
    EXPECT_EQ(record.gameNumber, 2);
    QStringList shown;
    for (const TextLabel* label : panel->findChild<AutomatchRecordDetails*>()->findChildren<TextLabel*>())
        shown.append(label->text());
    EXPECT_EQ(shown.count(QStringLiteral("1800 ELO")), 1);
    EXPECT_EQ(shown.count(QStringLiteral("Max ELO")), 1);
    EXPECT_EQ(find<QWidget>("recordWhite")->accessibleName(), QStringLiteral("Gnuchess"));
    EXPECT_EQ(find<QWidget>("recordBlack")->accessibleName(), QStringLiteral("Stockfish"));
    EXPECT_EQ(text("recordOutcome"), QStringLiteral("0 - 1 · Zeitüberschreitung (Schwarz gewinnt)"));
    EXPECT_TRUE(text("recordFacts").startsWith(QStringLiteral("Moves: 4 · "))) << utf8(text("recordFacts"));
    loc->setCurrentLanguage(Language::german);
    EXPECT_TRUE(text("recordFacts").startsWith(QStringLiteral("Züge: 4 · "))) << utf8(text("recordFacts"));
    settleLayout();
    press(middle(1));
    EXPECT_EQ(list()->chosenRow(), -1);
    EXPECT_FALSE(detailsAreOpen());
}

TEST_F(AutomatchHistoryTest, theSymbolOfARowPutsItsGameOntoTheBoard) {
    startSeries();
    playOn(3);
    QStringList toasts;
    press(symbol(0));
    EXPECT_EQ(panel->toastMessage(), QStringLiteral("Partie #3 auf Brett geladen!"));
    EXPECT_EQ(list()->chosenRow(), -1) << "loading chooses nothing";
    ASSERT_EQ(game->board().history.size(), 4U);
    EXPECT_EQ(game->board().history.back().move.uciString(), "d8h4");
    EXPECT_TRUE(game->isGameOver());
    EXPECT_EQ(automatch->history().size(), 3);
}

TEST_F(AutomatchHistoryTest, aPressThatEndsElsewhereDoesNothing) {
    startSeries();
    playOn(3);
    game->startNewGame();
    QTest::mousePress(list()->viewport(), Qt::LeftButton, Qt::NoModifier, symbol(0));
    QTest::mouseRelease(list()->viewport(), Qt::LeftButton, Qt::NoModifier, symbol(1));
    QTest::mousePress(list()->viewport(), Qt::LeftButton, Qt::NoModifier, middle(0));
    QTest::mouseRelease(list()->viewport(), Qt::LeftButton, Qt::NoModifier, middle(2));
    QTest::mouseClick(list()->viewport(), Qt::RightButton, Qt::NoModifier, middle(0));
    EXPECT_EQ(list()->chosenRow(), -1);
    EXPECT_TRUE(game->board().history.empty());
}

TEST_F(AutomatchHistoryTest, theDetailsLoadAndCopyTheChosenGame) {
    startSeries();
    playOn(3);
    list()->choose(2);
    EXPECT_EQ(find<PanelButton>("loadRecord")->label(), QStringLiteral("View on Board"));
    EXPECT_EQ(find<PanelButton>("copyRecord")->label(), QStringLiteral("Copy PGN"));
    click(find("copyRecord"));
    EXPECT_EQ(pasteboard.text, QStringLiteral("[Event \"Game 1\"]"));
    EXPECT_EQ(panel->toastMessage(), QStringLiteral("Copied to clipboard!"));
    click(find("loadRecord"));
    EXPECT_EQ(panel->toastMessage(), QStringLiteral("Partie #1 auf Brett geladen!"));
    EXPECT_EQ(game->board().history.size(), 4U);
    EXPECT_EQ(list()->chosenRow(), 2);
}

TEST_F(AutomatchHistoryTest, theDetailsComeWhollyIntoSight) {
    startSeries();
    playOn(6);
    panel->resize(400, 640);
    settleLayout();
    list()->choose(1);
    settleLayout();
    const auto* details = panel->findChild<AutomatchRecordDetails*>();
    EXPECT_EQ(details->visibleRegion(), QRegion(details->rect()));
}

TEST_F(AutomatchHistoryTest, copyAllGamesPutsAllOfThemOnThePasteboard) {
    startSeries();
    playOn(3);
    EXPECT_EQ(find("copyAllGames")->toolTip(), QStringLiteral("Copy All Games (PGN)"));
    click(find("copyAllGames"));
    EXPECT_EQ(pasteboard.text, automatch->exportAllPGN());
    EXPECT_EQ(pasteboard.text,
              QStringLiteral("[Event \"Game 1\"]\n\n[Event \"Game 2\"]\n\n[Event \"Game 3\"]"));
    EXPECT_EQ(panel->toastMessage(), QStringLiteral("Copied to clipboard!"));
}

TEST_F(AutomatchHistoryTest, clearingStopsTheSeriesAndClosesTheDetails) {
    startSeries();
    playOn(3);
    list()->choose(0);
    find("clearHistory")->setFocus(Qt::TabFocusReason);
    QTest::keyClick(find("clearHistory"), Qt::Key_Return);
    EXPECT_FALSE(automatch->isAutomatchActive());
    EXPECT_TRUE(automatch->history().isEmpty());
    EXPECT_EQ(text("matchFinishedReason"), QStringLiteral("Automatch gestoppt."));
    EXPECT_EQ(model().rowCount(), 0);
    EXPECT_FALSE(detailsAreOpen());
    EXPECT_TRUE(isShown("emptyHistory"));
    EXPECT_FALSE(find("clearHistory")->isEnabled());
    EXPECT_FALSE(QApplication::focusWidget() && QApplication::focusWidget()->inherits("QAbstractButton"));
}

TEST_F(AutomatchHistoryTest, anotherSeriesBeginsWithAnEmptyList) {
    startSeries(4);
    playOn(4);
    list()->choose(1);
    automatch->startAutomatch();
    EXPECT_EQ(model().rowCount(), 0);
    EXPECT_EQ(list()->chosenRow(), -1);
    EXPECT_FALSE(detailsAreOpen());
    end(GameEndReason::stalemate());
    EXPECT_EQ(model().rowCount(), 1);
    // As many games as before, all of them others, while the list was not looked at.
    panel->setSelectedTab(0);
    automatch->startAutomatch();
    end(GameEndReason::checkmate(PieceColor::white));
    panel->setSelectedTab(automatchTab);
    ASSERT_EQ(model().rowCount(), 1);
    EXPECT_TRUE(rowText(0).contains(QStringLiteral("1 - 0")));
}

TEST_F(AutomatchHistoryTest, theReaderKeepsPlaceAndChoiceWhileGamesFlyBy) {
    startSeries(1000);
    playOn(40);
    settleLayout();
    bar()->setValue(7 * AutomatchHistoryRow::height + 11);
    list()->choose(9);
    settleLayout();
    const Uuid chosen = model().row(9).id;
    const int before = bar()->value();
    const QRect place = list()->visualRect(list()->model()->index(9, 0));
    playOn(25);
    EXPECT_EQ(list()->chosenRow(), 9 + 25);
    EXPECT_EQ(model().row(list()->chosenRow()).id, chosen);
    EXPECT_EQ(bar()->value(), before + 25 * AutomatchHistoryRow::height);
    EXPECT_EQ(list()->visualRect(list()->model()->index(9 + 25, 0)), place) << "nothing moved on the screen";
    EXPECT_TRUE(detailsAreOpen());
}

TEST_F(AutomatchHistoryTest, aReaderAtTheTopSeesTheNewestGame) {
    startSeries(1000);
    playOn(40);
    settleLayout();
    EXPECT_EQ(bar()->value(), 0);
    playOn(5);
    settleLayout();
    EXPECT_EQ(bar()->value(), 0);
    EXPECT_EQ(list()->indexAt(QPoint(5, 5)).row(), 0);
}

TEST_F(AutomatchHistoryTest, aChosenRowAtTheTopStaysWhereItIs) {
    startSeries(1000);
    playOn(40);
    list()->choose(0);
    settleLayout();
    const QRect place = list()->visualRect(list()->model()->index(0, 0));
    playOn(3);
    EXPECT_EQ(list()->visualRect(list()->model()->index(3, 0)), place);
}

TEST_F(AutomatchHistoryTest, theArrowsChooseAndReturnLoads) {
    startSeries();
    playOn(5);
    list()->setFocus(Qt::TabFocusReason);
    EXPECT_EQ(list()->chosenRow(), -1);
    QTest::keyClick(list(), Qt::Key_Return);
    EXPECT_TRUE(panel->toastMessage().isEmpty());
    QTest::keyClick(list(), Qt::Key_Down);
    EXPECT_EQ(list()->chosenRow(), 0);
    QTest::keyClick(list(), Qt::Key_Down);
    EXPECT_EQ(list()->chosenRow(), 1);
    QTest::keyClick(list(), Qt::Key_End);
    EXPECT_EQ(list()->chosenRow(), 4);
    QTest::keyClick(list(), Qt::Key_Up);
    EXPECT_EQ(list()->chosenRow(), 3);
    QTest::keyClick(list(), Qt::Key_Return);
    EXPECT_EQ(panel->toastMessage(), QStringLiteral("Partie #2 auf Brett geladen!"));
    QTest::keyClick(list(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(pasteboard.text, QStringLiteral("[Event \"Game 2\"]"));
    QTest::keyClick(list(), Qt::Key_Escape);
    EXPECT_EQ(list()->chosenRow(), -1);
    EXPECT_TRUE(list()->hasFocus());
    pasteboard.text.reset();
    QTest::keyClick(list(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_FALSE(pasteboard.text);
}

TEST_F(AutomatchHistoryTest, thePointerMarksTheRowAndItsSymbolAlone) {
    startSeries();
    playOn(4);
    settleLayout();
    const auto picture = [this](int row) {
        return list()->viewport()->grab(list()->visualRect(list()->model()->index(row, 0))).toImage();
    };
    const QImage plain0 = picture(0);
    const QImage plain1 = picture(1);
    QTest::mouseMove(list()->viewport(), middle(0));
    const QImage hovered = picture(0);
    EXPECT_NE(hovered, plain0);
    EXPECT_EQ(picture(1), plain1);
    QTest::mouseMove(list()->viewport(), symbol(0));
    EXPECT_NE(picture(0), hovered);
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(list()->viewport(), &leave);
    EXPECT_EQ(picture(0), plain0);
}

TEST_F(AutomatchHistoryTest, aThousandGamesPaintOnlyTheRowsInSight) {
    startSeries(2000);
    auto* counter = new CountingDelegate(list()->itemDelegate());
    list()->setItemDelegate(counter);
    playOn(1000);
    settleLayout();
    ASSERT_EQ(model().rowCount(), 1000);
    const int inSight = list()->viewport()->height() / AutomatchHistoryRow::height + 2;
    const auto painted = [counter] {
        settleLayout();
        return std::exchange(counter->count, 0);
    };
    counter->count = 0;
    list()->viewport()->repaint();
    EXPECT_LE(painted(), inSight);
    for (const int value : {bar()->maximum() / 2, bar()->maximum(), 0}) {
        bar()->setValue(value);
        EXPECT_LE(painted(), inSight) << "scrolled to " << value;
    }
    for (int step = 0; step < 20; ++step) {
        bar()->setValue(bar()->value() + 30);
        EXPECT_LE(painted(), inSight);
    }
    playOn(1);
    EXPECT_LE(painted(), inSight) << "a game more";
    end(GameEndReason::stalemate());
    painted();
    time.advance(200ms);
    EXPECT_EQ(painted(), 0) << "a step of the countdown";
}

TEST_F(AutomatchHistoryTest, assistiveTechnologyReadsTheRows) {
    startSeries();
    playOn(3);
    QAccessibleInterface* node = QAccessible::queryAccessibleInterface(list());
    ASSERT_TRUE(node);
    EXPECT_EQ(node->text(QAccessible::Name), QStringLiteral("Match History & Games"));
    EXPECT_EQ(node->role(), QAccessible::List);
    ASSERT_EQ(node->childCount(), 3);
    EXPECT_EQ(node->child(2)->text(QAccessible::Name), rowText(2));
}

TEST_F(AutomatchHistoryTest, theCommandsAreNamedInEveryLanguage) {
    startSeries();
    playOn(1);
    for (const Language language : allLanguages) {
        loc->setCurrentLanguage(language);
        EXPECT_EQ(find("copyAllGames")->accessibleName(), loc->text("automatch_export_all_pgn"));
        EXPECT_EQ(find("clearHistory")->accessibleName(), loc->text("automatch_clear_history"));
        EXPECT_EQ(list()->accessibleName(), loc->text("automatch_history"));
        list()->choose(0);
        EXPECT_EQ(find("loadRecord")->accessibleName(), loc->text("automatch_load_game"));
        EXPECT_EQ(find("copyRecord")->accessibleName(), loc->text("btn_copy_pgn"));
        click(find("copyRecord"));
        EXPECT_EQ(panel->toastMessage(), loc->text("copied_to_clipboard"));
        list()->choose(-1);
    }
}

TEST_F(AutomatchHistoryTest, hairlinesStandBetweenRowsAndNotAtTheListsEnds) {
    startSeries();
    playOn(5);
    QCoreApplication::processEvents();
    const QRgb ground = theme.color(ColorRole::card).rgb();
    const QRgb line = theme.hairlineOn(theme.color(ColorRole::card)).rgb();
    const auto colorAt = [this](int y) {
        return panel->grab().toImage().pixel(list()->viewport()->mapTo(panel.get(), QPoint(1, y)));
    };
    EXPECT_EQ(colorAt(0), ground);
    EXPECT_EQ(colorAt(AutomatchHistoryRow::height - 1), ground);
    EXPECT_EQ(colorAt(AutomatchHistoryRow::height), line);
    EXPECT_EQ(colorAt(AutomatchHistoryRow::height + 1), ground);
    press(middle(1));
    settleLayout();
    ASSERT_TRUE(detailsAreOpen());
    const int height = list()->viewport()->height();
    ASSERT_EQ(height % AutomatchHistoryRow::height, 0);
    EXPECT_EQ(colorAt(height - 1), ground) << "the line above the details is their own";
}

TEST_F(AutomatchHistoryTest, theSymbolOfARowStandsBelowTheLastOneOfTheHead) {
    startSeries();
    playOn(3);
    QCoreApplication::processEvents();
    const QWidget* clear = find("clearHistory");
    const int above = clear->mapTo(panel.get(), clear->rect().center()).x();
    EXPECT_EQ(list()->viewport()->mapTo(panel.get(), symbol(0)).x(), above);
}

}  // namespace
}  // namespace orlix::test
