// The panel's tabs and what they open, in the states that matter.
#include <QAbstractButton>
#include <QAbstractSlider>
#include <QLineEdit>
#include <QMenuBar>

#include "screenshot_scenes.h"
#include "ui/controls/choice_group.h"
#include "ui/controls/text_label.h"
#include "ui/menus.h"
#include "ui/panel/uci_console_view.h"
#include "ui/right_panel_view.h"

namespace orlix::test {

namespace {

enum Tab { gameTab, analysisTab, automatchTab, newGameTab, enginesTab, exportTab };

template <typename Widget = QWidget>
Widget* find(const Shell& shell, const char* name) {
    auto* found = shell.window->findChild<Widget*>(QString::fromLatin1(name));
    if (found == nullptr) qFatal("no %s", name);
    return found;
}

void press(const Shell& shell, const char* name) {
    QTest::mouseClick(find<QAbstractButton>(shell, name), Qt::LeftButton);
}

void choose(const Shell& shell, const char* group, int index) {
    QTest::mouseClick(find<ChoiceGroup>(shell, group)->button(index), Qt::LeftButton);
}

// An engine that is installed, and more of them with names of every length.
void showEngines(Shell& shell, int more) {
    const QStringList names{QStringLiteral("/usr/games/puppet-of-the-long-winded-name-that-goes-on-and-on"),
                            QStringLiteral("/opt/homebrew/bin/marionette"),
                            QStringLiteral("/home/player/engines/development/build/release/bin/glove"),
                            QStringLiteral("/usr/local/bin/finger"),
                            QStringLiteral("/usr/games/shadow-play"),
                            QStringLiteral("/usr/games/rod")};
    shell.installEngine();
    for (const QString& path : names.mid(0, more)) {
        shell.fileTests.executables.insert(path);
        shell.system.enginePaths.append(path);
    }
    shell.showWindow();
    shell.engines->scanDefaultPaths();
    showTab(shell, enginesTab);
}

// A search in full swing: the log is full and goes on.
void flood(Shell& shell, int tab, bool isLimited = true) {
    showAgainstEngine(shell);
    shell.game->updateBlackElo(isLimited, 1800);
    playMoves(shell, {QStringLiteral("e2e4")});
    shell.eventually([&shell] { return shell.launcher.lastHeard("go "); });
    QTest::qWait(50);  // for the answers to the handshake
    showTab(shell, tab);
    for (int depth = 1; depth <= 400; ++depth) {
        shell.launcher.say("info depth " + QByteArray::number(depth / 16 + 1) +
                           " seldepth 30 multipv 1 score cp " + QByteArray::number(-depth / 8) + " nodes " +
                           QByteArray::number(depth * 30983) + " nps 1504321 time " +
                           QByteArray::number(depth * 20) +
                           " pv e7e5 g1f3 b8c6 f1b5 a7a6 b5a4 g8f6 e1g1 f8e7 f1e1 b7b5 a4b3 d7d6 c2c3 e8g8");
    }
    shell.eventually([&shell] { return shell.game->liveEvaluation().depth == 26; });
    shell.time.advance(std::chrono::milliseconds(500));
}

void analysisOfTwo(Shell& shell) {
    shell.installEngine();
    shell.buildWindow();
    shell.game->setGameMode(GameMode::engineVsEngine);
    shell.showWindow();
    shell.eventually([&shell] { return shell.launcher.engines().size() == 2; });
    shell.game->updateWhiteElo(true, 1400);
    showTab(shell, analysisTab);
    shell.eventually([&shell] {
        for (const QByteArray& line : shell.launcher.engines().front().lines)
            if (line.startsWith("go ")) return true;
        return false;
    });
    shell.launcher.engines().front().onOutput("info depth 9 score mate -4 nodes 200 nps 100 pv e2e4\n");
    shell.eventually([&shell] { return shell.game->liveEvaluation().mateIn.has_value(); });
    shell.time.advance(std::chrono::milliseconds(500));
}

void newGame(Shell& shell, GameMode mode) {
    shell.installEngine();
    shell.buildWindow();
    shell.game->setGameMode(mode);
    shell.showWindow();
    showTab(shell, newGameTab);
}

void scrollDown(Shell& shell) {
    QTest::qWait(50);  // for the page to take its new height
    for (auto* bar : shell.find<RightPanelView>()->findChildren<QAbstractSlider*>()) {
        if (bar->orientation() == Qt::Vertical && bar->isVisible()) bar->setValue(bar->maximum());
    }
}

void popUpGameMenu(Shell& shell) {
    auto* menu = shell.window->findChild<GameMenu*>();
    const auto* bar = shell.window->findChild<QMenuBar*>();
    menu->popup(bar->mapToGlobal(bar->actionGeometry(menu->menuAction()).bottomLeft()));
}

void showGameMenu(Shell& shell) {
    showTwoPeople(shell);
    popUpGameMenu(shell);
}

void refuseEngine(Shell& shell) {
    showEngines(shell, 1);
    press(shell, "addUciEngine");
    shell.launcher.broken.insert(QStringLiteral("/home/player/letter.txt"));
    shell.dialogs.answer(QStringLiteral("/home/player/letter.txt"));
    shell.eventually(
        [&shell] { return shell.window->findChild<QWidget*>(QStringLiteral("engineAddAlert")) != nullptr; });
}

void refusedPosition(Shell& shell) {
    showAgainstEngine(shell);
    showTab(shell, exportTab);
    find<QLineEdit>(shell, "fenInput")->setText(QStringLiteral("rnbqkbnr/pppppppp/9/8/8/8/PPPPPPPP w"));
    press(shell, "loadFen");
}

}  // namespace

std::vector<PictureOf> tabPictures() {
    const auto dark = Theme::Scheme::dark;
    std::vector<PictureOf> all;
    const auto add = [&all](const char* name, std::function<void(Shell&)> scene,
                            Theme::Scheme scheme = Theme::Scheme::light,
                            Language language = Language::english) {
        all.push_back({QString::fromLatin1(name), std::move(scene), scheme, language});
    };
    for (int tab = 0; tab < RightPanelView::tabCount; ++tab) {
        all.push_back({QStringLiteral("20-tab-%1").arg(tab), [tab](Shell& shell) {
                           showAgainstEngine(shell);
                           showTab(shell, tab);
                       }});
    }
    add("21-analysis", [](Shell& shell) { flood(shell, analysisTab); });
    add(
        "21-analysis-dark", [](Shell& shell) { flood(shell, analysisTab); }, dark, Language::french);
    add("21-analysis-unlimited", [](Shell& shell) { flood(shell, analysisTab, false); });
    add(
        "21-analysis-smallest-dark",
        [](Shell& shell) {
            flood(shell, analysisTab);
            shell.window->resize(1120, 740);
            scrollDown(shell);
        },
        dark, Language::german);
    add("21-analysis-selected", [](Shell& shell) {
        flood(shell, analysisTab, false);
        auto* console = find<UciConsoleView>(shell, "console");
        QTest::qWait(50);
        QTest::mouseDClick(console->viewport(), Qt::LeftButton, {}, console->viewport()->rect().center());
        console->setFocus(Qt::TabFocusReason);
    });
    add("21-analysis-of-two", analysisOfTwo);
    add("21-analysis-of-two-dark", analysisOfTwo, dark, Language::dutch);
    add("23-new-game-people", [](Shell& shell) { newGame(shell, GameMode::humanVsHuman); });
    add(
        "23-new-game-no-engine-dark",
        [](Shell& shell) {
            shell.showWindow();
            showTab(shell, newGameTab);
        },
        dark);
    add("23-new-game-custom", [](Shell& shell) {
        newGame(shell, GameMode::humanVsEngine);
        choose(shell, "presets", 9);
    });
    add(
        "23-new-game-custom-dark",
        [](Shell& shell) {
            newGame(shell, GameMode::humanVsEngine);
            choose(shell, "presets", 9);
        },
        dark, Language::german);
    add("23-new-game-move-time", [](Shell& shell) {
        newGame(shell, GameMode::humanVsEngine);
        shell.game->setBlackEngineLimit(true, 2200);
        choose(shell, "thinking", 1);
        scrollDown(shell);
    });
    add(
        "23-new-game-depth-dark",
        [](Shell& shell) {
            newGame(shell, GameMode::engineVsEngine);
            choose(shell, "thinking", 2);
            scrollDown(shell);
        },
        dark, Language::french);
    add("24-engines-empty", [](Shell& shell) {
        shell.showWindow();
        showTab(shell, enginesTab);
    });
    add("24-engines-full", [](Shell& shell) { showEngines(shell, 6); });
    add(
        "24-engines-editing-dark",
        [](Shell& shell) {
            showEngines(shell, 2);
            shell.engines->updateEngineConfig(shell.engines->availableEngines().first().id, true, 2200);
            press(shell, "editElo");
        },
        dark);
    add(
        "24-engines-adding-dark",
        [](Shell& shell) {
            showEngines(shell, 1);
            shell.launcher.introductions[puppetPath] = "";
            press(shell, "addUciEngine");
            shell.dialogs.answer(puppetPath);
        },
        dark, Language::german);
    add("24-engines-testing", [](Shell& shell) {
        showEngines(shell, 1);
        shell.launcher.introductions[shell.engines->availableEngines().first().executablePath] = "";
        press(shell, "testEngine");
    });
    add("24-engines-test-passed", [](Shell& shell) {
        showEngines(shell, 1);
        press(shell, "testEngine");
        shell.eventually([&shell] {
            return find<TextLabel>(shell, "testOutcome")->text().startsWith(QStringLiteral("Test OK"));
        });
    });
    add(
        "24-engines-test-failed-dark",
        [](Shell& shell) {
            showEngines(shell, 1);
            const QString path = shell.engines->availableEngines().first().executablePath;
            shell.launcher.broken.insert(path);
            press(shell, "testEngine");
            shell.eventually([&shell] {
                return find<TextLabel>(shell, "testOutcome")
                    ->text()
                    .startsWith(QStringLiteral("Test Failed"));
            });
        },
        dark);
    add("24-engines-refused", refuseEngine);
    add("24-engines-refused-dark", refuseEngine, dark);
    add("25-export", [](Shell& shell) {
        showTwoPeople(shell);
        playMoves(shell, openGame());
        showTab(shell, exportTab);
    });
    add("25-export-refused", refusedPosition);
    add("25-export-refused-dark", refusedPosition, dark, Language::german);
    add("25-export-loaded", [](Shell& shell) {
        showTwoPeople(shell);
        showTab(shell, exportTab);
        find<QLineEdit>(shell, "fenInput")
            ->setText(QStringLiteral("r3k2r/pp1n1ppp/2p1pn2/3p4/1bPP4/2N1PN2/PP3PPP/R1B1KB1R w KQkq - 2 8"));
        press(shell, "loadFen");
        QTest::qWait(400);
    });
    add("26-language-list", [](Shell& shell) {
        showTwoPeople(shell);
        press(shell, "languagePicker");
    });
    add(
        "26-engine-list-dark",
        [](Shell& shell) {
            showEngines(shell, 6);
            showTab(shell, newGameTab);
            press(shell, "opponentEngine");
        },
        dark);
    add("26-menu-dark", showGameMenu, dark, Language::german);
    add("26-menu-paused", [](Shell& shell) {
        showTwoPeople(shell);
        shell.game->togglePause();
        popUpGameMenu(shell);
    });
    add("27-focus", [](Shell& shell) {
        newGame(shell, GameMode::humanVsEngine);
        find<ChoiceGroup>(shell, "presets")->button(5)->setFocus(Qt::TabFocusReason);
    });
    add(
        "27-focus-slider-dark",
        [](Shell& shell) {
            newGame(shell, GameMode::engineVsEngine);
            shell.game->setWhiteEngineLimit(true, 1750);
            find(shell, "whiteElo")->setFocus(Qt::TabFocusReason);
        },
        dark);
    for (const bool isOn : {false, true}) {
        const auto focusSwitch = [isOn](Shell& shell) {
            newGame(shell, GameMode::humanVsEngine);
            shell.game->setBlackEngineLimit(isOn, 1750);
            find(shell, "opponentLimit")->setFocus(Qt::TabFocusReason);
        };
        add(isOn ? "27-focus-switch-on" : "27-focus-switch-off", focusSwitch);
        add(isOn ? "27-focus-switch-on-dark" : "27-focus-switch-off-dark", focusSwitch, dark);
    }
    add("27-focus-start", [](Shell& shell) {
        newGame(shell, GameMode::humanVsHuman);
        find(shell, "startGame")->setFocus(Qt::TabFocusReason);
    });
    return all;
}

}  // namespace orlix::test
