#include "automatch_panel_fixture.h"
#include "ui/move_list_view.h"
#include "ui/panel/figure_row.h"
#include "ui/panel/panel_header.h"
#include "ui/panel/section_head.h"

namespace orlix::test {
namespace {

class AutomatchWidgetTest : public AutomatchPanel {
  protected:
    /// Two engines, a running series, and the game tab in front.
    void watchSeries(qint64 games = 10) {
        startSeries(games);
        panel->setSelectedTab(gameTab);
    }
    AutomatchWidget* widget() const { return panel->findChild<AutomatchWidget*>(); }
    FigureRow* figures() const { return find<FigureRow>("widgetFigures"); }
    QString title() const { return widget()->findChild<SectionHead*>()->findChild<TextLabel*>()->text(); }
    QString name(const char* label) const { return find<QWidget>(label)->accessibleName(); }
};

TEST_F(AutomatchWidgetTest, itIsShownWhileASeriesRunsAndOnlyThen) {
    registerEngines();
    EXPECT_EQ(widget(), nullptr) << "built for the first series";
    automatch->startAutomatch(2);
    EXPECT_TRUE(widget()->isVisible());
    const QObjectList parts = widget()->parentWidget()->children();
    EXPECT_EQ(*std::find_if(parts.begin(), parts.end(), [](QObject* part) { return part->isWidgetType(); }),
              widget())
        << "read first, as it stands first";
    EXPECT_TRUE(panel->findChild<MoveListView*>()->isVisible());
    automatch->pauseAutomatch();
    EXPECT_TRUE(widget()->isVisible());
    automatch->resumeAutomatch();
    endAndGoOn(GameEndReason::stalemate());
    EXPECT_TRUE(widget()->isVisible());
    end(GameEndReason::stalemate());
    EXPECT_FALSE(widget()->isVisible());
    automatch->startAutomatch();
    automatch->stopAutomatch();
    EXPECT_FALSE(widget()->isVisible());
}

TEST_F(AutomatchWidgetTest, playersScoreAndNumberFollowTheSeries) {
    watchSeries();
    EXPECT_EQ(title(), QStringLiteral("Automatch in Progress"));
    EXPECT_EQ(figure("widgetGames"), QStringLiteral("Game 1 / 10"));
    EXPECT_EQ(name("widgetWhite"), QStringLiteral("Stockfish"));
    EXPECT_EQ(name("widgetBlack"), QStringLiteral("Gnuchess"));
    EXPECT_EQ(joined(figures()->captions()), "Evaluation | Material | Moves | Engine 1 | Engine 2");
    EXPECT_EQ(joined(figures()->values()), "0.00 | 0 | 0 | 0.0 | 0.0");
    endAndGoOn(GameEndReason::checkmate(PieceColor::white));
    endAndGoOn(GameEndReason::stalemate());
    EXPECT_EQ(figure("widgetGames"), QStringLiteral("Game 3 / 10"));
    EXPECT_EQ(joined(figures()->values().mid(3)), "1.5 | 0.5");
    endAndGoOn(GameEndReason::stalemate());
    EXPECT_EQ(name("widgetWhite"), QStringLiteral("Gnuchess")) << "the colours changed";
    EXPECT_EQ(name("widgetBlack"), QStringLiteral("Stockfish"));
    loc->setCurrentLanguage(Language::french);
    EXPECT_EQ(title(), QStringLiteral("Automatch en cours"));
    EXPECT_EQ(figure("widgetGames"), QStringLiteral("Partie 4 / 10"));
    EXPECT_EQ(joined(figures()->captions()), utf8(loc->text(ExtraText::evaluation)) + " | " +
                                                 utf8(loc->text("material_balance")) + " | " +
                                                 utf8(loc->text("moves_count")) + " | Engine 1 | Engine 2");
}

TEST_F(AutomatchWidgetTest, evaluationMaterialAndMovesFollowTheGame) {
    watchSeries();
    // The engine of White, which is asked first, was launched first.
    const auto white = [this] { return puppets.engines().at(puppets.engines().size() - 2); };
    settle();
    settle();
    white().onOutput("info depth 12 score cp 34 pv e2e4\n");
    settle();
    EXPECT_EQ(figures()->values().first(), QStringLiteral("+0.34"));
    white().onOutput("info depth 13 score mate 3 pv e2e4\n");
    settle();
    EXPECT_EQ(figures()->values().first(), QStringLiteral("+M3"));
    white().onOutput("bestmove e2e4\n");
    EXPECT_TRUE(eventually([this] { return figures()->values().at(2) == QStringLiteral("1"); }));
    game->loadFEN(QStringLiteral("4k3/8/8/8/8/8/8/4KR2 b - - 0 1"));
    EXPECT_EQ(figures()->values().at(1), QStringLiteral("+5"));
    game->loadFEN(QStringLiteral("4kr2/8/8/8/8/8/8/4K3 w - - 0 1"));
    EXPECT_EQ(figures()->values().at(1), QStringLiteral("-5"));
}

TEST_F(AutomatchWidgetTest, theCountdownIsCalledOutInGerman) {
    watchSeries();
    EXPECT_EQ(figure("widgetCountdown"), QString());
    end(GameEndReason::stalemate());
    for (const Language language : allLanguages) {
        loc->setCurrentLanguage(language);
        EXPECT_EQ(figure("widgetCountdown"), QStringLiteral("Nächste Partie startet in 1.5 s"));
    }
    time.advance(600ms);
    EXPECT_EQ(figure("widgetCountdown"), QStringLiteral("Nächste Partie startet in 0.9 s"));
    automatch->pauseAutomatch();
    EXPECT_EQ(figure("widgetCountdown"), QString());
    EXPECT_EQ(title(), loc->text("automatch_paused"));
}

TEST_F(AutomatchWidgetTest, nothingMovesWhenTheCountdownComesAndGoes) {
    watchSeries();
    QCoreApplication::processEvents();
    const QRect card = widget()->geometry();
    const QRect moves = panel->findChild<MoveListView*>()->geometry();
    end(GameEndReason::stalemate());
    QCoreApplication::processEvents();
    EXPECT_EQ(widget()->geometry(), card);
    EXPECT_EQ(panel->findChild<MoveListView*>()->geometry(), moves);
}

TEST_F(AutomatchWidgetTest, captionsStandInFullSizeInEveryLanguage) {
    watchSeries();
    for (const Language language : allLanguages) {
        loc->setCurrentLanguage(language);
        QCoreApplication::sendPostedEvents();
        for (const ShownText& shown : figures()->shownTexts()) {
            if (!figures()->captions().contains(shown.text)) continue;
            EXPECT_EQ(shown.needed, wrappedSize(shown.text, Theme::font(TextStyle::caption), 10000))
                << utf8(shown.text);
        }
    }
}

TEST_F(AutomatchWidgetTest, stopStopsTheSeries) {
    watchSeries();
    EXPECT_EQ(find<PanelButton>("widgetStop")->label(), QStringLiteral("Stop Match"));
    find("widgetStop")->setFocus(Qt::TabFocusReason);
    QTest::keyClick(find("widgetStop"), Qt::Key_Return);
    EXPECT_FALSE(automatch->isAutomatchActive());
    EXPECT_EQ(automatch->matchFinishedReason(), QStringLiteral("Automatch gestoppt."));
    EXPECT_FALSE(QApplication::focusWidget() && QApplication::focusWidget()->inherits("QAbstractButton"));
}

TEST_F(AutomatchWidgetTest, aStepOfTheCountdownPaintsItsLineAloneAndWhatIsTheSameNothing) {
    watchSeries();
    settle();
    end(GameEndReason::stalemate());
    {
        const PanelWatch watch(*panel);
        Q_EMIT automatch->changed();
        Q_EMIT game->changed();
        Q_EMIT game->liveEvaluationChanged();
        EXPECT_EQ(watch.painted(), QStringList());
    }
    const PanelWatch watch(*panel);
    time.advance(200ms);
    QStringList painted = watch.painted();
    painted.removeAll(QStringLiteral("automatchWidget"));  // its ground, below the line
    painted.removeAll(QStringLiteral("orlix::GameTab"));
    EXPECT_EQ(joined(painted), "widgetCountdown");
}

class AutomatchHeader : public AutomatchPanel {
  protected:
    const GameStatus& status() const { return panel->findChild<StatusBadge*>()->status(); }
    QString badge() const { return panel->findChild<StatusBadge*>()->text(); }
    QString secondary() const {
        const auto* label = panel->findChild<PanelHeader*>()->findChild<TextLabel*>();
        return label->isVisible() ? QString(label->text()).replace(QChar(0xA0), u' ') : QString();
    }
};

TEST_F(AutomatchHeader, aRunningSeriesStandsWhereTheSideToMoveWould) {
    startSeries();
    EXPECT_EQ(badge(), QStringLiteral("Automatch in Progress"));
    EXPECT_EQ(status().tone, StatusTone::playing);
    EXPECT_EQ(secondary(), QStringLiteral("Game 1 / 10"));
    endAndGoOn(GameEndReason::stalemate());
    EXPECT_EQ(secondary(), QStringLiteral("Game 2 / 10"));
    loc->setCurrentLanguage(Language::dutch);
    EXPECT_EQ(badge(), QStringLiteral("Automatch bezig"));
    EXPECT_EQ(secondary(), QStringLiteral("Partij 2 / 10"));
}

TEST_F(AutomatchHeader, aPausedSeriesIsSaidBeforeEverything) {
    startSeries();
    automatch->pauseAutomatch();
    EXPECT_EQ(badge(), QStringLiteral("Automatch Paused"));
    EXPECT_EQ(status().symbol, Icon::pause);
    EXPECT_EQ(status().tone, StatusTone::paused);
    EXPECT_EQ(secondary(), QStringLiteral("Game 1 / 10"));
    game->resign(PieceColor::white);
    EXPECT_EQ(badge(), QStringLiteral("Automatch Paused"));
}

TEST_F(AutomatchHeader, checkPauseAndEndOfItsGameAreSaidAsEver) {
    startSeries();
    game->togglePause();
    EXPECT_EQ(badge(), QStringLiteral("Paused"));
    game->togglePause();
    game->loadFEN(QStringLiteral("4kR2/8/8/8/8/8/8/4K3 b - - 0 1"));
    EXPECT_EQ(badge(), QStringLiteral("CHECK!"));
    game->resign(PieceColor::black);
    EXPECT_EQ(badge(), QStringLiteral("Black resigned. White wins!"));
    automatch->stopAutomatch();
    game->startNewGame();
    EXPECT_EQ(badge(), QStringLiteral("White to move"));
}

TEST_F(AutomatchHeader, aGamePutOntoTheBoardIsNotSaidToEndAsTheOneBeforeIt) {
    game->setGameMode(GameMode::humanVsHuman);
    game->startNewGame();
    game->loadFEN(QStringLiteral("6k1/5ppp/8/8/8/8/8/4R1K1 w - - 0 1"));
    game->handleSquareClick(*Square::fromText("e1"));
    game->handleSquareClick(*Square::fromText("e8"));
    EXPECT_EQ(badge(), QStringLiteral("Checkmate! White wins!"));
    game->replayGame(
        {QStringLiteral("f2f3"), QStringLiteral("e7e5"), QStringLiteral("g2g4"), QStringLiteral("d8h4")},
        std::nullopt);
    EXPECT_EQ(badge(), QStringLiteral("Checkmate! Black wins!"));
    game->replayGame({QStringLiteral("e2e4")}, std::nullopt);
    EXPECT_EQ(badge(), QStringLiteral("Black to move"));
}

class AutomatchTextFit : public AutomatchPanel {};

TEST_F(AutomatchTextFit, everyStateFitsInEveryLanguage) {
    const GameEndReason reasons[] = {GameEndReason::checkmate(PieceColor::white),
                                     GameEndReason::checkmate(PieceColor::black),
                                     GameEndReason::timeout(PieceColor::white),
                                     GameEndReason::timeout(PieceColor::black),
                                     GameEndReason::resignation(PieceColor::white),
                                     GameEndReason::resignation(PieceColor::black),
                                     GameEndReason::stalemate(),
                                     GameEndReason::fiftyMoveRule(),
                                     GameEndReason::threefoldRepetition(),
                                     GameEndReason::insufficientMaterial()};
    panel->setSelectedTab(automatchTab);
    forEveryLanguageAndWidth([this](const std::string& where) { expectAllFit(where + " no engine"); });
    openTab();
    automatch->setEngine1Limit(true, 3190);
    automatch->setEngine2Limit(true, 3190);
    forEveryLanguageAndWidth([&](const std::string& where) {
        EXPECT_GT(expectAllFit(where + " ready"), 35);
        automatch->setPauseBetweenGamesSeconds(10);
        automatch->startAutomatch(9999);
        const auto check = [&](const char* state) {
            for (const int tab : {gameTab, automatchTab}) {
                panel->setSelectedTab(tab);
                expectAllFit(where + " " + state + " tab " + std::to_string(tab));
            }
        };
        check("first game");
        for (const GameEndReason& reason : reasons) {
            end(reason);
            check("countdown");
            list()->choose(0);
            expectAllFit(where + " details");
            list()->choose(-1);
            while (automatch->isCountingDown())
                time.advance(200ms);
        }
        check("running");
        automatch->pauseAutomatch();
        check("paused");
        automatch->resumeAutomatch();
        automatch->setTotalGames(automatch->currentGameIndex());
        end(GameEndReason::checkmate(PieceColor::white));
        check("finished");
        click(find("unfoldSettings"));
        automatch->clearHistory();
    });
}

TEST_F(AutomatchTextFit, aHistoryOfFourDigitsFits) {
    startSeries(9999);
    playOn(1000);
    forEveryLanguageAndWidth([this](const std::string& where) { expectAllFit(where + " thousand games"); });
}

}  // namespace
}  // namespace orlix::test
