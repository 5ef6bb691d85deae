#include <QFile>
#include <QTemporaryDir>

#include "panel_tabs_fixture.h"
#include "platform/posix/posix_process_launcher.h"
#include "platform/qt/qt_file_tests.h"
#include "support/event_pump.h"
#include "support/scripted_engine.h"
#include "ui/controls/toggle_switch.h"
#include "ui/controls/value_slider.h"
#include "ui/panel/elided_label.h"
#include "ui/panel/engine_add_error.h"
#include "ui/panel/engine_row.h"
#include "ui/panel/engines_tab.h"

namespace orlix::test {
namespace {

class EnginesTabBase : public PanelTabsTest {
  protected:
    void open() const { panel->setSelectedTab(4); }
    EnginesTab* tab() const { return panel->findChild<EnginesTab*>(); }
    int rowCount() const { return static_cast<int>(tab()->rows().size()); }
    template <typename T = QAbstractButton>
    T* part(int row, const char* name) const {
        T* found = tab()->rows().at(row)->findChild<T*>(QString::fromLatin1(name));
        EXPECT_TRUE(found) << name;
        return found;
    }
    QString outcome(int row) const {
        const auto* label = part<TextLabel>(row, "testOutcome");
        return label->isVisible() ? label->text() : QString();
    }
    QString checking() const { return loc->text(ExtraText::checkingEngine); }
    /// Presses "add" and chooses `path` in the file panel.
    void add(const QString& path) {
        click(find(engines->availableEngines().isEmpty() ? "addEngine" : "addUciEngine"));
        ASSERT_TRUE(dialogs.isOpen());
        dialogs.answer(path);
    }
    QWidget* alert() const { return panel->findChild<QWidget*>(QStringLiteral("engineAddAlert")); }
};

class EnginesTabTest : public EnginesTabBase {};

TEST_F(EnginesTabTest, anEmptyListSaysWhatToDoAndHoldsTheButton) {
    open();
    EXPECT_EQ(rowCount(), 0);
    EXPECT_TRUE(find("addEngine")->isVisible());
    EXPECT_FALSE(find("addUciEngine")->isVisible());
    bool isSaid = false;
    for (const auto* label : tab()->findChildren<TextLabel*>())
        isSaid |= label->isVisible() && label->text() == loc->text(ExtraText::noEngineRegistered);
    EXPECT_TRUE(isSaid);
    click(find("addEngine"));
    ASSERT_EQ(dialogs.openRequests.size(), 1U);
    EXPECT_EQ(dialogs.openRequests[0].title, QStringLiteral("Select UCI Chess Engine Executable"));
    EXPECT_EQ(dialogs.openRequests[0].prompt, QStringLiteral("Choose Engine"));
}

TEST_F(EnginesTabTest, scanningListsWhatItFindsOnce) {
    open();
    files.executables = {QStringLiteral("/usr/bin/stockfish"), QStringLiteral("/usr/local/bin/gnuchess")};
    click(find("scanEngines"));
    ASSERT_EQ(rowCount(), 2);
    EXPECT_EQ(part<ElidedLabel>(0, "engineName")->text(), QStringLiteral("Stockfish"));
    EXPECT_EQ(part<ElidedLabel>(1, "engineName")->text(), QStringLiteral("Gnuchess"));
    EXPECT_FALSE(find("addEngine")->isVisible());
    EXPECT_TRUE(find("addUciEngine")->isVisible());
    click(find("scanEngines"));
    EXPECT_EQ(rowCount(), 2);
}

TEST_F(EnginesTabTest, aRowShowsTheEloInForce) {
    registerEngines();
    open();
    EXPECT_EQ(part<TextLabel>(0, "engineElo")->text(), QStringLiteral("Max ELO"));
    engines->updateEngineConfig(engines->availableEngines()[0].id, true, 1650);
    EXPECT_EQ(part<TextLabel>(0, "engineElo")->text(), QStringLiteral("1650 ELO"));
    EXPECT_EQ(part<TextLabel>(1, "engineElo")->text(), QStringLiteral("Max ELO"));
}

TEST_F(EnginesTabTest, oneEditorIsOpenAndWritesTheRegistry) {
    registerEngines();
    open();
    click(part(0, "editElo"));
    EXPECT_TRUE(part(0, "engineLimit")->isVisible());
    EXPECT_FALSE(tab()->rows()[1]->findChild<QWidget*>(QStringLiteral("engineLimit")));
    click(part(0, "engineLimit"));
    EXPECT_TRUE(engines->availableEngines()[0].limitElo);
    EXPECT_EQ(engines->availableEngines()[0].elo, 2000);
    EXPECT_EQ(part<TextLabel>(0, "engineElo")->text(), QStringLiteral("2000 ELO"));
    click(part<ChoiceGroup>(0, "enginePresets")->button(4));
    EXPECT_EQ(engines->availableEngines()[0].elo, 3190);
    auto* slider = part<ValueSlider>(0, "engineElo");
    EXPECT_EQ(slider->minimum(), 1320);
    EXPECT_EQ(slider->maximum(), 3190);
    slider->setFocus(Qt::TabFocusReason);
    QTest::keyClick(slider, Qt::Key_Home);
    EXPECT_EQ(engines->availableEngines()[0].elo, 1320);
    click(part(1, "editElo"));
    EXPECT_FALSE(part(0, "engineLimit")->isVisible());
    EXPECT_FALSE(part(0, "editElo")->isChecked());
    EXPECT_TRUE(part(1, "engineLimit")->isVisible());
    click(part(1, "editElo"));
    EXPECT_FALSE(part(1, "engineLimit")->isVisible());
    // Stored at once: another registry over the same store has it.
    const EngineManager restarted(EngineManager::Platform{defaults, files, system, puppets, dialogs});
    EXPECT_EQ(restarted.availableEngines()[0].elo, 1320);
    EXPECT_TRUE(restarted.availableEngines()[0].limitElo);
}

TEST_F(EnginesTabTest, removingTakesTheRowAndKeepsTheOthers) {
    registerEngines();
    open();
    EngineRow* kept = tab()->rows()[1];
    click(part(0, "editElo"));
    click(part(0, "removeEngine"));
    ASSERT_EQ(rowCount(), 1);
    EXPECT_EQ(tab()->rows()[0], kept);
    ASSERT_EQ(engines->availableEngines().size(), 1);
    EXPECT_EQ(engines->availableEngines()[0].name, QStringLiteral("Gnuchess"));
    part(0, "removeEngine")->setFocus(Qt::TabFocusReason);
    QTest::keyClick(part(0, "removeEngine"), Qt::Key_Space);
    EXPECT_EQ(rowCount(), 1);
    QTest::keyClick(part(0, "removeEngine"), Qt::Key_Return);
    EXPECT_EQ(rowCount(), 0);
    EXPECT_TRUE(find("addEngine")->isVisible());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(tab()->findChildren<EngineRow*>().size(), 0);
}

TEST_F(EnginesTabTest, theKeyboardStaysInTheListWhenARowGoes) {
    registerEngines();
    open();
    part(0, "removeEngine")->setFocus(Qt::TabFocusReason);
    QTest::keyClick(part(0, "removeEngine"), Qt::Key_Return);
    EXPECT_TRUE(part(0, "removeEngine")->hasFocus());
    QTest::keyClick(part(0, "removeEngine"), Qt::Key_Return);
    EXPECT_TRUE(find("scanEngines")->hasFocus());
}

TEST_F(EnginesTabTest, theKeyboardGoesBackARowWhenTheLastOneGoes) {
    registerEngines();
    open();
    part(1, "removeEngine")->setFocus(Qt::TabFocusReason);
    QTest::keyClick(part(1, "removeEngine"), Qt::Key_Return);
    ASSERT_EQ(rowCount(), 1);
    EXPECT_TRUE(part(0, "removeEngine")->hasFocus());
}

TEST_F(EnginesTabTest, aLongNameIsShortenedWithTheWholeAsTooltip) {
    EngineConfiguration engine;
    engine.name =
        QStringLiteral("An engine <b>whose</b> name goes on and on until no panel could hold it all");
    engine.executablePath =
        QStringLiteral("/opt/") + QStringLiteral("deep/").repeated(40) + QStringLiteral("engine");
    defaults.setData(QStringLiteral("Velmorandix_InstalledEngines"), toJson({engine}));
    engines->loadEngines();
    open();
    auto* name = part<ElidedLabel>(0, "engineName");
    EXPECT_EQ(name->text(), engine.name);
    EXPECT_TRUE(name->shownText().contains(QChar(0x2026)));
    EXPECT_TRUE(name->toolTip().contains(engine.name.toHtmlEscaped()));
    EXPECT_EQ(name->accessibleName(), engine.name);
    EXPECT_TRUE(part(0, "removeEngine")->accessibleName().contains(engine.name));
    EXPECT_GT(expectAllFit("long name"), 12);
}

TEST_F(EnginesTabTest, theEnginesOfAnEarlierRunAreListedInOrder) {
    EngineConfiguration first;
    first.name = QStringLiteral("First");
    EngineConfiguration second;
    second.name = QStringLiteral("My Quillmere");
    open();
    defaults.setData(QStringLiteral("Velmorandix_InstalledEngines"), toJson({first, second}));
    engines->loadEngines();
    ASSERT_EQ(rowCount(), 2);
    files.executables.insert(QStringLiteral("/usr/bin/stockfish"));
    click(find("scanEngines"));
    ASSERT_EQ(rowCount(), 3);
    EXPECT_EQ(part<ElidedLabel>(0, "engineName")->text(), QStringLiteral("My Quillmere"));
    EXPECT_EQ(part<ElidedLabel>(1, "engineName")->text(), QStringLiteral("First"));
    EXPECT_EQ(part<ElidedLabel>(2, "engineName")->text(), QStringLiteral("Stockfish"));
    QCoreApplication::processEvents();
    EXPECT_LT(tab()->rows()[0]->y(), tab()->rows()[1]->y());
    EXPECT_LT(tab()->rows()[1]->y(), tab()->rows()[2]->y());
}

TEST_F(EnginesTabTest, textsFollowTheLanguageAndFit) {
    open();
    forEveryLanguageAndWidth([this](const std::string& where) { expectAllFit(where + " empty"); });
    registerEngines();
    tab()->setCheckingEngine(true);
    click(part(0, "editElo"));
    click(part(0, "engineLimit"));
    forEveryLanguageAndWidth([this](const std::string& where) {
        EXPECT_GT(expectAllFit(where), 20);
        EXPECT_EQ(find<PanelButton>("scanEngines")->label(), loc->text("scan_engines"));
        EXPECT_EQ(find<PanelButton>("addUciEngine")->label(), loc->text("add_engine"));
        EXPECT_EQ(part<PanelButton>(0, "testEngine")->label(), loc->text("test_engine"));
        EXPECT_EQ(part(0, "removeEngine")->toolTip(), loc->text("remove_engine"));
        EXPECT_EQ(part(0, "editElo")->toolTip(), loc->text("elo_rating"));
    });
}

/// Real files and child processes.
class EnginesTabFiles : public EnginesTabBase {
  protected:
    ProcessLauncher& processes() override { return launcher_; }
    const FileTests& fileTests() override { return realFiles_; }

    void SetUp() override {
        EnginesTabBase::SetUp();
        while (!engines->availableEngines().isEmpty())
            engines->removeEngine(engines->availableEngines().first());
        open();
    }
    void TearDown() override {
        EnginesTabBase::TearDown();
        engines.reset();
        EXPECT_TRUE(pumpUntil([this] { return launcher_.childCount() == 0; }));
    }
    /// Registers `path` without testing it.
    void registerFile(const QString& path) {
        EngineConfiguration engine;
        engine.name = QStringLiteral("Under test");
        engine.executablePath = path;
        QList<EngineConfiguration> all = engines->availableEngines();
        all.append(engine);
        defaults.setData(QStringLiteral("Velmorandix_InstalledEngines"), toJson(all));
        engines->loadEngines();
        QCoreApplication::processEvents();  // the layout places the new row
    }
    /// Begins the test of a new row and gives the row.
    int beginTest(const QString& path) {
        registerFile(path);
        const int row = rowCount() - 1;
        click(part(row, "testEngine"));
        EXPECT_EQ(outcome(row), checking());
        return row;
    }
    /// What the row says in the end.
    QString outcomeInTheEnd(int row) {
        EXPECT_TRUE(pumpUntil([&] { return outcome(row) != checking(); }));
        return outcome(row);
    }
    QString testOutcome(const QString& path) { return outcomeInTheEnd(beginTest(path)); }
    QString write(const QString& name, const QByteArray& contents, QFile::Permissions permissions) const {
        const QString path = folder_.filePath(name);
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(contents);
        file.close();
        file.setPermissions(permissions);
        return path;
    }

    PosixProcessLauncher launcher_;
    QtFileTests realFiles_;
    QTemporaryDir folder_;
};

constexpr auto readOnly = QFile::ReadOwner;
constexpr auto executable = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;

TEST_F(EnginesTabFiles, aWorkingEngineIsAddedUnderItsOwnName) {
    const ScriptedEngine scripted({QStringLiteral("--name=Kestrel 4"), QStringLiteral("--author=A. Nobody")});
    add(scripted.path());
    EXPECT_TRUE(find<TextLabel>("checkingEngine")->isVisible());
    ASSERT_TRUE(pumpUntil([this] { return rowCount() == 1; }));
    EXPECT_FALSE(find<TextLabel>("checkingEngine")->isVisible());
    EXPECT_EQ(part<ElidedLabel>(0, "engineName")->text(), QStringLiteral("Kestrel 4"));
    EXPECT_TRUE(panel->toastMessage().contains(QStringLiteral("Kestrel 4")));
    EXPECT_FALSE(alert());
}

TEST(EngineAddError, withoutATextIsTheFixedSentence) {
    EXPECT_EQ(engineAddErrorText(std::nullopt), QStringLiteral("Unknown error adding engine."));
    EXPECT_EQ(engineAddErrorText(QString()), QStringLiteral("Unknown error adding engine."));
    EXPECT_EQ(engineAddErrorText(QStringLiteral(" ")), QStringLiteral("Unknown error adding engine."));
    EXPECT_EQ(engineAddErrorText(QStringLiteral("No.")), QStringLiteral("No."));
}

TEST_F(EnginesTabFiles, aFileThatIsNoEngineEndsInTheAlert) {
    add(write(QStringLiteral("notes.txt"), "not a program\n", readOnly));
    ASSERT_TRUE(pumpUntil([this] { return alert() != nullptr; }));
    EXPECT_EQ(alert()->windowTitle(), QStringLiteral("Engine Error"));
    EXPECT_EQ(alert()->property("text").toString(),
              QStringLiteral("Engine failed UCI test: Permission denied"));
    EXPECT_EQ(rowCount(), 0);
    EXPECT_EQ(panel->toastMessage(), QString());
    EXPECT_FALSE(find<TextLabel>("checkingEngine")->isVisible());
    alert()->close();
    // Another try is possible.
    const ScriptedEngine scripted;
    add(scripted.path());
    EXPECT_TRUE(pumpUntil([this] { return rowCount() == 1; }));
}

TEST_F(EnginesTabFiles, aSilentEngineEndsInTheAlertWhileTheWindowStaysUsable) {
    const ScriptedEngine scripted({QStringLiteral("--silent")});
    QElapsedTimer elapsed;
    elapsed.start();
    add(scripted.path());
    EXPECT_FALSE(alert());
    // Everything else works meanwhile; a second file is not asked for.
    panel->setSelectedTab(5);
    click(find("copyFen"));
    EXPECT_TRUE(pasteboard.text);
    panel->setSelectedTab(4);
    click(find("addEngine"));
    EXPECT_EQ(dialogs.openRequests.size(), 1U);
    LoopGaps gaps;
    ASSERT_TRUE(pumpUntil([this] { return alert() != nullptr; }));
    EXPECT_GE(elapsed.elapsed(), 3000);
    EXPECT_GE(gaps.ticks(), 20U);
    EXPECT_EQ(alert()->property("text").toString(),
              QStringLiteral("Engine failed UCI test: Engine did not reply with 'uciok' within 3 seconds"));
}

TEST_F(EnginesTabFiles, theTestNamesAWorkingEngine) {
    const ScriptedEngine scripted({QStringLiteral("--name=Kestrel 4")});
    EXPECT_EQ(testOutcome(scripted.path()), QStringLiteral("Test OK: Kestrel 4"));
    loc->setCurrentLanguage(Language::german);
    EXPECT_EQ(outcome(0), QStringLiteral("Test OK: Kestrel 4")) << "the same in every language";
}

TEST_F(EnginesTabFiles, theTestSucceedsWithoutANameToo) {
    const ScriptedEngine scripted({QStringLiteral("--no-id")});
    EXPECT_EQ(testOutcome(scripted.path()), QStringLiteral("Test OK: scripted engine"));
}

TEST_F(EnginesTabFiles, everyUnusableFileEndsInItsText) {
    EXPECT_EQ(testOutcome(folder_.filePath(QStringLiteral("missing"))),
              QStringLiteral("Test Failed: No such file or directory"));
    EXPECT_EQ(testOutcome(write(QStringLiteral("plain"), "text\n", readOnly)),
              QStringLiteral("Test Failed: Permission denied"));
    EXPECT_EQ(testOutcome(folder_.path()), QStringLiteral("Test Failed: Permission denied"));
    const QString garbage = testOutcome(write(QStringLiteral("garbage"),
                                              "\x7f"
                                              "ELF garbage",
                                              executable));
    EXPECT_TRUE(garbage.startsWith(QStringLiteral("Test Failed: "))) << utf8(garbage);
    EXPECT_GT(garbage.size(), 14);
}

TEST_F(EnginesTabFiles, slowDeafAndCrashingEnginesEndInTheLimitsText) {
    const QString limit = QStringLiteral("Test Failed: Engine did not reply with 'uciok' within 3 seconds");
    std::vector<std::unique_ptr<ScriptedEngine>> engineFiles;
    for (const char* flag :
         {"--uciok-delay-ms=60000", "--silent", "--crash-at=uci", "--exit-at=start", "--stop-at=start"}) {
        engineFiles.push_back(std::make_unique<ScriptedEngine>(QStringList{QString::fromLatin1(flag)}));
        beginTest(engineFiles.back()->path());
    }
    for (int row = 0; row < rowCount(); ++row)
        EXPECT_EQ(outcomeInTheEnd(row), limit) << row;
}

TEST_F(EnginesTabFiles, pressingTwiceStartsOneTest) {
    const ScriptedEngine scripted({QStringLiteral("--uciok-delay-ms=300")});
    registerFile(scripted.path());
    click(part(0, "testEngine"));
    click(part(0, "testEngine"));
    EXPECT_EQ(outcome(0), checking());
    ASSERT_TRUE(pumpUntil([&] { return outcome(0) != checking(); }));
    EXPECT_TRUE(outcome(0).startsWith(QStringLiteral("Test OK: ")));
    EXPECT_EQ(scripted.receivedLines().count(QStringLiteral("uci")), 1);
    // And again when the first is over.
    click(part(0, "testEngine"));
    EXPECT_EQ(outcome(0), checking());
    ASSERT_TRUE(pumpUntil([&] { return outcome(0) != checking(); }));
    EXPECT_EQ(scripted.receivedLines().count(QStringLiteral("uci")), 2);
}

TEST_F(EnginesTabFiles, anEngineRemovedDuringItsTestHarmsNothing) {
    const ScriptedEngine scripted({QStringLiteral("--uciok-delay-ms=100")});
    registerFile(scripted.path());
    click(part(0, "testEngine"));
    click(part(0, "removeEngine"));
    EXPECT_EQ(rowCount(), 0);
    EXPECT_TRUE(pumpUntil([this] { return launcher_.childCount() == 0; }));
    EXPECT_EQ(rowCount(), 0);
}

TEST_F(EnginesTabFiles, thePanelMayGoDuringATest) {
    const ScriptedEngine scripted({QStringLiteral("--uciok-delay-ms=100")});
    registerFile(scripted.path());
    click(part(0, "testEngine"));
    panel.reset();
    EXPECT_TRUE(pumpUntil([this] { return launcher_.childCount() == 0; }));
}

TEST_F(EnginesTabFiles, anEngineInTheGameMayBeTestedEditedAndRemoved) {
    const ScriptedEngine scripted({QStringLiteral("--name=Kestrel"), QStringLiteral("--moves=e7e5,b8c6"),
                                   QStringLiteral("--move-delay-ms=50")});
    add(scripted.path());
    ASSERT_TRUE(pumpUntil([this] { return rowCount() == 1; }));
    game->setGameMode(GameMode::humanVsEngine);
    game->startNewGame();
    const auto play = [this](const char* from, const char* to) {
        game->handleSquareClick(*Square::fromText(from));
        game->handleSquareClick(*Square::fromText(to));
    };
    const auto plies = [this] { return game->board().history.size(); };
    play("e2", "e4");
    ASSERT_TRUE(eventually([&] { return plies() == 2; }));
    click(part(0, "testEngine"));
    click(part(0, "editElo"));
    click(part(0, "engineLimit"));
    EXPECT_FALSE(game->blackEngineProcess()->config().limitElo) << "the running game keeps its own strength";
    play("g1", "f3");
    click(part(0, "removeEngine"));
    EXPECT_EQ(rowCount(), 0);
    ASSERT_TRUE(eventually([&] { return plies() == 4; }));
    EXPECT_EQ(game->board().history.back().san, "Nc6");
    EXPECT_TRUE(game->blackEngineProcess()->isRunning());
}

}  // namespace
}  // namespace orlix::test
