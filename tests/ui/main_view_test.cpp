#include "ui/main_view.h"

#include <QPixmap>

#include "shell_fixture.h"
#include "ui/evaluation_bar_view.h"
#include "ui/main_layout.h"
#include "ui/right_panel_view.h"

namespace orlix {
namespace {

using namespace std::chrono_literals;

/// A capture for each side: White is up a knight for a pawn.
const QStringList captures{QStringLiteral("e2e4"), QStringLiteral("d7d5"), QStringLiteral("e4d5"),
                           QStringLiteral("d8d5"), QStringLiteral("b1c3"), QStringLiteral("d5e5"),
                           QStringLiteral("f1e2"), QStringLiteral("b8c6"), QStringLiteral("g1f3"),
                           QStringLiteral("e5e4"), QStringLiteral("c3e4")};

class MainViewTest : public test::ShellTest {
  protected:
    /// What a banner that shows `values` looks like.
    QImage pictureOf(const PlayerBannerView::Values& values) {
        PlayerBannerView reference(theme, find<MainView>());
        reference.setGeometry(banner(true)->geometry());
        reference.setValues(values);
        return reference.grab().toImage();
    }
    PlayerBannerView* banner(bool isTop) const {
        const MainLayout layout = MainLayout::forSize(find<MainView>()->size(), window->devicePixelRatioF());
        for (PlayerBannerView* candidate : window->findChildren<PlayerBannerView*>()) {
            if (candidate->geometry() == (isTop ? layout.topBanner : layout.bottomBanner)) return candidate;
        }
        return nullptr;
    }
    /// A person has played e2e4 against an engine.
    void letTheEngineThink() {
        installEngine();
        showWindow();
        ASSERT_TRUE(eventually([this] { return launcher.engines().size() == 1; }));
        click("e2");
        click("e4");
        ASSERT_TRUE(eventually([this] { return launcher.lastHeard("go wtime"); }));
    }
    QImage shownAt(bool isTop) const { return banner(isTop)->grab().toImage(); }
    static PlayerBannerView::Values values(PieceColor color, const QString& name, bool isActive,
                                           const QString& time = QStringLiteral("5:00")) {
        PlayerBannerView::Values result;
        result.color = color;
        result.name = name;
        result.isActiveTurn = isActive;
        result.timeString = time;
        return result;
    }
    static std::vector<Piece> pieces(PieceColor color, std::initializer_list<PieceType> types) {
        std::vector<Piece> result;
        for (const PieceType type : types)
            result.push_back(Piece::make(type, color));
        return result;
    }
    void playAll(const QStringList& moves) {
        for (const QString& move : moves) {
            click(qPrintable(move.left(2)));
            click(qPrintable(move.mid(2)));
        }
    }
};

TEST_F(MainViewTest, startsOneGameWhenItIsFirstShown) {
    buildWindow();
    EXPECT_TRUE(sounds.played.empty());
    showWindow();
    EXPECT_EQ(sounds.played, std::vector{SoundEffect::gameEnd}) << "the sound that marks a game's start";
    EXPECT_TRUE(game->clock().isRunning());

    window->hide();
    window->show();
    EXPECT_EQ(sounds.played.size(), 1u);
}

TEST_F(MainViewTest, smallestSizeIsFixedAndThePartsStandAsLaidOut) {
    showWindowForTwoPeople();
    auto* view = find<MainView>();
    EXPECT_EQ(view->minimumSize(), QSize(1120, 740));
    for (const QSize size : {QSize(1300, 900), QSize(1600, 1000)}) {
        window->resize(size);
        const MainLayout layout = MainLayout::forSize(view->size(), window->devicePixelRatioF());
        EXPECT_EQ(find<BoardView>()->geometry(), layout.board);
        EXPECT_EQ(find<EvaluationBarView>()->geometry(), layout.evaluationBar);
        EXPECT_EQ(find<RightPanelView>()->geometry(), layout.rightPanel);
        EXPECT_NE(banner(true), nullptr);
        EXPECT_NE(banner(false), nullptr);
    }
}

TEST_F(MainViewTest, evaluationBarStandsOutFromTheWindowInBothSchemes) {
    showWindowForTwoPeople();
    auto* view = find<MainView>();
    for (const Theme::Scheme scheme : {Theme::Scheme::light, Theme::Scheme::dark}) {
        theme.setScheme(scheme);
        const QImage picture = view->grab().toImage();
        const QRect bar = view->findChild<EvaluationBarView*>()->geometry();
        const QColor line = blended(theme.color(ColorRole::hairline), theme.color(ColorRole::window));
        for (const QPoint& beside :
             {QPoint(bar.left() - 1, bar.bottom() - 100), QPoint(bar.right() + 1, bar.top() + 100)}) {
            EXPECT_EQ(picture.pixelColor(beside).name(), line.name());
        }
    }
}

TEST_F(MainViewTest, topBannerIsBlackUntilTheBoardIsFlipped) {
    showWindowForTwoPeople();
    const auto black = values(PieceColor::black, QStringLiteral("Player 2"), false);
    const auto white = values(PieceColor::white, QStringLiteral("Player 1"), true);
    ASSERT_NE(pictureOf(black), pictureOf(white));
    EXPECT_EQ(shownAt(true), pictureOf(black));
    EXPECT_EQ(shownAt(false), pictureOf(white));

    game->flipBoard();
    EXPECT_EQ(shownAt(true), pictureOf(white));
    EXPECT_EQ(shownAt(false), pictureOf(black));
}

TEST_F(MainViewTest, bannersShowCapturesQueenFirstAndTheScoreFromTheirOwnSide) {
    showWindowForTwoPeople();
    playAll(captures);
    ASSERT_EQ(game->board().history.size(), 11u);

    auto white = values(PieceColor::white, QStringLiteral("Player 1"), false, QStringLiteral("5:18"));
    white.capturedPieces = pieces(PieceColor::black, {PieceType::queen, PieceType::pawn});
    white.materialAdvantage = game->board().materialScore();
    ASSERT_EQ(white.materialAdvantage, 9);
    auto black = values(PieceColor::black, QStringLiteral("Player 2"), true, QStringLiteral("5:15"));
    black.capturedPieces = pieces(PieceColor::white, {PieceType::pawn});
    black.materialAdvantage = -9;
    EXPECT_EQ(shownAt(false), pictureOf(white));
    EXPECT_EQ(shownAt(true), pictureOf(black));

    // The earlier position that the board shows has its own captures.
    game->inspectMove(2);
    white.capturedPieces = pieces(PieceColor::black, {PieceType::pawn});
    white.materialAdvantage = 1;
    EXPECT_EQ(shownAt(false), pictureOf(white));
}

TEST_F(MainViewTest, clockRunsInTheBannerAndTurnsLowUnderTenSeconds) {
    showWindowForTwoPeople();
    time.advance(std::chrono::seconds(61));
    EXPECT_EQ(shownAt(false), pictureOf(values(PieceColor::white, QStringLiteral("Player 1"), true,
                                               game->clock().formattedTime(PieceColor::white))));
    time.advance(std::chrono::milliseconds(229'500));
    auto low = values(PieceColor::white, QStringLiteral("Player 1"), true,
                      game->clock().formattedTime(PieceColor::white));
    ASSERT_TRUE(low.timeString.startsWith(QLatin1String("0:09."))) << qPrintable(low.timeString);
    ASSERT_NE(shownAt(false), pictureOf(low)) << "not without its alarm";
    low.isLowOnTime = true;
    EXPECT_EQ(shownAt(false), pictureOf(low));
    EXPECT_EQ(shownAt(true), pictureOf(values(PieceColor::black, QStringLiteral("Player 2"), false)));
}

TEST_F(MainViewTest, nobodyIsToMoveAfterTheEnd) {
    showWindowForTwoPeople();
    game->resign(PieceColor::white);
    EXPECT_EQ(shownAt(false), pictureOf(values(PieceColor::white, QStringLiteral("Player 1"), false)));
    EXPECT_EQ(shownAt(true), pictureOf(values(PieceColor::black, QStringLiteral("Player 2"), false)));
}

TEST_F(MainViewTest, evaluationsAreShownAFewTimesASecondAndTheLastOneIsShown) {
    ASSERT_NO_FATAL_FAILURE(letTheEngineThink());
    const auto* bar = find<EvaluationBarView>();
    const auto say = [&](qint64 depth) {
        launcher.say("info depth " + QByteArray::number(depth) + " score cp " +
                     QByteArray::number(100 * depth));
        return eventually([&] { return game->liveEvaluation().depth == depth; });
    };
    time.advance(150ms);
    launcher.say("info depth 9 score cp 900");
    ASSERT_TRUE(say(1));
    time.runDue();
    EXPECT_EQ(bar->accessibleName(), QStringLiteral("Evaluation: +1.00"));
    time.advance(90ms);
    ASSERT_TRUE(say(2));
    ASSERT_TRUE(say(3));
    time.advance(59ms);
    EXPECT_EQ(bar->accessibleName(), QStringLiteral("Evaluation: +1.00"));
    time.advance(1ms);
    EXPECT_EQ(bar->accessibleName(), QStringLiteral("Evaluation: +3.00"));
    ASSERT_TRUE(say(4));
    EXPECT_EQ(bar->accessibleName(), QStringLiteral("Evaluation: +3.00"));
    ASSERT_TRUE(eventually([this] {
        launcher.say("bestmove e7e5");
        return game->board().history.size() == 2;
    }));
    EXPECT_EQ(bar->accessibleName(), QStringLiteral("Evaluation: +4.00")) << "a move waits for nothing";
    // The wall clock may be set back.
    time.setNow(time.now() - 1h);
    launcher.say("info depth 5 score cp 500");
    ASSERT_TRUE(eventually([&] { return game->liveEvaluation().depth == 5; }));
    time.runDue();
    EXPECT_EQ(bar->accessibleName(), QStringLiteral("Evaluation: +5.00"));
}

TEST_F(MainViewTest, personPlaysTheEngineByClicks) {
    ASSERT_NO_FATAL_FAILURE(letTheEngineThink());
    EXPECT_TRUE(launcher.lastHeard("position startpos moves e2e4"));

    auto engine = values(PieceColor::black, QStringLiteral("Puppet"), true);
    engine.isEngine = true;
    ASSERT_NE(shownAt(true), pictureOf(engine)) << "thinking shows";
    engine.isThinking = true;
    EXPECT_EQ(shownAt(true), pictureOf(engine));

    time.setNow(time.now() + 200ms);  // no evaluation was shown just now
    launcher.say("info depth 12 score cp -35 pv e7e5");
    ASSERT_TRUE(eventually([this] { return game->liveEvaluation().depth == 12; }));
    time.runDue();
    EvaluationBarView bar(find<MainView>());
    bar.setAnimated(false);
    bar.setSurroundings(theme.color(ColorRole::window), theme.hairlineOn(theme.color(ColorRole::window)));
    bar.resize(find<EvaluationBarView>()->size());
    bar.setValues(game->liveEvaluation(), PieceColor::black, false);
    EXPECT_EQ(find<EvaluationBarView>()->grab().toImage(), bar.grab().toImage());

    launcher.say("bestmove e7e5");
    ASSERT_TRUE(eventually([this] { return game->board().history.size() == 2; }));
    EXPECT_EQ(game->board().history[1].san, "e5");
    engine.isThinking = false;
    engine.isActiveTurn = false;
    engine.timeString = QStringLiteral("5:03");
    EXPECT_EQ(shownAt(true), pictureOf(engine));
}

TEST_F(MainViewTest, pausedOrEndedGameHasNoThinkingEngine) {
    installEngine();
    showWindow();
    click("e2");
    click("e4");
    ASSERT_TRUE(game->currentlyThinkingColor().has_value());
    auto engine = values(PieceColor::black, QStringLiteral("Puppet"), true);
    engine.isEngine = true;
    game->togglePause();
    EXPECT_EQ(shownAt(true), pictureOf(engine));
    game->resign(PieceColor::white);
    engine.isActiveTurn = false;
    EXPECT_EQ(shownAt(true), pictureOf(engine));
}

}  // namespace
}  // namespace orlix
