// What the program itself adds to every move of a game between two engines, with its whole window open: from
// the moment at which one engine's best move line has been read until the next request is written to the
// other. The pause of 200 ms in between is waited for, as in every such game, and left out of the figures.
//   benchmark_turn [plies]   400 when not said: eighty seconds, on the display that Qt finds
#include <QApplication>
#include <QDeadlineTimer>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <ctime>
#include <mutex>
#include <thread>

#include "automatch/automatch_manager.h"
#include "engine/engine_manager.h"
#include "engine/uci_engine_process.h"
#include "game/game_manager.h"
#include "l10n/localization_manager.h"
#include "platform/child_process.h"
#include "platform/qt/qt_time_source.h"
#include "records/pgn_exporter.h"
#include "support/endless_game.h"
#include "support/fake_defaults_store.h"
#include "support/fake_file_dialogs.h"
#include "support/fake_file_store.h"
#include "support/fake_file_tests.h"
#include "support/fake_pasteboard.h"
#include "support/fake_sounds.h"
#include "support/fake_system_settings.h"
#include "support/update_world.h"
#include "ui/lean_style.h"
#include "ui/main_window.h"
#include "ui/theme.h"
#include "update/update_controller.h"

namespace orlix {
namespace {

constexpr std::chrono::milliseconds pauseBetweenEngines{200};

struct Moment {
    double wallMs = 0;
    double processorMs = 0;  ///< of all threads

    static Moment now() {
        const auto milliseconds = [](clockid_t clock) {
            timespec time{};
            clock_gettime(clock, &time);
            return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
        };
        return {milliseconds(CLOCK_MONOTONIC), milliseconds(CLOCK_PROCESS_CPUTIME_ID)};
    }
};

/// The four moments of a turn. Only one thread at a time is at work on a turn, so each writes what it sees.
struct Turn {
    Moment read, pauseBegins, pauseEnds, written;

    double wallMs() const { return (pauseBegins.wallMs - read.wallMs) + (written.wallMs - pauseEnds.wallMs); }
    double processorMs() const {
        return (pauseBegins.processorMs - read.processorMs) + (written.processorMs - pauseEnds.processorMs);
    }
};

/// The real time, which notes when the pause between two engines begins and ends.
class NotingTimeSource final : public TimeSource {
  public:
    explicit NotingTimeSource(Turn& turn) : turn_(turn) {}
    std::chrono::system_clock::time_point now() const override { return source_.now(); }
    [[nodiscard]] std::unique_ptr<Timer> every(std::chrono::milliseconds interval, Action action) override {
        return source_.every(interval, std::move(action));
    }
    [[nodiscard]] std::unique_ptr<Timer> after(std::chrono::milliseconds delay, Action action) override {
        if (delay != pauseBetweenEngines) return source_.after(delay, std::move(action));
        auto timer = source_.after(delay, [this, action = std::move(action)] {
            turn_.pauseEnds = Moment::now();
            action();
        });
        turn_.pauseBegins = Moment::now();
        return timer;
    }

  private:
    QtTimeSource source_;
    Turn& turn_;
};

/// Both engines of a game as one thread of this process that answers every "go" at once, as an engine's I/O
/// thread would deliver it.
class PromptEngines final : public ProcessLauncher {
  public:
    PromptEngines(Turn& turn, std::vector<std::string> moves, std::vector<Turn>& finished)
        : turn_(turn), moves_(std::move(moves)), finished_(finished), thread_([this] { run(); }) {}
    PromptEngines(const PromptEngines&) = delete;
    PromptEngines& operator=(const PromptEngines&) = delete;
    ~PromptEngines() override {
        {
            const std::lock_guard lock(mutex_);
            isEnding_ = true;
        }
        wake_.notify_one();
        thread_.join();
    }

    Launched launch(const QString&, const QStringList&, OutputHandler onOutput) override {
        return {std::make_unique<Child>(*this, std::move(onOutput)), {}};
    }
    bool isPlayed() const { return isPlayed_; }

  private:
    class Child final : public ChildProcess {
      public:
        Child(PromptEngines& engines, OutputHandler onOutput)
            : engines_(engines), onOutput_(std::move(onOutput)) {}
        void write(QByteArray bytes) override {
            if (bytes == "uci\n") return engines_.answer(onOutput_, "uciok\n");
            if (bytes == "isready\n") return engines_.answer(onOutput_, "readyok\n");
            if (bytes.startsWith("go ")) engines_.onGo(onOutput_);
        }
        void terminate() override {}

      private:
        PromptEngines& engines_;
        OutputHandler onOutput_;
    };

    // On the main thread, within the write.
    void onGo(const OutputHandler& handler) {
        turn_.written = Moment::now();
        if (ply_ > 0) finished_.push_back(turn_);
        if (ply_ == moves_.size()) {
            isPlayed_ = true;
            return;
        }
        answer(handler, "info depth 9 score cp 31 nodes 4711 nps 1000000 time 5 pv e2e4 e7e5\nbestmove " +
                            QByteArray::fromStdString(moves_[ply_++]) + '\n');
    }

    void answer(const OutputHandler& handler, const QByteArray& text) {
        {
            const std::lock_guard lock(mutex_);
            pending_.emplace_back(handler, text);
        }
        wake_.notify_one();
    }

    void run() {
        std::unique_lock lock(mutex_);
        for (;;) {
            wake_.wait(lock, [this] { return isEnding_ || !pending_.empty(); });
            if (isEnding_) return;
            const auto [handler, text] = pending_.front();
            pending_.erase(pending_.begin());
            lock.unlock();
            if (text.contains("bestmove")) turn_.read = Moment::now();
            handler(text);
            lock.lock();
        }
    }

    Turn& turn_;
    const std::vector<std::string> moves_;
    std::vector<Turn>& finished_;
    std::size_t ply_ = 0;
    bool isPlayed_ = false;
    std::mutex mutex_;
    std::condition_variable wake_;
    std::vector<std::pair<OutputHandler, QByteArray>> pending_;
    bool isEnding_ = false;
    std::thread thread_;
};

struct Window {
    Window(TimeSource& timeSource, ProcessLauncher& launcher) : time(timeSource), engineLauncher(launcher) {
        EngineConfiguration engine;
        engine.name = QStringLiteral("Prompt");
        engine.executablePath = QStringLiteral("/engines/prompt");
        fileTests.executables.insert(engine.executablePath);
        engines.setSelectedWhiteEngine(engine);
        engines.setSelectedBlackEngine(engine);
        game.setGameMode(GameMode::engineVsEngine);
        window.show();
    }

    TimeSource& time;
    ProcessLauncher& engineLauncher;
    FakeDefaultsStore defaults;
    FakeSystemSettings system;
    FakeFileTests fileTests;
    test::FakeFileDialogs dialogs;
    test::FakeFileStore files;
    test::FakePasteboard pasteboard;
    FakeGameSounds sounds;
    Theme theme;
    LocalizationManager loc{defaults, system};
    EngineManager engines{{defaults, fileTests, system, engineLauncher, dialogs}};
    GameManager game{time, engines, sounds, [this](const EngineConfiguration& config) {
                         return std::make_unique<UCIEngineProcess>(config, engineLauncher, fileTests);
                     }};
    AutomatchManager automatch{time, game, engines, sounds};
    PGNExporter exporter{dialogs, files, pasteboard};
    test::UpdateWorld updateWorld;
    UpdateController updates{updateWorld.service(), time, [] {}};
    MainWindow window{{game, loc, engines, automatch, exporter, theme, system, time}, updates};
};

void print(const char* what, std::vector<double> values) {
    std::sort(values.begin(), values.end());
    double sum = 0;
    for (const double value : values)
        sum += value;
    const auto quantile = [&](double share) {
        return values[static_cast<std::size_t>(share * static_cast<double>(values.size() - 1))];
    };
    std::printf("%s: mean %.3f ms, median %.3f ms, 99th percentile %.3f ms, longest %.3f ms\n", what,
                sum / static_cast<double>(values.size()), quantile(0.5), quantile(0.99), values.back());
}

int run(std::size_t plies) {
    Turn turn;
    std::vector<Turn> finished;
    NotingTimeSource time(turn);
    PromptEngines engines(turn, test::endlessGame(plies), finished);
    Window shown(time, engines);
    shown.game.startNewGame();
    const double start = Moment::now().processorMs;
    while (!engines.isPlayed())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    const double whole = Moment::now().processorMs - start;
    std::vector<double> wall;
    std::vector<double> processor;
    for (const Turn& each : finished) {
        wall.push_back(each.wallMs());
        processor.push_back(each.processorMs());
    }
    std::printf("%zu moves\n", finished.size());
    print("time", wall);
    print("processor", processor);
    std::printf("processor of the whole program, painting, clock and pauses included: %.3f ms a move\n",
                whole / static_cast<double>(finished.size()));
    return 0;
}

}  // namespace
}  // namespace orlix

int main(int argc, char** argv) {
    QApplication::setStyle(new orlix::LeanStyle);
    const QApplication application(argc, argv);
    return orlix::run(argc > 1 ? static_cast<std::size_t>(std::atoi(argv[1])) : 400);
}
