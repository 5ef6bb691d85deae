#include <QLineEdit>
#include <QScrollArea>
#include <QScrollBar>

#include "panel_new_game_fixture.h"
#include "ui/controls/card.h"
#include "ui/controls/stepper.h"

namespace orlix::test {
namespace {

const QString stockfish = QStringLiteral("/usr/bin/stockfish");
const QString gnuchess = QStringLiteral("/usr/local/bin/gnuchess");

TEST_F(PanelNewGame, itShowsWhatIsInForceWhenOpened) {
    EXPECT_EQ(choices("modes")->currentIndex(), humanVsEngine);
    EXPECT_EQ(choices("colors")->currentIndex(), white);
    EXPECT_EQ(choices("presets")->currentIndex(), 5);
    EXPECT_EQ(choices("thinking")->currentIndex(), gameClock);
    EXPECT_EQ(find<PickerButton>("opponentEngine")->currentIndex(), 0);
    EXPECT_FALSE(find("opponentLimit")->isChecked());

    game->setGameMode(GameMode::engineVsEngine);
    game->setColorChoice(PlayerColorChoice::random);
    game->setTimeControlConfig({TimeControlPreset::custom, 7, 11, FixedDepth{9}});
    game->setWhiteEngineLimit(true, 1500);
    game->setBlackEngineLimit(false, 2100);
    engines->setSelectedBlackEngine(engineAt(1));
    openAgain();
    EXPECT_EQ(choices("modes")->currentIndex(), engineVsEngine);
    EXPECT_EQ(choices("colors")->currentIndex(), random);
    EXPECT_EQ(choices("presets")->currentIndex(), 9);
    EXPECT_EQ(find<Stepper>("customMinutes")->value(), 7);
    EXPECT_EQ(find<Stepper>("customIncrement")->value(), 11);
    EXPECT_EQ(choices("thinking")->currentIndex(), fixedDepth);
    EXPECT_EQ(label("thinkingValue"), QStringLiteral("Tiefe: 9"));
    EXPECT_EQ(find<PickerButton>("whiteEngine")->currentIndex(), 0);
    EXPECT_EQ(find<PickerButton>("blackEngine")->currentIndex(), 1);
    EXPECT_TRUE(find("whiteLimit")->isChecked());
    EXPECT_EQ(label("whiteStrength"), QStringLiteral("1500 ELO"));
    EXPECT_FALSE(find("blackLimit")->isChecked());
    EXPECT_EQ(label("blackStrength"), QStringLiteral("Volle Stärke (Ungedrosselt)"));
}

TEST_F(PanelNewGame, theOpponentShownIsTheOneOfTheEnginesColour) {
    engines->setSelectedWhiteEngine(engineAt(1));
    game->setWhiteEngineLimit(true, 1400);
    game->setBlackEngineLimit(true, 2500);
    openAgain();
    EXPECT_EQ(find<PickerButton>("opponentEngine")->currentIndex(), 0);
    EXPECT_EQ(label("opponentStrength"), QStringLiteral("2500 ELO"));
    game->setColorChoice(PlayerColorChoice::black);
    openAgain();
    EXPECT_EQ(find<PickerButton>("opponentEngine")->currentIndex(), 1);
    EXPECT_EQ(label("opponentStrength"), QStringLiteral("1400 ELO"));
}

TEST_F(PanelNewGame, nothingIsWrittenBeforeStartAndAnotherTabDoesNotDropIt) {
    const TimeControlConfig time_ = game->timeControlConfig();
    choose("modes", engineVsEngine);
    choose("presets", 0);
    choose("thinking", fixedDepth);
    pick("whiteEngine", 1);
    click(find("whiteLimit"));
    drag("whiteElo", 2400);
    drag("depth", 20);
    EXPECT_EQ(game->gameMode(), GameMode::humanVsEngine);
    EXPECT_EQ(game->timeControlConfig(), time_);
    EXPECT_EQ(engines->selectedWhiteEngine(), engineAt(0));
    EXPECT_FALSE(game->whiteEngineLimitElo());
    EXPECT_EQ(game->whiteEngineElo(), 1800);
    panel->setSelectedTab(4);
    engines->updateEngineConfig(engineAt(1).id, true, 1600);
    game->setColorChoice(PlayerColorChoice::black);
    panel->setSelectedTab(3);
    EXPECT_EQ(choices("modes")->currentIndex(), engineVsEngine);
    EXPECT_EQ(choices("colors")->currentIndex(), black) << "changed elsewhere meanwhile";
    EXPECT_EQ(choices("presets")->currentIndex(), 0);
    EXPECT_EQ(choices("thinking")->currentIndex(), fixedDepth);
    EXPECT_TRUE(find("whiteLimit")->isChecked());
    startGame();
    EXPECT_EQ(game->gameMode(), GameMode::engineVsEngine);
    EXPECT_EQ(game->timeControlConfig().preset, TimeControlPreset::bullet1_0);
    EXPECT_EQ(engines->selectedWhiteEngine(), engineAt(1));
    EXPECT_TRUE(game->whiteEngineLimitElo());
}

TEST_F(PanelNewGame, aSettingChangedElsewhereReplacesOnlyItself) {
    choose("presets", 0);
    game->setColorChoice(PlayerColorChoice::black);
    EXPECT_EQ(choices("colors")->currentIndex(), black);
    EXPECT_EQ(choices("presets")->currentIndex(), 0);
}

TEST_F(PanelNewGame, everyPresetReachesTheNextGame) {
    struct Case {
        TimeControlPreset preset;
        const char* chip;
        qint64 milliseconds;
        const char* go;
    };
    const Case cases[] = {
        {TimeControlPreset::bullet1_0, "Bullet 1 min", 60000, "go wtime 60000 btime 60000 winc 0 binc 0"},
        {TimeControlPreset::bullet2_1, "Bullet 2+1", 120000,
         "go wtime 120000 btime 120000 winc 1000 binc 1000"},
        {TimeControlPreset::blitz3_0, "Blitz 3 min", 180000, "go wtime 180000 btime 180000 winc 0 binc 0"},
        {TimeControlPreset::blitz3_2, "Blitz 3+2", 180000,
         "go wtime 180000 btime 180000 winc 2000 binc 2000"},
        {TimeControlPreset::blitz5_0, "Blitz 5 min", 300000, "go wtime 300000 btime 300000 winc 0 binc 0"},
        {TimeControlPreset::blitz5_3, "Blitz 5+3", 300000,
         "go wtime 300000 btime 300000 winc 3000 binc 3000"},
        {TimeControlPreset::rapid10_0, "Rapid 10 min", 600000, "go wtime 600000 btime 600000 winc 0 binc 0"},
        {TimeControlPreset::rapid15_10, "Rapid 15+10", 900000,
         "go wtime 900000 btime 900000 winc 10000 binc 10000"},
        {TimeControlPreset::classical30_0, "Klassisch 30 min", 1800000,
         "go wtime 1800000 btime 1800000 winc 0 binc 0"},
        {TimeControlPreset::custom, "Custom", 300000, "go wtime 300000 btime 300000 winc 3000 binc 3000"},
        {TimeControlPreset::unlimited, "Ohne Uhr", 0, "go wtime 0 btime 0 winc 0 binc 0"},
    };
    choose("colors", black);
    for (int index = 0; index < 11; ++index) {
        const Case& expected = cases[index];
        panel->setSelectedTab(3);
        EXPECT_EQ(utf8(choices("presets")->button(index)->label()), expected.chip);
        choose("colors", black);
        choose("presets", index);
        startGame();
        EXPECT_EQ(game->timeControlConfig().preset, expected.preset);
        EXPECT_EQ(game->clock().whiteRemainingMs(), expected.milliseconds) << expected.chip;
        time.runDue();
        EXPECT_THAT(launcher.heard(stockfish), testing::Contains(QString::fromLatin1(expected.go)))
            << expected.chip;
    }
}

TEST_F(PanelNewGame, threeChipsAreWrittenTheSameInEveryLanguage) {
    for (const Language language : allLanguages) {
        loc->setCurrentLanguage(language);
        EXPECT_EQ(choices("presets")->button(8)->label(), QStringLiteral("Klassisch 30 min"));
        EXPECT_EQ(choices("presets")->button(9)->label(), QStringLiteral("Custom"));
        EXPECT_EQ(choices("presets")->button(10)->label(), QStringLiteral("Ohne Uhr"));
        for (int index = 0; index < 8; ++index) {
            const QString key = locKey(allTimeControlPresets[static_cast<std::size_t>(index)]);
            EXPECT_EQ(choices("presets")->button(index)->label(), loc->text(key));
        }
    }
}

TEST_F(PanelNewGame, everyModeReachesTheNextGame) {
    for (const int index : {engineVsEngine, humanVsHuman, humanVsEngine}) {
        panel->setSelectedTab(3);
        choose("modes", index);
        startGame();
        EXPECT_EQ(game->gameMode(), allGameModes[static_cast<std::size_t>(index)]);
        EXPECT_EQ(game->whiteEngineProcess() != nullptr, index == engineVsEngine);
        EXPECT_EQ(game->blackEngineProcess() != nullptr, index != humanVsHuman);
    }
}

TEST_F(PanelNewGame, theColourReachesTheNextGameAndIsOnlyAskedOfAPersonAgainstAnEngine) {
    choose("colors", black);
    startGame();
    EXPECT_EQ(game->colorChoice(), PlayerColorChoice::black);
    EXPECT_EQ(game->humanColor(), PieceColor::black);
    EXPECT_TRUE(game->isFlipped());
    panel->setSelectedTab(3);
    choose("colors", random);
    startGame();
    EXPECT_EQ(game->colorChoice(), PlayerColorChoice::random);
    panel->setSelectedTab(3);
    choose("colors", white);
    startGame();
    EXPECT_EQ(game->humanColor(), PieceColor::white);

    panel->setSelectedTab(3);
    EXPECT_TRUE(choices("colors")->isVisible());
    choose("modes", engineVsEngine);
    EXPECT_FALSE(choices("colors")->isVisible());
    choose("modes", humanVsHuman);
    EXPECT_FALSE(choices("colors")->isVisible());
}

TEST_F(PanelNewGame, everyWayOfThinkingReachesTheNextSearch) {
    choose("colors", black);
    choose("thinking", fixedMoveTime);
    drag("moveTime", 25);
    EXPECT_EQ(label("thinkingValue"), QStringLiteral("2.5"));
    startGame();
    EXPECT_EQ(game->timeControlConfig().engineThinkingMode, EngineThinkingMode(FixedMoveTime{2.5}));
    EXPECT_EQ(goLine(stockfish), QStringLiteral("go movetime 2500"));

    panel->setSelectedTab(3);
    choose("thinking", fixedDepth);
    drag("depth", 12);
    EXPECT_EQ(label("thinkingValue"), QStringLiteral("Tiefe: 12"));
    startGame();
    EXPECT_EQ(game->timeControlConfig().engineThinkingMode, EngineThinkingMode(FixedDepth{12}));
    EXPECT_EQ(goLine(stockfish), QStringLiteral("go depth 12"));

    panel->setSelectedTab(3);
    choose("thinking", gameClock);
    startGame();
    EXPECT_EQ(game->timeControlConfig().engineThinkingMode, EngineThinkingMode(GameClock{}));
    EXPECT_TRUE(goLine(stockfish).startsWith(QStringLiteral("go wtime")));
}

TEST_F(PanelNewGame, everyTenthOfASecondIsReachedWithTheKeyboard) {
    choose("thinking", fixedMoveTime);
    auto* slider = find<ValueSlider>("moveTime");
    slider->setFocus(Qt::TabFocusReason);
    QTest::keyClick(slider, Qt::Key_Home);
    EXPECT_EQ(label("thinkingValue"), QStringLiteral("0.1"));
    QTest::keyClick(slider, Qt::Key_Right);
    EXPECT_EQ(label("thinkingValue"), QStringLiteral("0.2"));
    QTest::keyClick(slider, Qt::Key_PageUp);
    EXPECT_EQ(label("thinkingValue"), QStringLiteral("1.2"));
    QTest::keyClick(slider, Qt::Key_End);
    EXPECT_EQ(label("thinkingValue"), QStringLiteral("30.0"));
}

TEST_F(PanelNewGame, everyDepthIsReachedWithTheKeyboard) {
    choose("thinking", fixedDepth);
    auto* slider = find<ValueSlider>("depth");
    slider->setFocus(Qt::TabFocusReason);
    QTest::keyClick(slider, Qt::Key_Home);
    EXPECT_EQ(label("thinkingValue"), QStringLiteral("Tiefe: 1"));
    QTest::keyClick(slider, Qt::Key_Right);
    EXPECT_EQ(label("thinkingValue"), QStringLiteral("Tiefe: 2"));
    QTest::keyClick(slider, Qt::Key_PageUp);
    EXPECT_EQ(label("thinkingValue"), QStringLiteral("Tiefe: 7"));
    QTest::keyClick(slider, Qt::Key_End);
    EXPECT_EQ(label("thinkingValue"), QStringLiteral("Tiefe: 40"));
}

TEST_F(PanelNewGame, customTimesAreTypedAndStepped) {
    EXPECT_FALSE(isShown("customMinutes"));
    choose("presets", 9);
    ASSERT_TRUE(isShown("customMinutes"));
    auto* minutes = find<Stepper>("customMinutes");
    auto* increment = find<Stepper>("customIncrement");
    minutes->field()->setFocus();
    minutes->field()->selectAll();
    QTest::keyClicks(minutes->field(), QStringLiteral("42"));
    click(minutes->plusButton());
    click(increment->minusButton());
    QTest::keyClick(increment->field(), Qt::Key_Up);
    QTest::keyClick(increment->field(), Qt::Key_Up);
    startGame();
    EXPECT_EQ(game->timeControlConfig().customBaseMinutes, 43);
    EXPECT_EQ(game->timeControlConfig().customIncrementSeconds, 4);
    EXPECT_EQ(game->clock().whiteRemainingMs(), 43 * 60000);
    EXPECT_EQ(game->clock().incrementMs(), 4000);
    panel->setSelectedTab(3);
    choose("presets", 3);
    EXPECT_FALSE(isShown("customMinutes"));
}

TEST_F(PanelNewGame, aCustomClockHasAtLeastAMinute) {
    choose("presets", 9);
    auto* minutes = find<Stepper>("customMinutes");
    minutes->field()->setFocus();
    minutes->field()->selectAll();
    QTest::keyClicks(minutes->field(), QStringLiteral("0"));
    QTest::keyClick(minutes->field(), Qt::Key_Tab);
    EXPECT_EQ(minutes->field()->text(), QString::number(minutes->value()));
    for (int press = 0; press < 10; ++press)
        click(minutes->minusButton());
    EXPECT_EQ(minutes->value(), 1);
    startGame();
    EXPECT_EQ(game->clock().whiteRemainingMs(), 60000);
}

TEST_F(PanelNewGame, aStepperKeepsItsRangeAndItsNumber) {
    choose("presets", 9);
    auto* increment = find<Stepper>("customIncrement");
    QLineEdit* field = increment->field();
    field->setFocus();
    field->selectAll();
    QTest::keyClicks(field, QStringLiteral("999"));
    EXPECT_LE(increment->value(), 180);
    field->clear();
    QTest::keyClicks(field, QStringLiteral("180"));
    EXPECT_EQ(increment->value(), 180);
    click(increment->plusButton());
    EXPECT_EQ(increment->value(), 180);
    field->selectAll();
    QTest::keyClick(field, Qt::Key_Delete);
    EXPECT_EQ(increment->value(), 180);
    QTest::keyClick(field, Qt::Key_Tab);
    EXPECT_EQ(field->text(), QStringLiteral("180"));
    field->setFocus();
    field->selectAll();
    QTest::keyClicks(field, QStringLiteral("0"));
    click(increment->minusButton());
    EXPECT_EQ(increment->value(), 0);
}

TEST_F(PanelNewGame, aPanelThatHoldsEverythingHasNothingToScroll) {
    const auto* area = panel->findChild<QScrollArea*>();
    choose("modes", humanVsHuman);
    panel->resize(400, 800);
    QCoreApplication::processEvents();
    EXPECT_EQ(area->verticalScrollBar()->maximum(), 0);
    panel->resize(400, 420);
    QCoreApplication::processEvents();
    EXPECT_GT(area->verticalScrollBar()->maximum(), 0);
}

TEST_F(PanelNewGame, everyCardIsAsHighAsWhatItShows) {
    panel->resize(400, 1400);
    for (int mode = 0; mode < 2; ++mode) {
        choose("modes", mode);
        for (const int thinking : {fixedMoveTime, fixedDepth, gameClock, fixedDepth, fixedMoveTime}) {
            choose("thinking", thinking);
            for (const char* limit : {"opponentLimit", "whiteLimit", "blackLimit"})
                find(limit)->setChecked(thinking == fixedDepth);
            QCoreApplication::processEvents();
            for (const auto* card : panel->findChildren<Card*>()) {
                if (!card->isVisible()) continue;
                EXPECT_EQ(card->height(), card->heightForWidth(card->width()))
                    << utf8(card->accessibleName());
            }
        }
    }
}

TEST_F(PanelNewGame, startShowsTheGame) {
    startGame();
    EXPECT_EQ(panel->selectedTab(), 0);
}

TEST_F(PanelNewGame, startPassesTheKeyboardToNoOtherControl) {
    choose("presets", 9);
    find<Stepper>("customMinutes")->field()->setFocus();
    startGame();
    EXPECT_FALSE(panel->focusWidget());
}

TEST_F(PanelNewGame, startIsReachedWithReturn) {
    choose("modes", humanVsHuman);
    find("startGame")->setFocus(Qt::TabFocusReason);
    QTest::keyClick(find("startGame"), Qt::Key_Return);
    EXPECT_EQ(game->gameMode(), GameMode::humanVsHuman);
}

TEST_F(PanelNewGame, theArrowsChooseAmongAlternatives) {
    auto* modes = choices("modes");
    modes->button(0)->setFocus(Qt::TabFocusReason);
    QTest::keyClick(modes->button(0), Qt::Key_Right);
    EXPECT_EQ(modes->currentIndex(), engineVsEngine);
    EXPECT_TRUE(isShown("whiteEngine"));
    QTest::keyClick(modes->button(1), Qt::Key_Right);
    EXPECT_EQ(modes->currentIndex(), humanVsHuman);
    QTest::keyClick(modes->button(2), Qt::Key_Left);
    EXPECT_EQ(modes->currentIndex(), engineVsEngine);
    auto* limit = find("whiteLimit");
    limit->setFocus(Qt::TabFocusReason);
    QTest::keyClick(limit, Qt::Key_Return);
    EXPECT_TRUE(limit->isChecked());
    EXPECT_EQ(label("whiteStrength"), QStringLiteral("1800 ELO"));
}

TEST_F(PanelNewGame, theWheelScrollsAndChangesNoValue) {
    click(find("opponentLimit"));
    auto* slider = find<ValueSlider>("opponentElo");
    QWheelEvent wheel(QPointF(50, 10), slider->mapToGlobal(QPointF(50, 10)), {}, QPoint(0, -120),
                      Qt::NoButton, {}, Qt::NoScrollPhase, false);
    QApplication::sendEvent(slider, &wheel);
    EXPECT_EQ(slider->value(), 1800);
}

}  // namespace
}  // namespace orlix::test
