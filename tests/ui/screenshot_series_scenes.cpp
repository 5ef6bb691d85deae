#include "screenshot_scenes.h"
#include "series_by_hand.h"
#include "ui/panel/automatch_history_list.h"
#include "ui/right_panel_view.h"

namespace orlix::test {
namespace {

constexpr int gameTab = 0;
constexpr int automatchTab = 2;

/// Two engines in the registry, one of them held back, and the automatch tab in front.
void ready(Shell& shell) {
    const QString second = QStringLiteral("/engines/second");
    shell.launcher.introductions[puppetPath] = "id name Stockfish 15.1\nuciok\n";
    shell.launcher.introductions[second] = "id name Fairy-Stockfish 14.0.1 XQ\nuciok\n";
    shell.fileTests.executables += {puppetPath, second};
    shell.showWindow();
    for (const QString& path : {puppetPath, second}) {
        const auto count = shell.engines->availableEngines().size();
        shell.engines->addEngine(path, std::nullopt, [](const auto&, const auto&) {});
        shell.eventually([&] { return shell.engines->availableEngines().size() > count; });
    }
    shell.engines->setSelectedWhiteEngine(shell.engines->availableEngines().at(0));
    shell.engines->setSelectedBlackEngine(shell.engines->availableEngines().at(1));
    shell.automatch->setEngine2Limit(true, 1800);
    showTab(shell, automatchTab);
}

void running(Shell& shell) {
    ready(shell);
    shell.automatch->startAutomatch();
    playGames(*shell.automatch, shell.time, 6, 41);
}

void countingDown(Shell& shell) {
    running(shell);
    endGame(*shell.automatch, GameEndReason::stalemate());
}

void chosen(Shell& shell) {
    running(shell);
    shell.find<AutomatchHistoryList>()->choose(1);
}

void watched(Shell& shell) {
    running(shell);
    showTab(shell, gameTab);
}

}  // namespace

std::vector<PictureOf> seriesPictures() {
    const auto dark = Theme::Scheme::dark;
    std::vector<PictureOf> all;
    const auto add = [&all](const char* name, std::function<void(Shell&)> scene,
                            Theme::Scheme scheme = Theme::Scheme::light) {
        all.push_back({QString::fromLatin1(name), std::move(scene), scheme});
    };
    add("40-series-no-engine", [](Shell& shell) {
        shell.showWindow();
        showTab(shell, automatchTab);
    });
    add("41-series-ready", ready, dark);
    add("42-series-running", running);
    add("43-series-countdown", countingDown, dark);
    add("44-series-paused", [](Shell& shell) {
        running(shell);
        shell.automatch->pauseAutomatch();
    });
    add("45-series-chosen", chosen, dark);
    add("46-series-finished", [](Shell& shell) {
        running(shell);
        playGames(*shell.automatch, shell.time, 100);
    });
    add(
        "47-series-stopped-smallest",
        [](Shell& shell) {
            running(shell);
            shell.automatch->stopAutomatch();
            shell.window->resize(1120, 740);
        },
        dark);
    add("48-series-of-a-thousand", [](Shell& shell) {
        running(shell);
        shell.automatch->setTotalGames(1500);
        playGames(*shell.automatch, shell.time, 1000);
    });
    add("49-series-watched", watched, dark);
    for (const Theme::Scheme scheme : {Theme::Scheme::light, Theme::Scheme::dark}) {
        const QString look = scheme == dark ? QStringLiteral("dark") : QStringLiteral("light");
        for (const Language language : allLanguages) {
            const QString ending = look + u'-' + rawValue(language);
            all.push_back({QStringLiteral("50-series-") + ending, chosen, scheme, language});
            all.push_back({QStringLiteral("51-series-watched-") + ending,
                           [](Shell& shell) {
                               watched(shell);
                               endGame(*shell.automatch, GameEndReason::stalemate());
                           },
                           scheme, language});
            all.push_back({QStringLiteral("52-series-settings-") + ending,
                           [](Shell& shell) {
                               ready(shell);
                               shell.window->resize(1280, 1040);
                           },
                           scheme, language});
        }
    }
    return all;
}

}  // namespace orlix::test
