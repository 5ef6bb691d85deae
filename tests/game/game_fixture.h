// What the tests of the game manager share: a manager over a fake clock, fake engines and fake sounds.
#pragma once

#include <gmock/gmock.h>

#include <QCoreApplication>
#include <QString>
#include <QStringList>
#include <memory>
#include <string>
#include <vector>

#include "engine/engine_manager.h"
#include "engine/uci_engine_process.h"
#include "game/game_listener.h"
#include "game/game_manager.h"
#include "support/fake_defaults_store.h"
#include "support/fake_file_dialogs.h"
#include "support/fake_file_tests.h"
#include "support/fake_process_launcher.h"
#include "support/fake_sounds.h"
#include "support/fake_system_settings.h"
#include "support/fake_time_source.h"

namespace orlix::test {

using namespace std::chrono_literals;

constexpr auto white = PieceColor::white;
constexpr auto black = PieceColor::black;

inline Square sq(const char* text) {
    return *Square::fromText(text);
}
inline Move mv(const char* text) {
    return *Move::fromUci(text);
}

inline QString text(const char* latin1) {
    return QString::fromLatin1(latin1);
}

/// Lists names so that a failure shows chess and not bytes.
inline QStringList names(const std::vector<Square>& squares) {
    QStringList list;
    for (const Square square : squares) {
        list.append(QString::fromStdString(square.algebraic()));
    }
    return list;
}

inline std::string movesOf(const ChessBoard& board) {
    std::string text;
    for (const MoveRecord& record : board.history) {
        text += (text.empty() ? "" : " ") + record.move.uciString();
    }
    return text;
}

inline EngineConfiguration engineNamed(const QString& name) {
    EngineConfiguration config;
    config.name = name;
    config.executablePath = QStringLiteral("/engines/") + name.toLower();
    config.threads = 1;
    config.hashMB = 0;
    return config;
}

/// A series that hears of game ends.
class RecordingListener : public GameListener {
  public:
    struct End {
        GameEndReason reason;
        ChessBoard board;
        QString pgn;
    };
    bool isActive = true;
    std::vector<End> ends;
    std::function<void()> onEnd;

    bool isAutomatchActive() const override { return isActive; }
    void handleGameEnd(const GameEndReason& reason, const ChessBoard& board, const QString& pgn) override {
        ends.push_back({reason, board, pgn});
        if (onEnd) onEnd();
    }
};

class GameTest : public testing::Test {
  protected:
    GameTest() {
        files.executables = {QStringLiteral("/engines/alpha"), QStringLiteral("/engines/beta")};
        manager.setListener(&listener);
        QObject::connect(&manager, &GameManager::changed, &manager, [this] { ++changes; });
        QObject::connect(&manager, &GameManager::liveEvaluationChanged, &manager,
                         [this] { ++evaluationChanges; });
        QObject::connect(&manager, &GameManager::enginesChanged, &manager, [this] { ++engineChanges; });
        QObject::connect(&manager.clock(), &ChessClock::changed, &manager, [this] { ++clockChanges; });
    }

    /// Chooses engines "Alpha" for White and "Beta" for Black.
    void selectEngines() {
        engines.setSelectedWhiteEngine(engineNamed(QStringLiteral("Alpha")));
        engines.setSelectedBlackEngine(engineNamed(QStringLiteral("Beta")));
    }

    void startGame(GameMode mode, PlayerColorChoice choice = PlayerColorChoice::white) {
        manager.setGameMode(mode);
        manager.setColorChoice(choice);
        manager.startNewGame();
        settle();
        sounds.played.clear();
    }

    /// Runs all that is due at this instant, and lets the event loop deliver what engines have said.
    void settle() {
        for (int round = 0; round < 4; ++round) {
            time.runDue();
            QCoreApplication::processEvents();
        }
    }

    void click(const char* square) { manager.handleSquareClick(sq(square)); }

    /// Plays moves by clicks on both their squares.
    void play(std::initializer_list<const char*> moves) {
        for (const char* text : moves) {
            const Move move = mv(text);
            manager.handleSquareClick(move.from);
            manager.handleSquareClick(move.to);
            ASSERT_EQ(manager.lastMove(), move) << text;
        }
    }

    FakeEngine& engine(qsizetype index) { return *launcher.engines.at(index); }

    void say(FakeEngine& speaker, const QByteArray& line) {
        speaker.sayLine(line);
        settle();
    }

    /// Whether anything was announced since the last call of `forget`.
    void forget() {
        changes = 0;
        evaluationChanges = 0;
        engineChanges = 0;
        clockChanges = 0;
        sounds.played.clear();
    }

    FakeTimeSource time;
    FakeDefaultsStore defaults;
    FakeFileTests files;
    FakeSystemSettings system;
    FakeProcessLauncher launcher;
    FakeFileDialogs dialogs;
    EngineManager engines{{defaults, files, system, launcher, dialogs}};
    FakeGameSounds sounds;
    RecordingListener listener;
    GameManager manager{time, engines, sounds, [this](const EngineConfiguration& config) {
                            return std::make_unique<UCIEngineProcess>(config, launcher, files);
                        }};
    int changes = 0;
    int evaluationChanges = 0;
    int engineChanges = 0;
    int clockChanges = 0;
};

/// The same with engines chosen for both sides.
class EngineGameTest : public GameTest {
  protected:
    void SetUp() override { selectEngines(); }

    /// A game of a person against an engine, past the first lines that every engine gets.
    void startAgainstEngine(PlayerColorChoice choice) {
        startGame(GameMode::humanVsEngine, choice);
        engine(launcher.engines.size() - 1).takeLines();
    }

    void useThinkingMode(const EngineThinkingMode& mode) {
        TimeControlConfig config = manager.timeControlConfig();
        config.engineThinkingMode = mode;
        manager.setTimeControlConfig(config);
    }
};

}  // namespace orlix::test
