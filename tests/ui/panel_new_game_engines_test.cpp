// The engines of the next game: who sits where, how strong, and what the tab offers without any.
#include <QScrollArea>
#include <QScrollBar>

#include "panel_new_game_fixture.h"
#include "support/event_pump.h"

namespace orlix::test {
namespace {

const QString stockfish = QStringLiteral("/usr/bin/stockfish");
const QString gnuchess = QStringLiteral("/usr/local/bin/gnuchess");

TEST_F(PanelNewGame, aChosenEngineThatIsRemovedMakesRoomForTheOneInForce) {
    pick("opponentEngine", 1);
    panel->setSelectedTab(4);
    engines->removeEngine(engineAt(1));
    panel->setSelectedTab(3);
    EXPECT_EQ(find<PickerButton>("opponentEngine")->currentIndex(), 0);
    startGame();
    EXPECT_EQ(engines->selectedBlackEngine(), engineAt(0));
}

TEST_F(PanelNewGame, theOpponentGoesIntoTheSeatOfTheEnginesColour) {
    pick("opponentEngine", 1);
    click(find("opponentLimit"));
    drag("opponentElo", 2200);
    EXPECT_EQ(label("opponentStrength"), QStringLiteral("2200 ELO"));
    startGame();
    EXPECT_EQ(engines->selectedBlackEngine(), engineAt(1));
    EXPECT_TRUE(game->blackEngineLimitElo());
    EXPECT_EQ(game->blackEngineElo(), 2200);
    EXPECT_EQ(engines->selectedWhiteEngine(), engineAt(0));
    EXPECT_FALSE(game->whiteEngineLimitElo());
    EXPECT_EQ(game->whiteEngineElo(), 1800);
    ASSERT_TRUE(game->blackEngineProcess());
    EXPECT_EQ(game->blackEngineProcess()->config().executablePath, gnuchess);
    EXPECT_EQ(game->blackEngineProcess()->config().elo, 2200);
    // The registry's own record is not touched.
    EXPECT_FALSE(engineAt(1).limitElo);
    time.runDue();
    EXPECT_TRUE(pumpUntil([this] {
        return launcher.heard(gnuchess).contains(QStringLiteral("setoption name UCI_Elo value 2200"));
    }));
}

TEST_F(PanelNewGame, againstAPersonWithBlackTheOpponentTakesTheWhiteSeat) {
    choose("colors", black);
    pick("opponentEngine", 1);
    click(find("opponentLimit"));
    drag("opponentElo", 1320);
    startGame();
    EXPECT_EQ(engines->selectedWhiteEngine(), engineAt(1));
    EXPECT_TRUE(game->whiteEngineLimitElo());
    EXPECT_EQ(game->whiteEngineElo(), 1320);
    EXPECT_EQ(engines->selectedBlackEngine(), engineAt(0));
    EXPECT_FALSE(game->blackEngineLimitElo());
}

TEST_F(PanelNewGame, withADrawnColourTheOpponentTakesBothSeats) {
    choose("colors", random);
    pick("opponentEngine", 1);
    click(find("opponentLimit"));
    drag("opponentElo", 3190);
    startGame();
    EXPECT_EQ(engines->selectedWhiteEngine(), engineAt(1));
    EXPECT_EQ(engines->selectedBlackEngine(), engineAt(1));
    EXPECT_EQ(game->whiteEngineElo(), 3190);
    EXPECT_EQ(game->blackEngineElo(), 3190);
    EXPECT_TRUE(game->whiteEngineLimitElo());
    EXPECT_TRUE(game->blackEngineLimitElo());
}

TEST_F(PanelNewGame, betweenEnginesEachSideHasItsOwn) {
    choose("modes", engineVsEngine);
    pick("blackEngine", 1);
    click(find("whiteLimit"));
    drag("whiteElo", 1600);
    click(find("blackLimit"));
    drag("blackElo", 2800);
    startGame();
    EXPECT_EQ(game->whiteEngineProcess()->config().executablePath, stockfish);
    EXPECT_EQ(game->whiteEngineProcess()->config().elo, 1600);
    EXPECT_EQ(game->blackEngineProcess()->config().executablePath, gnuchess);
    EXPECT_EQ(game->blackEngineProcess()->config().elo, 2800);
    EXPECT_TRUE(game->whiteEngineProcess()->config().limitElo);
    EXPECT_TRUE(game->blackEngineProcess()->config().limitElo);
}

TEST_F(PanelNewGame, aGameBetweenPersonsLeavesTheEnginesAlone) {
    pick("opponentEngine", 1);
    click(find("opponentLimit"));
    choose("modes", humanVsHuman);
    startGame();
    EXPECT_EQ(engines->selectedBlackEngine(), engineAt(0));
    EXPECT_FALSE(game->blackEngineLimitElo());
    panel->setSelectedTab(3);
    EXPECT_FALSE(isShown("opponentEngine"));
    EXPECT_FALSE(isShown("thinking"));
}

TEST_F(PanelNewGame, everySeatOffersTheNamedStrengths) {
    const char* keys[] = {"preset_beginner", "preset_club", "preset_master", "preset_grandmaster",
                          "preset_max"};
    const qint64 strengths[] = {1400, 1800, 2200, 2600, 3190};
    EXPECT_FALSE(isShown("opponentPresets")) << "at full strength";
    click(find("opponentLimit"));
    EXPECT_EQ(choices("opponentPresets")->currentIndex(), 1) << "1800";
    for (const Language language : allLanguages) {
        loc->setCurrentLanguage(language);
        for (int index = 0; index < 5; ++index)
            EXPECT_EQ(choices("opponentPresets")->button(index)->label(), loc->text(keys[index]));
    }
    drag("opponentElo", 1500);
    EXPECT_EQ(choices("opponentPresets")->currentIndex(), -1);
    for (int index = 0; index < 5; ++index) {
        choose("opponentPresets", index);
        EXPECT_EQ(find<ValueSlider>("opponentElo")->value(), strengths[index]);
        EXPECT_EQ(label("opponentStrength"), QString::number(strengths[index]) + QStringLiteral(" ELO"));
        startGame();
        EXPECT_EQ(game->blackEngineElo(), strengths[index]);
        panel->setSelectedTab(3);
    }
    choose("modes", engineVsEngine);
    click(find("whiteLimit"));
    if (!find("blackLimit")->isChecked()) click(find("blackLimit"));
    choose("whitePresets", 0);
    choose("blackPresets", 3);
    startGame();
    EXPECT_EQ(game->whiteEngineElo(), 1400);
    EXPECT_EQ(game->blackEngineElo(), 2600);
}

TEST_F(PanelNewGame, aSwitchStaysWhereItWasPressed) {
    QCoreApplication::processEvents();
    auto* limit = find("opponentLimit");
    const QPoint place = limit->mapTo(panel.get(), QPoint());
    const auto* area = panel->findChild<QScrollArea*>();
    const int scrolled = area->verticalScrollBar()->value();
    click(limit);
    QCoreApplication::processEvents();
    EXPECT_EQ(limit->mapTo(panel.get(), QPoint()), place);
    EXPECT_EQ(area->verticalScrollBar()->value(), scrolled);
}

TEST_F(PanelNewGame, aStrengthOutsideTheSliderIsKeptWhileItIsNotMoved) {
    game->setBlackEngineLimit(true, 1000);
    openAgain();
    EXPECT_EQ(label("opponentStrength"), QStringLiteral("1000 ELO"));
    startGame();
    EXPECT_EQ(game->blackEngineElo(), 1000);
}

TEST_F(PanelNewGame, theFixedTextsOfTheSidesStandInEveryLanguage) {
    choose("modes", engineVsEngine);
    for (const Language language : allLanguages) {
        loc->setCurrentLanguage(language);
        QStringList shown;
        for (const auto* text : panel->findChildren<TextLabel*>()) {
            if (text->isVisible()) shown.append(text->text());
        }
        for (const QString& expected :
             {QStringLiteral("Weiß Stärke:"), QStringLiteral("Schwarz Stärke:"),
              QStringLiteral("Volle Stärke (Ungedrosselt)"), loc->text("independent_elo_info"),
              loc->text("white_engine"), loc->text("black_engine"), loc->text("elo_white_engine"),
              loc->text("elo_black_engine"), loc->text("engine_thinking_time"), loc->text("game_mode")}) {
            EXPECT_TRUE(shown.contains(expected)) << utf8(expected);
        }
    }
}

class PanelWithoutEngines : public PanelNewGame {
  protected:
    PanelWithoutEngines() { registersEngines_ = false; }
    void addEngine() const {
        click(find("addEngine"));
        ASSERT_TRUE(dialogs_().isOpen());
    }
    FakeFileDialogs& dialogs_() const { return const_cast<FakeFileDialogs&>(dialogs); }
};

TEST_F(PanelWithoutEngines, theEngineCardSaysSoAndAddsOne) {
    EXPECT_TRUE(isShown("addEngine"));
    EXPECT_FALSE(isShown("opponentEngine"));
    files.executables.insert(QStringLiteral("/opt/kestrel"));
    addEngine();
    dialogs.answer(QStringLiteral("/opt/kestrel"));
    ASSERT_TRUE(pumpUntil([this] { return !engines->availableEngines().isEmpty(); }));
    EXPECT_EQ(panel->toastMessage(), QStringLiteral("Kestrel has been added."));
    EXPECT_EQ(engines->selectedWhiteEngine(), engineAt(0));
    EXPECT_EQ(engines->selectedBlackEngine(), engineAt(0));
    EXPECT_FALSE(isShown("addEngine"));
    EXPECT_TRUE(isShown("opponentEngine"));
    EXPECT_EQ(find<PickerButton>("opponentEngine")->currentIndex(), 0);
    startGame();
    EXPECT_TRUE(game->blackEngineProcess());
}

TEST_F(PanelWithoutEngines, cancellingThePanelAddsNothingAndCanBeRepeated) {
    addEngine();
    dialogs.answer(std::nullopt);
    EXPECT_TRUE(engines->availableEngines().isEmpty());
    addEngine();
    EXPECT_EQ(dialogs.openRequests.size(), 2U);
}

TEST_F(PanelWithoutEngines, aFileThatIsNoEngineIsReportedInAnAlert) {
    launcher.launchError = QStringLiteral("Permission denied");
    addEngine();
    dialogs.answer(QStringLiteral("/opt/notes.txt"));
    QWidget* alert = nullptr;
    ASSERT_TRUE(pumpUntil([&] {
        alert = panel->findChild<QWidget*>(QStringLiteral("engineAddAlert"));
        return alert != nullptr;
    }));
    EXPECT_EQ(alert->windowTitle(), QStringLiteral("Engine Error"));
    EXPECT_EQ(alert->property("text").toString(),
              QStringLiteral("Engine failed UCI test: Permission denied"));
    alert->close();
    EXPECT_EQ(panel->toastMessage(), QString());
}

}  // namespace
}  // namespace orlix::test
