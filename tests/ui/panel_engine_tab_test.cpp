#include "panel_engine_tab_fixture.h"
#include "platform/posix/posix_process_launcher.h"
#include "platform/qt/qt_file_tests.h"
#include "platform/qt/qt_time_source.h"
#include "support/event_pump.h"
#include "support/scripted_engine.h"
#include "ui/controls/toggle_switch.h"
#include "ui/controls/value_slider.h"
#include "ui/panel/elided_label.h"
#include "ui/panel/engine_tab.h"
#include "ui/panel/live_elo_editor.h"

namespace orlix::test {
namespace {

const QString narrowSpace(QChar(0x202F));

TEST_F(EngineTabTest, withoutAnEngineItIsIdleAndTheConsoleSaysWhatToDo) {
    panel->setSelectedTab(1);
    EXPECT_TRUE(find<TextLabel>("engineIdle")->isVisible());
    EXPECT_EQ(find<TextLabel>("engineIdle")->text(), loc->text("engine_idle"));
    EXPECT_FALSE(panel->findChild<LiveEloEditor*>()->isVisible());
    ASSERT_EQ(console()->shownTexts().size(), 1);
    EXPECT_EQ(console()->shownTexts()[0].text,
              QStringLiteral("No UCI communication yet. Start a game to see raw engine dialogue."));
    EXPECT_FALSE(find("copyLog")->isEnabled());
    EXPECT_EQ(figures()->values(), QStringList(4, QStringLiteral("\u2013")));
}

TEST_F(EngineTabTest, theCardShowsWhatTheThinkingEngineSays) {
    playAgainstEngine();
    panel->setSelectedTab(1);
    auto* name = find<ElidedLabel>("thinkingEngine");
    EXPECT_TRUE(name->isVisible());
    EXPECT_EQ(name->text(), game->currentlyThinkingEngine()->name);
    EXPECT_FALSE(find<TextLabel>("engineIdle")->isVisible());
    say("info depth 18 score cp -35 nodes 12345678 nps 1500000 time 900 pv e7e5 g1f3 b8c6");
    EXPECT_EQ(figures()->values(), (QStringList{QStringLiteral("-0.35"), QStringLiteral("18"),
                                                QStringLiteral("12") + narrowSpace + QStringLiteral("345") +
                                                    narrowSpace + QStringLiteral("678"),
                                                QStringLiteral("1") + narrowSpace + QStringLiteral("500") +
                                                    narrowSpace + QStringLiteral("000")}));
    EXPECT_EQ(figures()->line(), QStringLiteral("e7e5 g1f3 b8c6"));
    EXPECT_TRUE(figures()->accessibleName().contains(QStringLiteral("Score -0.35")));
    say("info score mate 3");
    EXPECT_EQ(figures()->values()[0], QStringLiteral("+M3"));
}

TEST_F(EngineTabTest, afterItsMoveTheEngineIsIdleAndItsLastWordStays) {
    playAgainstEngine();
    panel->setSelectedTab(1);
    say("info depth 9 score cp 12 pv e7e5");
    say("bestmove e7e5");
    ASSERT_FALSE(game->currentlyThinkingEngine());
    EXPECT_TRUE(find<TextLabel>("engineIdle")->isVisible());
    EXPECT_FALSE(find<ElidedLabel>("thinkingEngine")->isVisible());
    EXPECT_EQ(figures()->values()[1], QStringLiteral("9"));
}

TEST_F(EngineTabTest, aNewGameClearsTheCard) {
    playAgainstEngine();
    panel->setSelectedTab(1);
    say("info depth 9 score cp 12 pv e7e5");
    game->startNewGame();
    settle();
    EXPECT_EQ(figures()->values()[1], QStringLiteral("\u2013"));
    game->setGameMode(GameMode::humanVsHuman);
    game->startNewGame();
    settle();
    EXPECT_EQ(console()->engine(), nullptr);
    EXPECT_TRUE(console()->lines().isEmpty());
    EXPECT_FALSE(find("copyLog")->isEnabled());
}

TEST_F(EngineTabTest, aFloodOfEvaluationsIsShownAtMostThirtyTimesASecond) {
    playAgainstEngine();
    panel->setSelectedTab(1);
    settle();
    PaintWatch paints(figures());
    for (int said = 1; said <= 200; ++said) {
        const QByteArray number = QByteArray::number(said);
        puppets.say("info depth " + number + " nodes " + number);
        QTest::qWait(0);
        time.advance(5ms);
        QCoreApplication::processEvents();
    }
    EXPECT_LE(paints.count, 31);
    EXPECT_GE(paints.count, 10);
    settle();
    EXPECT_EQ(figures()->values()[1], QStringLiteral("200"));
}

TEST_F(EngineTabTest, theSameEvaluationPaintsNothing) {
    playAgainstEngine();
    panel->setSelectedTab(1);
    say("info depth 9 score cp 12 nodes 5 nps 6 pv e7e5");
    QCoreApplication::processEvents();
    PaintWatch paints(figures());
    say("info depth 9 score cp 12 nodes 5 nps 6 pv e7e5");
    QCoreApplication::processEvents();
    EXPECT_EQ(paints.count, 0);
}

TEST_F(EngineTabTest, liveStrengthReachesTheRunningEngineAtOnce) {
    playAgainstEngine();
    panel->setSelectedTab(1);
    EXPECT_TRUE(panel->findChild<LiveEloEditor*>()->isVisible());
    EXPECT_FALSE(panel->findChild<QWidget*>(QStringLiteral("liveWhiteLimit")));
    click(find("liveBlackLimit"));
    EXPECT_TRUE(game->blackEngineLimitElo());
    settle();
    EXPECT_TRUE(console()->lines().contains(QStringLiteral("> setoption name UCI_LimitStrength value true")));
    EXPECT_TRUE(puppets.lastHeard("setoption name UCI_Elo value 1800"));
    click(find<ChoiceGroup>("liveBlackPresets")->button(2));
    settle();
    EXPECT_EQ(game->blackEngineElo(), 2200);
    EXPECT_EQ(find<TextLabel>("liveBlackStrength")->text(), QStringLiteral("2200 ELO"));
    EXPECT_TRUE(console()->lines().contains(QStringLiteral("> setoption name UCI_Elo value 2200")));
    EXPECT_EQ(game->currentlyThinkingEngine()->elo, 2200);
    auto* slider = find<ValueSlider>("liveBlackElo");
    EXPECT_EQ(slider->minimum(), 1320);
    EXPECT_EQ(slider->maximum(), 3190);
    EXPECT_EQ(slider->value(), 2200);
    slider->setFocus(Qt::TabFocusReason);
    QTest::keyClick(slider, Qt::Key_Right);
    EXPECT_EQ(game->blackEngineElo(), 2210);
    EXPECT_EQ(find<ChoiceGroup>("liveBlackPresets")->currentIndex(), -1);
    QTest::keyClick(slider, Qt::Key_PageUp);
    EXPECT_EQ(game->blackEngineElo(), 2310);
    EXPECT_TRUE(find<TextLabel>("liveBlackStrength")->isVisible());
    click(find("liveBlackLimit"));
    EXPECT_FALSE(game->blackEngineLimitElo());
    EXPECT_FALSE(find<TextLabel>("liveBlackStrength")->isVisible()) << "a strength that is not in force";
    EXPECT_FALSE(slider->isVisible());
    EXPECT_TRUE(puppets.lastHeard("setoption name UCI_LimitStrength value false"));
}

TEST_F(EngineTabTest, aDraggedSliderTellsTheEngineWhereItEnds) {
    playAgainstEngine();
    panel->setSelectedTab(1);
    click(find("liveBlackLimit"));
    settle();
    auto* slider = find<ValueSlider>("liveBlackElo");
    const qsizetype before = game->blackEngineProcess()->logLines().size();
    const QPoint start = slider->knobCenter(1800).toPoint();
    QTest::mousePress(slider, Qt::LeftButton, {}, start);
    for (int x = start.x(); x < start.x() + 100; x += 5)
        QTest::mouseMove(slider, QPoint(x, start.y()));
    EXPECT_EQ(game->blackEngineElo(), 1800);
    const QString moving = find<TextLabel>("liveBlackStrength")->text();
    EXPECT_NE(moving, QStringLiteral("1800 ELO")) << "the value is shown on the way";
    QTest::mouseRelease(slider, Qt::LeftButton, {}, QPoint(start.x() + 100, start.y()));
    EXPECT_GT(game->blackEngineElo(), 1800);
    EXPECT_EQ(find<TextLabel>("liveBlackStrength")->text(),
              QString::number(game->blackEngineElo()) + QStringLiteral(" ELO"));
    EXPECT_EQ(game->blackEngineProcess()->logLines().size(), before + 2);
}

TEST_F(EngineTabTest, betweenEnginesEachSideHasItsOwnStrength) {
    playBetweenEngines();
    panel->setSelectedTab(1);
    click(find("liveWhiteLimit"));
    find<ValueSlider>("liveWhiteElo")->setValue(1400);
    EXPECT_EQ(game->whiteEngineElo(), 1400);
    EXPECT_TRUE(game->whiteEngineLimitElo());
    EXPECT_FALSE(game->blackEngineLimitElo());
    EXPECT_EQ(game->blackEngineElo(), 1800);
    const auto heard = puppets.engines();
    EXPECT_TRUE(heard.at(heard.size() - 2).lines.contains("setoption name UCI_Elo value 1400"));
    EXPECT_FALSE(heard.back().lines.contains("setoption name UCI_Elo value 1400"));
    // What is changed elsewhere is shown here.
    game->updateBlackElo(true, 2600);
    EXPECT_EQ(find<TextLabel>("liveBlackStrength")->text(), QStringLiteral("2600 ELO"));
    EXPECT_EQ(find<ValueSlider>("liveBlackElo")->value(), 2600);
}

TEST_F(EngineTabTest, theConsoleStandsWholeOnThePageWhateverIsAboveIt) {
    // What is left for the panel in a window of the default size, below its menu.
    panel->resize(RightPanelView::minimumPanelWidth, 836);
    const auto expectWhole = [this] {
        settle();
        const QWidget* frame = console()->parentWidget();
        QWidget* page = frame->parentWidget()->parentWidget()->parentWidget();
        ASSERT_TRUE(page->parentWidget()->inherits("QScrollArea"));
        const int bottom = frame->mapTo(page, QPoint(0, frame->height())).y();
        EXPECT_LE(bottom, page->height()) << utf8(displayName(loc->currentLanguage()));
        EXPECT_LE(page->height(), page->parentWidget()->height()) << "nothing has to be scrolled for it";
        EXPECT_GE(console()->height(), 90);
    };
    playAgainstEngine();
    panel->setSelectedTab(1);
    click(find("liveBlackLimit"));
    EXPECT_TRUE(find<ChoiceGroup>("liveBlackPresets")->isVisible());
    for (const Language language : allLanguages) {
        loc->setCurrentLanguage(language);
        expectWhole();
    }
    playBetweenEngines();
    game->updateWhiteElo(true, 1800);
    game->updateBlackElo(true, 2600);
    EXPECT_FALSE(find<ChoiceGroup>("liveBlackPresets")->isVisible());
    for (const Language language : allLanguages) {
        loc->setCurrentLanguage(language);
        expectWhole();
    }
}

TEST_F(EngineTabTest, presetsBearTheirTextsInEveryLanguage) {
    playAgainstEngine();
    panel->setSelectedTab(1);
    click(find("liveBlackLimit"));
    const char* keys[] = {"preset_beginner", "preset_club", "preset_master", "preset_grandmaster",
                          "preset_max"};
    const qint64 strengths[] = {1400, 1800, 2200, 2600, 3190};
    auto* presets = find<ChoiceGroup>("liveBlackPresets");
    for (const Language language : allLanguages) {
        loc->setCurrentLanguage(language);
        for (int index = 0; index < 5; ++index)
            EXPECT_EQ(presets->button(index)->label(), loc->text(keys[index]));
    }
    for (int index = 0; index < 5; ++index) {
        click(presets->button(index));
        EXPECT_EQ(game->blackEngineElo(), strengths[index]);
    }
}

TEST_F(EngineTabTest, everyTextFits) {
    playBetweenEngines();
    panel->setSelectedTab(1);
    click(find("liveWhiteLimit"));
    puppets.engines()
        .at(puppets.engines().size() - 2)
        .onOutput("info depth 245 score cp -12345 nodes 123456789012 nps 123456789 pv " +
                  QByteArray("e7e8q ").repeated(80) + "\n");
    settle();
    forEveryLanguageAndWidth([this](const std::string& where) { EXPECT_GT(expectAllFit(where), 40); });
    game->setGameMode(GameMode::humanVsHuman);
    game->startNewGame();
    settle();
    forEveryLanguageAndWidth([this](const std::string& where) { expectAllFit(where + " empty"); });
}

TEST_F(EngineTabTest, spacePressesNothingAndReturnDoes) {
    playAgainstEngine();
    panel->setSelectedTab(1);
    for (const char* name : {"copyLog", "liveBlackLimit"}) {
        find(name)->setFocus(Qt::TabFocusReason);
        QTest::keyClick(find(name), Qt::Key_Space);
    }
    EXPECT_FALSE(pasteboard.text);
    EXPECT_FALSE(game->blackEngineLimitElo());
    QTest::keyClick(find("liveBlackLimit"), Qt::Key_Return);
    EXPECT_TRUE(game->blackEngineLimitElo());
}

TEST(EngineNumbers, areGroupedAlikeInEveryLocale) {
    const QLocale before;
    for (const char* name : {"C", "de_DE", "fr_FR", "en_IN", "ar_EG"}) {
        QLocale::setDefault(QLocale(QString::fromLatin1(name)));
        EXPECT_EQ(groupedNumber(0), QStringLiteral("0"));
        EXPECT_EQ(groupedNumber(999), QStringLiteral("999"));
        EXPECT_EQ(groupedNumber(-1234), QStringLiteral("-1") + narrowSpace + QStringLiteral("234"));
        EXPECT_EQ(groupedNumber(-123), QStringLiteral("-123"));
        EXPECT_EQ(groupedNumber(1234567), QStringLiteral("1") + narrowSpace + QStringLiteral("234") +
                                              narrowSpace + QStringLiteral("567"));
    }
    QLocale::setDefault(before);
}

/// A real engine that floods, on the real clock.
class EngineTabFlood : public EngineTabTest {
  protected:
    ProcessLauncher& processes() override { return launcher_; }
    const FileTests& fileTests() override { return realFiles_; }
    PosixProcessLauncher launcher_;
    QtFileTests realFiles_;
};

TEST_F(EngineTabFlood, theWindowStaysUsableAndTheConsoleCurrent) {
    const ScriptedEngine scripted({QStringLiteral("--flood-seconds=2"), QStringLiteral("--flood-rate=20000"),
                                   QStringLiteral("--moves=e7e5")});
    system.enginePaths = {scripted.path()};
    engines->scanDefaultPaths();
    const auto& all = engines->availableEngines();
    engines->setSelectedBlackEngine(all.last());
    QtTimeSource clock;
    auto running =
        std::make_unique<GameManager>(clock, *engines, sounds, [this](const EngineConfiguration& config) {
            return std::make_unique<UCIEngineProcess>(config, launcher_, realFiles_);
        });
    AutomatchManager series(clock, *running, *engines, sounds);
    RightPanelView view(*running, *engines, *loc, series, theme, exporter, clock);
    view.resize(400, 900);
    view.show();
    view.setSelectedTab(1);
    running->setGameMode(GameMode::humanVsEngine);
    running->startNewGame();
    running->handleSquareClick(*Square::fromText("e2"));
    running->handleSquareClick(*Square::fromText("e4"));
    auto* console = view.findChild<UciConsoleView*>();
    const auto lastLine = [&] { return console->lines().value(console->lines().size() - 1); };
    ASSERT_TRUE(pumpUntil([&] { return lastLine().contains(QStringLiteral("nodes 1")); }));
    const int refreshes = console->refreshCount();
    PaintWatch paints(console->viewport());
    QElapsedTimer elapsed;
    elapsed.start();
    LoopGaps gaps;
    ASSERT_TRUE(pumpUntil([&] { return console->lines().contains(QStringLiteral("< bestmove e7e5")); }))
        << utf8(lastLine());
    const double seconds = static_cast<double>(elapsed.elapsed()) / 1000;
    EXPECT_LE(console->refreshCount() - refreshes, 30 * seconds + 2);
    EXPECT_LE(paints.count, 30 * seconds + 2);
    EXPECT_GE(gaps.ticks(), 20U) << "two seconds of lines, and the window turned between them";
}

}  // namespace
}  // namespace orlix::test
