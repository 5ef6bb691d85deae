// The side panel over fakes of the platform, as its tests see it: a clock moved by hand, engines that answer
// the handshake and nothing else, and files, panels and settings in memory.
#pragma once

#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QCoreApplication>
#include <QPaintEvent>
#include <QTest>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "automatch/automatch_manager.h"
#include "engine/engine_manager.h"
#include "engine/uci_engine_process.h"
#include "game/game_manager.h"
#include "l10n/localization_manager.h"
#include "platform/child_process.h"
#include "records/pgn_exporter.h"
#include "support/fake_defaults_store.h"
#include "support/fake_file_dialogs.h"
#include "support/fake_file_store.h"
#include "support/fake_file_tests.h"
#include "support/fake_pasteboard.h"
#include "support/fake_sounds.h"
#include "support/fake_system_settings.h"
#include "support/fake_time_source.h"
#include "ui/controls/choice_group.h"
#include "ui/controls/panel_button.h"
#include "ui/right_panel_view.h"
#include "ui/theme.h"

namespace orlix::test {

using namespace std::chrono_literals;

/// Engines that answer "uci" and keep what they hear. The engine test launches from a thread of its own.
class PanelLauncher : public ProcessLauncher {
  public:
    struct Engine {
        QString path;
        QByteArray heard;
    };
    QString launchError;  ///< when not empty, launches fail with this text

    Launched launch(const QString& path, const QStringList&, OutputHandler onOutput) override {
        const std::lock_guard lock(mutex_);
        if (!launchError.isEmpty()) return {nullptr, launchError};
        engines_.push_back({path, {}});
        return {std::make_unique<Child>(*this, engines_.size() - 1, std::move(onOutput)), {}};
    }

    /// Lines heard by the engine launched last from `path`.
    QStringList heard(const QString& path) const {
        const std::lock_guard lock(mutex_);
        for (auto engine = engines_.rbegin(); engine != engines_.rend(); ++engine) {
            if (engine->path == path)
                return QString::fromUtf8(engine->heard).split(u'\n', Qt::SkipEmptyParts);
        }
        return {};
    }

  private:
    class Child : public ChildProcess {
      public:
        Child(PanelLauncher& owner, std::size_t index, OutputHandler onOutput)
            : owner_(owner), index_(index), onOutput_(std::move(onOutput)) {}
        void write(QByteArray bytes) override {
            {
                const std::lock_guard lock(owner_.mutex_);
                owner_.engines_[index_].heard += bytes;
            }
            if (bytes.startsWith("uci\n")) onOutput_("id name Kestrel\nid author Nobody\nuciok\nreadyok\n");
        }
        void terminate() override {}

      private:
        PanelLauncher& owner_;
        const std::size_t index_;
        const OutputHandler onOutput_;
    };

    mutable std::mutex mutex_;
    std::vector<Engine> engines_;
};

class PanelTest : public testing::Test {
  protected:
    static constexpr int panelHeight = 800;

    void SetUp() override {
        if (registersEngines_) {
            files.executables = {QStringLiteral("/usr/bin/stockfish"),
                                 QStringLiteral("/usr/local/bin/gnuchess")};
        }
        engines = std::make_unique<EngineManager>(
            EngineManager::Platform{defaults, files, system, launcher, dialogs});
        game =
            std::make_unique<GameManager>(time, *engines, sounds, [this](const EngineConfiguration& config) {
                return std::make_unique<UCIEngineProcess>(config, launcher, files);
            });
        automatch = std::make_unique<AutomatchManager>(time, *game, *engines, sounds);
        loc = std::make_unique<LocalizationManager>(defaults, system);
        theme.setScheme(Theme::Scheme::light);
        panel = std::make_unique<RightPanelView>(*game, *engines, *loc, *automatch, theme, exporter, time);
        panel->resize(RightPanelView::minimumPanelWidth, panelHeight);
        panel->show();
        panel->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(panel.get()));
    }

    template <typename T = QAbstractButton>
    T* find(const char* name) const {
        T* found = panel->findChild<T*>(QString::fromLatin1(name));
        EXPECT_TRUE(found) << name;
        return found;
    }
    ChoiceGroup* choices(const char* name) const { return find<ChoiceGroup>(name); }

    static void click(QWidget* widget) { QTest::mouseClick(widget, Qt::LeftButton); }
    /// Clicks the middle of alternative `index`.
    void choose(const char* group, int index) const { click(choices(group)->button(index)); }
    void startGame() const { click(find("startGame")); }

    /// Plays a move by its two clicks.
    void play(const char* from, const char* to) const {
        game->handleSquareClick(*Square::fromText(from));
        game->handleSquareClick(*Square::fromText(to));
    }
    void playAgainstPerson() {
        game->setGameMode(GameMode::humanVsHuman);
        game->startNewGame();
    }
    EngineConfiguration engineAt(int index) const { return engines->availableEngines().at(index); }

    /// The engine's search command, once what is due has gone out.
    QString goLine(const QString& path) {
        time.advance(200ms);
        QCoreApplication::processEvents();
        for (const QString& line : launcher.heard(path)) {
            if (line.startsWith(u"go")) return line;
        }
        return {};
    }

    bool registersEngines_ = true;
    FakeTimeSource time;
    FakeDefaultsStore defaults;
    FakeSystemSettings system;
    FakeFileTests files;
    FakeFileDialogs dialogs;
    FakeFileStore store;
    FakePasteboard pasteboard;
    PanelLauncher launcher;
    FakeGameSounds sounds;
    Theme theme;
    PGNExporter exporter{dialogs, store, pasteboard};
    std::unique_ptr<EngineManager> engines;
    std::unique_ptr<GameManager> game;
    std::unique_ptr<AutomatchManager> automatch;
    std::unique_ptr<LocalizationManager> loc;
    std::unique_ptr<RightPanelView> panel;
};

inline std::string utf8(const QString& text) {
    return text.toStdString();
}

/// Counts the paint events of a widget.
class PaintWatch : public QObject {
  public:
    explicit PaintWatch(QWidget* widget) { widget->installEventFilter(this); }
    int count = 0;
    QRegion region;

    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            ++count;
            region += static_cast<QPaintEvent*>(event)->region();
        }
        return false;
    }
};

}  // namespace orlix::test
