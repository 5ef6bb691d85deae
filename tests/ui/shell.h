// The real window over fakes of the platform: a hand-moved clock, engines that say what the test tells them,
// and panels, files and sounds that the test watches.
#pragma once

#include <QApplication>
#include <QSet>
#include <QTest>
#include <map>
#include <memory>
#include <mutex>

#include "automatch/automatch_manager.h"
#include "engine/engine_manager.h"
#include "engine/uci_engine_process.h"
#include "game/game_manager.h"
#include "l10n/localization_manager.h"
#include "platform/child_process.h"
#include "platform/file_tests.h"
#include "platform/post.h"
#include "records/pgn_exporter.h"
#include "support/event_pump.h"
#include "support/fake_defaults_store.h"
#include "support/fake_file_dialogs.h"
#include "support/fake_file_store.h"
#include "support/fake_pasteboard.h"
#include "support/fake_sounds.h"
#include "support/fake_system_settings.h"
#include "support/fake_time_source.h"
#include "support/update_world.h"
#include "ui/board_view.h"
#include "ui/main_window.h"
#include "ui/theme.h"
#include "update/update_controller.h"

namespace orlix::test {

class ListedFiles : public FileTests {
  public:
    QSet<QString> executables;

    bool exists(const QString& path) const override { return executables.contains(path); }
    bool isExecutableFile(const QString& path) const override { return executables.contains(path); }
    QString homeDirectory() const override { return QStringLiteral("/home/player"); }
};

/// Launches engines that answer the handshake at once and nothing else by themselves.
class PuppetLauncher : public ProcessLauncher {
  public:
    struct Engine {
        QString path;
        QByteArrayList lines;  ///< received
        OutputHandler onOutput;
        bool isTerminated = false;
    };
    QSet<QString> broken;  ///< paths that cannot be launched
    /// What `path` answers to "uci"; without an entry it introduces itself as "Puppet".
    std::map<QString, QByteArray> introductions;

    Launched launch(const QString& path, const QStringList&, OutputHandler onOutput) override {
        const std::lock_guard lock(mutex_);
        if (broken.contains(path)) return {nullptr, QStringLiteral("Exec format error")};
        engines_.push_back(std::make_shared<Engine>(Engine{path, {}, std::move(onOutput), false}));
        return {std::make_unique<Child>(*this, engines_.back()), {}};
    }

    std::vector<Engine> engines() const {
        const std::lock_guard lock(mutex_);
        std::vector<Engine> copies;
        for (const auto& engine : engines_) {
            copies.push_back(*engine);
        }
        return copies;
    }
    /// The engine launched last says `line`.
    void say(const QByteArray& line) {
        const OutputHandler handler = engines().back().onOutput;
        handler(line + '\n');
    }
    bool lastHeard(const QByteArray& beginning) const {
        const std::vector<Engine> all = engines();
        if (all.empty()) return false;
        for (const QByteArray& line : all.back().lines) {
            if (line.startsWith(beginning)) return true;
        }
        return false;
    }

  private:
    class Child : public ChildProcess {
      public:
        Child(PuppetLauncher& launcher, std::shared_ptr<Engine> engine)
            : launcher_(launcher), engine_(std::move(engine)) {}
        Child(const Child&) = delete;
        Child& operator=(const Child&) = delete;
        ~Child() override { terminate(); }

        void write(QByteArray bytes) override {
            for (const QByteArray& line : bytes.trimmed().split('\n')) {
                {
                    const std::lock_guard lock(launcher_.mutex_);
                    engine_->lines.append(line);
                }
                if (line == "uci") answer(launcher_.introduction(engine_->path));
                if (line == "isready") answer("readyok\n");
            }
        }
        void terminate() override {
            const std::lock_guard lock(launcher_.mutex_);
            engine_->isTerminated = true;
        }

      private:
        void answer(const QByteArray& text) {
            post(qApp, [engine = engine_, text] {
                {
                    const std::lock_guard lock(mutex_);
                    if (engine->isTerminated) return;
                }
                engine->onOutput(text);
            });
        }
        PuppetLauncher& launcher_;
        std::shared_ptr<Engine> engine_;
    };

    QByteArray introduction(const QString& path) const {
        const auto found = introductions.find(path);
        return found == introductions.end() ? QByteArray("id name Puppet\nid author Test\nuciok\n")
                                            : found->second;
    }

    static inline std::mutex mutex_;  // one for all: an answer on its way may outlive its launcher
    std::vector<std::shared_ptr<Engine>> engines_;
};

inline const QString puppetPath = QStringLiteral("/engines/puppet");

struct Shell {
    FakeDefaultsStore defaults;
    FakeSystemSettings system;
    FakeFileDialogs dialogs;
    FakeFileStore files;
    FakePasteboard pasteboard;
    FakeTimeSource time;
    FakeGameSounds sounds;
    ListedFiles fileTests;
    PuppetLauncher launcher;

    Theme theme;
    LocalizationManager loc{defaults, system};
    std::unique_ptr<EngineManager> engines;
    std::unique_ptr<GameManager> game;
    std::unique_ptr<AutomatchManager> automatch;
    std::unique_ptr<PGNExporter> exporter;
    UpdateWorld updateWorld;
    int terminationRequests = 0;
    std::unique_ptr<UpdateController> updates;
    std::unique_ptr<MainWindow> window;

    Shell() {
        theme.setScheme(Theme::Scheme::light);
        system.reducedMotion = true;
    }

    void installEngine() {
        fileTests.executables.insert(puppetPath);
        system.enginePaths.append(puppetPath);
    }
    void buildWindow() {
        // What an earlier window was built on goes after whatever refers to it.
        window.reset();
        automatch.reset();
        engines = std::make_unique<EngineManager>(
            EngineManager::Platform{defaults, fileTests, system, launcher, dialogs});
        game =
            std::make_unique<GameManager>(time, *engines, sounds, [this](const EngineConfiguration& config) {
                return std::make_unique<UCIEngineProcess>(config, launcher, fileTests);
            });
        automatch = std::make_unique<AutomatchManager>(time, *game, *engines, sounds);
        exporter = std::make_unique<PGNExporter>(dialogs, files, pasteboard);
        updates = std::make_unique<UpdateController>(updateWorld.service(), time,
                                                     [this] { ++terminationRequests; });
        window = std::make_unique<MainWindow>(
            MainView::Collaborators{*game, loc, *engines, *automatch, *exporter, theme, system, time},
            *updates);
        window->resize(MainWindow::defaultSize);  // whatever the offscreen screen's size
    }
    void showWindow() {
        if (window == nullptr) buildWindow();
        window->show();
        window->activateWindow();
        const bool isActive = QTest::qWaitForWindowActive(window.get());
        Q_ASSERT(isActive);
        Q_UNUSED(isActive);
    }
    /// A game between two people, so that nothing moves by itself.
    void showWindowForTwoPeople() {
        buildWindow();
        game->setGameMode(GameMode::humanVsHuman);
        showWindow();
    }

    template <typename View>
    View* find() const {
        return window->findChild<View*>();
    }
    void click(const char* square) const {
        auto* board = find<BoardView>();
        QTest::mouseClick(board, Qt::LeftButton, Qt::NoModifier,
                          board->squareRect(*Square::fromText(square)).center().toPoint());
    }
    /// Lets queued work and what it queues happen, in real and in fake time.
    template <typename Condition>
    bool eventually(Condition condition) {
        return pumpUntil([&] {
            time.runDue();
            return condition();
        });
    }
};

}  // namespace orlix::test
