// A series over a real game manager with fake engines, and the model beside it: every command goes to both,
// and they are compared after it, inside every signal, and when a game ends.
#pragma once

#include "automatch/automatch_manager.h"
#include "automatch/series_model.h"
#include "game/game_fixture.h"

namespace orlix::test {

/// A time source that counts the timers of one client that are alive.
class CountedTimeSource final : public TimeSource {
  public:
    explicit CountedTimeSource(TimeSource& source) : source_(source) {}
    std::chrono::system_clock::time_point now() const override { return source_.now(); }
    [[nodiscard]] std::unique_ptr<Timer> every(std::chrono::milliseconds interval, Action action) override;
    [[nodiscard]] std::unique_ptr<Timer> after(std::chrono::milliseconds delay, Action action) override;
    int alive() const { return *alive_; }

  private:
    class CountedTimer;
    TimeSource& source_;
    std::shared_ptr<int> alive_ = std::make_shared<int>(0);
};

class ModelledSeries : private GameListener {
  public:
    enum class Command {
        pause,
        resume,
        stop,
        clear,
        startAgain,
        newGame,
        undo,
        resign,
        timeOut,
        loadFen,
        replay,
        removeEngine,
        pauseGame,
        engineMates,
        passTime,
    };
    static constexpr Command lastCommand = Command::passTime;
    static const char* nameOf(Command command);

    ModelledSeries();
    ~ModelledSeries() override;

    void run(Command command);
    void passTime(std::chrono::milliseconds duration);
    /// Ends the game in the clock's last tick, right before its time-out is queued.
    void armTrap() { isTrapArmed_ = true; }
    void setPause(double seconds);
    void setTotal(qint64 games);
    void setAlternates(bool alternates);
    void setTimeControl(TimeControlPreset preset, qint64 customMinutes = 0);
    /// An engine says that it plays this move.
    void speak(const QByteArray& move);
    /// Everything that must hold while nobody is in the middle of a command.
    void check(const char* where);

    AutomatchManager& automatch() { return automatch_; }
    GameManager& game() { return game_; }

    // What has been met so far.
    int gameEnds = 0;
    int repeatsByEndAfterEnd = 0;
    int repeatsByHand = 0;
    int gaps = 0;
    int finishedSeries = 0;

  private:
    bool isAutomatchActive() const override { return true; }
    void handleGameEnd(const GameEndReason& reason, const ChessBoard& board, const QString& pgn) override;
    void act(Command command);
    void start();
    void catchUp();
    void look(const char* where);
    void checkLaunch();
    void checkNumber(bool wasOver);
    void forgetEndedEngines();

    FakeTimeSource time_;
    CountedTimeSource countedTime_{time_};
    FakeDefaultsStore defaults_;
    FakeFileTests files_;
    FakeSystemSettings system_;
    FakeProcessLauncher launcher_;
    FakeFileDialogs dialogs_;
    EngineManager engines_{{defaults_, files_, system_, launcher_, dialogs_}};
    FakeGameSounds sounds_;
    FakeGameSounds closingSounds_;
    GameManager game_{time_, engines_, sounds_, [this](const EngineConfiguration& config) {
                          return std::make_unique<UCIEngineProcess>(config, launcher_, files_);
                      }};
    AutomatchManager automatch_{countedTime_, game_, engines_, closingSounds_};
    SeriesModel model_;
    const EngineConfiguration alpha_ = engineNamed(QStringLiteral("Alpha"));
    const EngineConfiguration beta_ = engineNamed(QStringLiteral("Beta"));

    bool isTrapArmed_ = false;
    int checkedLaunches_ = 0;
    // How a number may come to be repeated or left out.
    bool isGameOverKnown_ = false;  ///< the listener has heard of this game's end
    bool wasRevived_ = false;       ///< by hand, since the last launch
    bool wasEndMissed_ = false;     ///< in a pause or by a replay, since the last record
};

}  // namespace orlix::test
