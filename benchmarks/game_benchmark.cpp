// What the game manager costs: browsing a long game, a move by clicks, and a clock that runs.
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <QCoreApplication>
#include <QTimer>
#include <random>

#include "engine/engine_manager.h"
#include "engine/uci_engine_process.h"
#include "game/game_manager.h"
#include "platform/qt/qt_time_source.h"
#include "support/fake_defaults_store.h"
#include "support/fake_file_dialogs.h"
#include "support/fake_file_tests.h"
#include "support/fake_process_launcher.h"
#include "support/fake_sounds.h"
#include "support/fake_system_settings.h"

namespace orlix {
namespace {

QCoreApplication& application() {
    static int count = 1;
    static char name[] = "benchmark_game";
    static char* arguments[] = {name, nullptr};
    static QCoreApplication instance(count, arguments);
    return instance;
}

struct Table {
    Table() { manager.setGameMode(GameMode::humanVsHuman); }

    QCoreApplication& loop = application();
    QtTimeSource time;
    FakeDefaultsStore defaults;
    FakeFileTests files;
    FakeSystemSettings system;
    FakeProcessLauncher launcher;
    test::FakeFileDialogs dialogs;
    EngineManager engines{{defaults, files, system, launcher, dialogs}};
    FakeGameSounds sounds;
    GameManager manager{time, engines, sounds, [this](const EngineConfiguration& config) {
                            return std::make_unique<UCIEngineProcess>(config, launcher, files);
                        }};
};

/// A game of `plies` random moves; draws by rule do not end it.
QStringList randomGame(std::size_t plies) {
    for (unsigned seed = 1;; ++seed) {
        std::mt19937 random(seed);
        ChessBoard board;
        QStringList moves;
        while (board.history.size() < plies) {
            const auto legal = board.generateLegalMoves();
            if (legal.empty()) break;
            const Move move = legal[random() % legal.size()];
            board.play(move);
            moves.append(QString::fromStdString(move.uciString()));
        }
        if (board.history.size() == plies) return moves;
    }
}

double cpuSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

void browseToTheEndOfALongGame(benchmark::State& state) {
    Table table;
    table.manager.replayGame(randomGame(300), std::nullopt);
    for (auto _ : state) {
        table.manager.inspectMove(0);
        benchmark::DoNotOptimize(table.manager.displayedBoard());
        table.manager.inspectMove(299);
        benchmark::DoNotOptimize(table.manager.displayedBoard());
    }
}
BENCHMARK(browseToTheEndOfALongGame)->Unit(benchmark::kMicrosecond);

void askAgainForTheShownPosition(benchmark::State& state) {
    Table table;
    table.manager.replayGame(randomGame(300), std::nullopt);
    table.manager.inspectMove(299);
    for (auto _ : state) {
        benchmark::DoNotOptimize(table.manager.displayedBoard());
    }
}
BENCHMARK(askAgainForTheShownPosition)->Unit(benchmark::kMicrosecond);

void moveByClicksAndTakeItBack(benchmark::State& state) {
    Table table;
    table.manager.startNewGame();
    const Square from = *Square::fromText("g1");
    const Square to = *Square::fromText("f3");
    for (auto _ : state) {
        table.manager.handleSquareClick(from);
        table.manager.handleSquareClick(to);
        table.manager.undoMove();
        table.sounds.played.clear();
    }
}
BENCHMARK(moveByClicksAndTakeItBack)->Unit(benchmark::kMicrosecond);

void replayAFinishedGame(benchmark::State& state) {
    Table table;
    const QStringList moves = randomGame(300);
    for (auto _ : state) {
        table.manager.replayGame(moves, std::nullopt);
    }
}
BENCHMARK(replayAFinishedGame)->Unit(benchmark::kMicrosecond);

/// Percent of one core while White's clock runs and two banners compare their texts.
void runningClock(benchmark::State& state) {
    Table table;
    QString shownWhite;
    QString shownBlack;
    const ChessClock& clock = table.manager.clock();
    QObject::connect(&clock, &ChessClock::changed, &table.manager, [&] {
        const QString white = clock.formattedTime(PieceColor::white);
        const QString black = clock.formattedTime(PieceColor::black);
        if (white != shownWhite) shownWhite = white;
        if (black != shownBlack) shownBlack = black;
    });
    table.manager.startNewGame();
    constexpr int milliseconds = 5000;
    double percent = 0;
    for (auto _ : state) {
        const double before = cpuSeconds();
        QTimer::singleShot(milliseconds, &table.loop, [] { QCoreApplication::exit(); });
        QCoreApplication::exec();
        percent = (cpuSeconds() - before) / (milliseconds / 1000.0) * 100;
    }
    state.counters["percent_of_a_core"] = percent;
}
BENCHMARK(runningClock)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace orlix
