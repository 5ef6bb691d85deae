// The console of the Engine tab: whose dialogue it shows, how it is read, selected and copied.
#include <QSet>

#include "panel_engine_tab_fixture.h"
#include "ui/panel/elided_label.h"

namespace orlix::test {
namespace {

class EngineTabConsole : public EngineTabTest {
  protected:
    /// The left edge of a character, in the middle of its height.
    QPoint at(int line, int column) const {
        const QRectF place = console()->characterRect(line, column);
        return {qRound(place.left()) + 1, qRound(place.center().y())};
    }
};

TEST_F(EngineTabConsole, theConsoleShowsTheDialogueAndColoursItsSides) {
    playAgainstEngine();
    panel->setSelectedTab(1);
    EXPECT_TRUE(console()->lines().contains(QStringLiteral("> uci")));
    EXPECT_TRUE(console()->lines().contains(QStringLiteral("< uciok")));
    say("info depth 3");
    EXPECT_EQ(console()->lines().last(), QStringLiteral("< info depth 3"));
    const QColor ground = theme.color(ColorRole::console);
    QSet<QRgb> colors;
    for (const char* line : {"> go", "< info", "Started engine process: /x", "Error: Executable not found"}) {
        const QColor color = UciConsoleView::lineColor(QString::fromLatin1(line));
        EXPECT_GE(contrastRatio(color, ground), 4.5) << line;
        colors.insert(color.rgb());
    }
    EXPECT_EQ(colors.size(), 4);
}

TEST_F(EngineTabConsole, theConsoleFollowsTheEndUnlessTheReaderScrolledUp) {
    playAgainstEngine();
    panel->setSelectedTab(1);
    chatter(120);
    ASSERT_GT(bar()->maximum(), 0);
    EXPECT_EQ(bar()->value(), bar()->maximum());
    bar()->setValue(bar()->maximum() / 2);
    EXPECT_TRUE(console()->isHeld());
    const QStringList read = console()->lines();
    const int place = bar()->value();
    chatter(400, 121);
    EXPECT_EQ(console()->lines(), read) << "what is being read stays, though the log has dropped it";
    EXPECT_EQ(bar()->value(), place);
    bar()->setValue(bar()->maximum());
    settle();
    EXPECT_FALSE(console()->isHeld());
    EXPECT_EQ(console()->lines().last(), QStringLiteral("< info string line 520"));
    EXPECT_EQ(bar()->value(), bar()->maximum());
}

TEST_F(EngineTabConsole, theFirstRowIsWholeAsLongAsTheEndIsFollowed) {
    playAgainstEngine();
    panel->setSelectedTab(1);
    chatter(120);
    const auto cutLine = [this] {
        for (int line = 0; line < console()->lines().size(); ++line) {
            const QRectF place = console()->characterRect(line, 0);
            if (place.top() < 0 && place.bottom() > 8) return line;
        }
        return -1;
    };
    for (int height = panelHeight; cutLine() < 0 && height > panelHeight - 20; --height) {
        panel->resize(panel->width(), height);
        settle();
    }
    ASSERT_GE(cutLine(), 0);
    const auto inkAbove = [this](int bottom) {
        const QImage picture = console()->viewport()->grab().toImage();
        const QRgb ground = theme.color(ColorRole::console).rgb();
        int ink = 0;
        for (int y = 0; y < bottom; ++y) {
            for (int x = 0; x < picture.width(); ++x)
                ink += picture.pixel(x, y) != ground;
        }
        return ink;
    };
    const int bottom = static_cast<int>(console()->characterRect(cutLine(), 0).bottom());
    EXPECT_EQ(inkAbove(bottom), 0);
    bar()->setValue(bar()->maximum() - 1);
    EXPECT_GT(inkAbove(bottom + 1), 0) << "the reader sees what is there";
    bar()->setValue(bar()->maximum());
    EXPECT_EQ(inkAbove(bottom), 0);
}

TEST_F(EngineTabConsole, linesAreSelectedByMouseAndCopiedByKey) {
    playAgainstEngine();
    panel->setSelectedTab(1);
    chatter(5);
    const int last = static_cast<int>(console()->lines().size()) - 1;
    QWidget* view = console()->viewport();
    QTest::mousePress(view, Qt::LeftButton, {}, at(last - 1, 2));
    QTest::mouseMove(view, at(last, 6));
    QTest::mouseRelease(view, Qt::LeftButton, {}, at(last, 6));
    const QString wanted = QStringLiteral("info string line 4\n< info");
    EXPECT_EQ(console()->selectedText(), wanted);
    chatter(3, 6);
    EXPECT_EQ(console()->selectedText(), wanted) << "more lines do not move a selection";
    QTest::keyClick(console(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(pasteboard.text, wanted);
    QTest::keyClick(console(), Qt::Key_Escape);
    EXPECT_EQ(console()->selectedText(), QString());
    EXPECT_EQ(console()->lines().last(), QStringLiteral("< info string line 8"));
}

TEST_F(EngineTabConsole, selectingUpwardsAndADoubleClickTakeLinesToo) {
    playAgainstEngine();
    panel->setSelectedTab(1);
    chatter(5);
    const int last = static_cast<int>(console()->lines().size()) - 1;
    QWidget* view = console()->viewport();
    QTest::mousePress(view, Qt::LeftButton, {}, at(last, 4));
    QTest::mouseMove(view, at(last - 1, 13));
    QTest::mouseRelease(view, Qt::LeftButton, {}, at(last - 1, 13));
    EXPECT_EQ(console()->selectedText(), QStringLiteral(" line 4\n< in"));
    QTest::mouseDClick(view, Qt::LeftButton, {}, at(last, 3));
    EXPECT_EQ(console()->selectedText(), QStringLiteral("< info string line 5"));
    QTest::keyClick(console(), Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(console()->selectedText(), console()->lines().join(u'\n'));
    QTest::mouseClick(view, Qt::LeftButton, {}, at(last, 3));
    EXPECT_FALSE(console()->isHeld());
}

TEST_F(EngineTabConsole, aLongLineBreaksAndIsSelectedAcrossItsRows) {
    playAgainstEngine();
    panel->setSelectedTab(1);
    const QByteArray moves = QByteArray("e2e4 ").repeated(60).trimmed();
    say("info depth 1 pv " + moves);
    const int last = static_cast<int>(console()->lines().size()) - 1;
    const QString line = console()->lines()[last];
    EXPECT_GT(console()->characterRect(last, 200).top(), console()->characterRect(last, 0).top());
    EXPECT_LT(console()->characterRect(last, 200).right(), console()->viewport()->width());
    QWidget* view = console()->viewport();
    QTest::mouseDClick(view, Qt::LeftButton, {}, console()->characterRect(last, 250).center().toPoint());
    EXPECT_EQ(console()->selectedText(), line);
}

TEST_F(EngineTabConsole, copyLogTakesAllOfItEvenWhileTheReaderLooksElsewhere) {
    playAgainstEngine();
    panel->setSelectedTab(1);
    chatter(100);
    bar()->setValue(0);
    chatter(100, 101);
    EXPECT_EQ(find<PanelButton>("copyLog")->label(), QStringLiteral("Copy Log"));
    click(find("copyLog"));
    EXPECT_EQ(pasteboard.text, game->blackEngineProcess()->logLines().join(u'\n'));
    EXPECT_TRUE(pasteboard.text->endsWith(QStringLiteral("line 200")));
    EXPECT_EQ(panel->toastMessage(), QStringLiteral("Copied to clipboard!"));
}

TEST_F(EngineTabConsole, theLogCanBeCopiedAsSoonAsTheConsoleHasLines) {
    registerEngines();
    panel->setSelectedTab(1);
    EXPECT_FALSE(find("copyLog")->isEnabled());
    game->setGameMode(GameMode::humanVsEngine);
    game->startNewGame();
    settle();
    EXPECT_FALSE(console()->lines().isEmpty());
    EXPECT_TRUE(find("copyLog")->isEnabled());
}

TEST_F(EngineTabConsole, aHiddenTabTakesNoLinesAndAnOpenedOneHasThemAll) {
    playAgainstEngine();
    panel->setSelectedTab(1);
    panel->setSelectedTab(0);
    const int before = console()->refreshCount();
    chatter(50);
    EXPECT_EQ(console()->refreshCount(), before);
    panel->setSelectedTab(1);
    EXPECT_EQ(console()->lines().last(), QStringLiteral("< info string line 50"));
}

TEST_F(EngineTabConsole, aNewGameReplacesTheDialogueEvenOfAHeldConsole) {
    playAgainstEngine();
    panel->setSelectedTab(1);
    chatter(120);
    bar()->setValue(0);
    game->startNewGame();
    settle();
    EXPECT_EQ(console()->engine(), game->blackEngineProcess());
    EXPECT_FALSE(console()->lines().contains(QStringLiteral("< info string line 120")));
    EXPECT_TRUE(console()->lines().contains(QStringLiteral("> uci")));
    EXPECT_FALSE(console()->isHeld());
    // While the tab is hidden as well.
    panel->setSelectedTab(0);
    game->startNewGame();
    settle();
    panel->setSelectedTab(1);
    EXPECT_EQ(console()->engine(), game->blackEngineProcess());
}

TEST_F(EngineTabConsole, betweenEnginesTheConsoleFollowsTheThinkingOneUntilASideIsChosen) {
    playBetweenEngines();
    panel->setSelectedTab(1);
    auto* sides = find<ChoiceGroup>("consoleSides");
    EXPECT_TRUE(sides->isVisible());
    ASSERT_EQ(game->currentlyThinkingColor(), PieceColor::white);
    EXPECT_EQ(console()->engine(), game->whiteEngineProcess());
    EXPECT_EQ(sides->currentIndex(), 0);
    // White's engine was launched before Black's.
    puppets.engines().at(puppets.engines().size() - 2).onOutput("bestmove e2e4\n");
    ASSERT_TRUE(eventually([this] { return game->currentlyThinkingColor() == PieceColor::black; }));
    settle();
    EXPECT_EQ(console()->engine(), game->blackEngineProcess());
    EXPECT_EQ(sides->currentIndex(), 1);
    EXPECT_EQ(find<ElidedLabel>("thinkingEngine")->text(), QStringLiteral("Gnuchess"));
    click(sides->button(0));
    EXPECT_EQ(console()->engine(), game->whiteEngineProcess());
    say("bestmove e7e5");
    ASSERT_TRUE(eventually([this] { return game->currentlyThinkingColor() == PieceColor::white; }));
    puppets.engines().at(puppets.engines().size() - 2).onOutput("bestmove g1f3\n");
    ASSERT_TRUE(eventually([this] { return game->currentlyThinkingColor() == PieceColor::black; }));
    settle();
    EXPECT_EQ(console()->engine(), game->whiteEngineProcess()) << "a chosen side stays";
}

TEST_F(EngineTabConsole, aReaderIsNotTakenToTheOtherEngine) {
    playBetweenEngines();
    panel->setSelectedTab(1);
    QByteArray lines;
    for (int number = 0; number < 100; ++number)
        lines += "info string line " + QByteArray::number(number) + '\n';
    const auto white = puppets.engines().at(puppets.engines().size() - 2);
    white.onOutput(lines);
    settle();
    bar()->setValue(0);
    white.onOutput("bestmove e2e4\n");
    ASSERT_TRUE(eventually([this] { return game->currentlyThinkingColor() == PieceColor::black; }));
    settle();
    EXPECT_EQ(console()->engine(), game->whiteEngineProcess());
    bar()->setValue(bar()->maximum());
    settle();
    EXPECT_EQ(console()->engine(), game->blackEngineProcess());
}

}  // namespace
}  // namespace orlix::test
