#include "automatch_panel_fixture.h"
#include "ui/panel/automatch_score_figures.h"

namespace orlix::test {
namespace {

class AutomatchScoreboardTest : public AutomatchPanel {
  protected:
    AutomatchScoreFigures* figures() const { return panel->findChild<AutomatchScoreFigures*>(); }
    /// What the columns show, White of the first game at the left.
    QStringList columns() const {
        QStringList texts;
        for (const ShownText& shown : figures()->shownTexts())
            texts.append(shown.text);
        return texts;
    }
};

TEST_F(AutomatchScoreboardTest, beforeTheFirstSeriesItIsReady) {
    openTab();
    EXPECT_EQ(figure("gamesPlayed"), QStringLiteral(" 0 / 10"));
    EXPECT_EQ(figures()->values().engine1, QStringLiteral("Engine 1"));
    EXPECT_EQ(figures()->values().engine2, QStringLiteral("Engine 2"));
    EXPECT_EQ(joined(columns()), "0.0 | Wins 0 · Max ELO | Draws | 0 | 0.0 | Wins 0 · Max ELO");
    EXPECT_FALSE(isShown("countdown"));
    EXPECT_FALSE(isShown("matchFinishedReason"));
    EXPECT_EQ(text("matchStrength"), QStringLiteral("Elo – · LOS –"));
    EXPECT_EQ(figure("averageTime"), QStringLiteral("–"));
    for (const Language language : allLanguages) {
        loc->setCurrentLanguage(language);
        EXPECT_EQ(text("seriesState"), QStringLiteral("Bereit für Match-Start"));
    }
}

TEST_F(AutomatchScoreboardTest, theScoreFollowsTheGames) {
    openTab();
    automatch->setEngine2Limit(true, 1800);
    automatch->setAlternateColors(false);
    automatch->startAutomatch(20);
    EXPECT_EQ(figures()->values().engine1, QStringLiteral("Stockfish"));
    EXPECT_EQ(figures()->values().engine2, QStringLiteral("Gnuchess"));
    endAndGoOn(GameEndReason::checkmate(PieceColor::white));
    endAndGoOn(GameEndReason::checkmate(PieceColor::white));
    endAndGoOn(GameEndReason::resignation(PieceColor::black));
    endAndGoOn(GameEndReason::stalemate());
    EXPECT_EQ(figure("gamesPlayed"), QStringLiteral(" 4 / 20"));
    EXPECT_EQ(joined(columns()), "2.5 | Wins 2 · Max ELO | Draws | 1 | 1.5 | Wins 1 · 1800 ELO");
    EXPECT_EQ(text("matchStrength"), QStringLiteral("Elo +89 ± – · LOS 72\u00A0%"));
    EXPECT_EQ(utf8(figures()->accessibleName()),
              "Stockfish 2.5, Wins 2, Max ELO; Draws 1; Gnuchess 1.5, Wins 1, 1800 ELO");
    loc->setCurrentLanguage(Language::french);
    EXPECT_EQ(joined(columns()), "2.5 | Victoires 2 · Max ELO | Nulles | 1 | 1.5 | Victoires 1 · 1800 ELO");
}

TEST_F(AutomatchScoreboardTest, theAverageIsTheMeanFromAGamesStartToItsRecord) {
    openTab();
    automatch->setPauseBetweenGamesSeconds(0);
    automatch->startAutomatch(10);
    EXPECT_EQ(figure("averageTime"), QStringLiteral("–"));
    time.advance(12'300ms);
    endAndGoOn(GameEndReason::stalemate());
    EXPECT_EQ(figure("averageTime"), QStringLiteral("12.3 s"));
    time.advance(7'700ms);
    endAndGoOn(GameEndReason::stalemate());
    EXPECT_EQ(figure("averageTime"), QStringLiteral("10.0 s"));
    EXPECT_EQ(find<FigureLabel>("averageTime")->accessibleName(),
              QStringLiteral("Average time of a game: 10.0 s"));
}

TEST_F(AutomatchScoreboardTest, everyStateOfTheSeriesHasItsWords) {
    startSeries(2);
    EXPECT_EQ(text("seriesState"), QStringLiteral("Automatch in Progress"));
    automatch->pauseAutomatch();
    EXPECT_EQ(text("seriesState"), QStringLiteral("Automatch Paused"));
    automatch->resumeAutomatch();
    end(GameEndReason::stalemate());
    EXPECT_EQ(text("seriesState"), QStringLiteral("Next game starting..."));
    EXPECT_TRUE(isShown("countdown"));
    EXPECT_EQ(figure("countdown"), QStringLiteral("1.5 s"));
    time.advance(400ms);
    EXPECT_EQ(figure("countdown"), QStringLiteral("1.1 s"));
    time.advance(1600ms);
    EXPECT_FALSE(isShown("countdown"));
    EXPECT_EQ(text("seriesState"), QStringLiteral("Automatch in Progress"));
    end(GameEndReason::stalemate());
    EXPECT_EQ(text("seriesState"), QStringLiteral("Automatch Finished"));
    EXPECT_TRUE(isShown("matchFinishedReason"));
    EXPECT_EQ(text("matchFinishedReason"),
              QStringLiteral("Automatch beendet: 2 Partien gespielt. Match unentschieden (1.0 : 1.0)!"));
    automatch->startAutomatch();
    EXPECT_FALSE(isShown("matchFinishedReason"));
    automatch->stopAutomatch();
    EXPECT_EQ(text("seriesState"), QStringLiteral("Automatch Finished"));
    EXPECT_EQ(text("matchFinishedReason"), QStringLiteral("Automatch gestoppt."));
    loc->setCurrentLanguage(Language::german);
    EXPECT_EQ(text("seriesState"), QStringLiteral("Automatch beendet"));
}

TEST_F(AutomatchScoreboardTest, theBarSharesItselfByWinsDrawsAndLosses) {
    startSeries();
    const auto barColors = [this] {
        QCoreApplication::processEvents();
        const QImage image = figures()->grab().toImage();
        QList<QRgb> colors;
        for (const double share : {0.1, 0.4, 0.6, 0.9})
            colors.append(image.pixel(static_cast<int>(share * image.width()), image.height() - 3));
        return colors;
    };
    const QList<QRgb> empty = barColors();
    EXPECT_EQ(QSet<QRgb>(empty.cbegin(), empty.cend()).size(), 1);
    endAndGoOn(GameEndReason::checkmate(PieceColor::white));
    endAndGoOn(GameEndReason::stalemate());
    endAndGoOn(GameEndReason::stalemate());
    endAndGoOn(GameEndReason::checkmate(PieceColor::white));  // by engine 2: the colours changed
    const QList<QRgb> shared = barColors();
    EXPECT_EQ(shared[0], theme.color(ColorRole::accent).rgb());
    EXPECT_EQ(shared[1], shared[2]);
    EXPECT_NE(shared[1], shared[0]);
    EXPECT_NE(shared[3], shared[1]);
}

TEST_F(AutomatchScoreboardTest, whatDoesNotDifferIsNotPaintedAgain) {
    startSeries();
    endAndGoOn(GameEndReason::stalemate());
    const PanelWatch watch(*panel);
    Q_EMIT automatch->changed();
    Q_EMIT game->liveEvaluationChanged();
    EXPECT_EQ(watch.painted(), QStringList());
}

TEST_F(AutomatchScoreboardTest, aStepOfTheCountdownPaintsItsNumberAlone) {
    startSeries();
    end(GameEndReason::stalemate());
    const PanelWatch watch(*panel);
    time.advance(200ms);
    QStringList painted = watch.painted();
    // What the number stands on.
    for (const char* ground : {"orlix::AutomatchScoreboard", "orlix::AutomatchTab", "orlix::ScrollPage",
                               "qt_scrollarea_viewport", "QWidget"})
        painted.removeAll(QString::fromLatin1(ground));
    EXPECT_EQ(joined(painted), "countdown");
}

TEST_F(AutomatchScoreboardTest, nothingMovesWhenTheCountdownComesAndGoes) {
    startSeries();
    endAndGoOn(GameEndReason::stalemate());
    const auto places = [this] {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
        QStringList all;
        for (const QWidget* widget : panel->findChild<AutomatchTab*>()->findChildren<QWidget*>()) {
            if (!widget->isVisible() || widget->objectName() == QStringLiteral("countdown")) continue;
            const QRect at = widget->geometry();
            all.append(QStringLiteral("%1 %2: %3 %4 %5 %6")
                           .arg(QString::fromLatin1(widget->metaObject()->className()), widget->objectName())
                           .arg(at.x())
                           .arg(at.y())
                           .arg(at.width())
                           .arg(at.height()));
        }
        return joined(all);
    };
    const std::string before = places();
    end(GameEndReason::stalemate());
    EXPECT_EQ(places(), before);
    time.advance(2s);
    ASSERT_FALSE(automatch->isCountingDown());
    EXPECT_EQ(places(), before);
}

TEST_F(AutomatchScoreboardTest, behindAnotherTabItCostsNothingAndIsUpToDateWhenItComesBack) {
    startSeries();
    panel->setSelectedTab(5);
    endAndGoOn(GameEndReason::stalemate());
    EXPECT_EQ(figure("gamesPlayed"), QStringLiteral(" 0 / 10"));
    panel->setSelectedTab(automatchTab);
    EXPECT_EQ(figure("gamesPlayed"), QStringLiteral(" 1 / 10"));
    EXPECT_EQ(model().rowCount(), 1);
}

TEST_F(AutomatchScoreboardTest, theSchemeSwitchesLive) {
    startSeries();
    playOn(3);
    const QImage light = panel->grab().toImage();
    theme.setScheme(Theme::Scheme::dark);
    const QImage dark = panel->grab().toImage();
    const auto brightShare = [](const QImage& image) {
        qint64 bright = 0;
        for (int y = 200; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                bright += image.pixelColor(x, y).lightness() > 200;
        }
        return static_cast<double>(bright) / (image.width() * (image.height() - 200));
    };
    EXPECT_GT(brightShare(light), 0.7);
    EXPECT_LT(brightShare(dark), 0.06);
}

TEST_F(AutomatchScoreboardTest, bothSidesStandInFullSizeInEveryLanguage) {
    startSeries();
    automatch->setEngine2Limit(true, 1800);
    for (const Language language : allLanguages) {
        loc->setCurrentLanguage(language);
        int count = 0;
        for (const ShownText& shown : figures()->shownTexts()) {
            if (!shown.text.contains(QStringLiteral("ELO"))) continue;
            ++count;
            EXPECT_EQ(shown.needed, wrappedSize(shown.text, Theme::font(TextStyle::caption), 10000))
                << utf8(shown.text);
        }
        EXPECT_EQ(count, 2);
    }
}

}  // namespace
}  // namespace orlix::test
