// What the panel costs while a series of engine games runs, with the whole window open and a thousand
// finished games in the history: the end of a game with everything that is painted for it, and scrolling.
#include <benchmark/benchmark.h>

#include <QScrollBar>

#include "ui/panel/automatch_history_list.h"
#include "ui/right_panel_view.h"
#include "ui/series_by_hand.h"
#include "ui/shell.h"

namespace orlix::test {
namespace {

constexpr int finishedGames = 1000;

/// The window with the automatch tab in front and a long series under way.
struct LongSeries : Shell {
    LongSeries() {
        installEngine();
        showWindow();
        find<RightPanelView>()->setSelectedTab(2);
        automatch->startAutomatch(1'000'000);
        playGames(*automatch, time, finishedGames);
        QCoreApplication::processEvents();
    }
};

void endOfAGame(benchmark::State& state) {
    LongSeries series;
    for (auto _ : state) {
        endGame(*series.automatch, GameEndReason::stalemate());
        QCoreApplication::processEvents();
        state.PauseTiming();
        while (series.automatch->isCountingDown())
            series.time.advance(std::chrono::milliseconds(200));
        QCoreApplication::processEvents();
        state.ResumeTiming();
    }
}
BENCHMARK(endOfAGame)->Unit(benchmark::kMicrosecond)->Iterations(200);

void stepOfTheCountdown(benchmark::State& state) {
    LongSeries series;
    series.automatch->setPauseBetweenGamesSeconds(1'000'000);
    endGame(*series.automatch, GameEndReason::stalemate());
    QCoreApplication::processEvents();
    for (auto _ : state) {
        series.time.advance(std::chrono::milliseconds(200));
        QCoreApplication::processEvents();
    }
}
BENCHMARK(stepOfTheCountdown)->Unit(benchmark::kMicrosecond);

void scrollStep(benchmark::State& state) {
    LongSeries series;
    QScrollBar* bar = series.find<AutomatchHistoryList>()->verticalScrollBar();
    for (auto _ : state) {
        bar->setValue(bar->value() + 40 > bar->maximum() ? 0 : bar->value() + 40);
        QCoreApplication::processEvents();
    }
}
BENCHMARK(scrollStep)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace orlix::test

// The application lives inside main: its destructor needs Qt's own statics, which go before those of this
// file.
int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
