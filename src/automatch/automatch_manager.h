// Plays a series of games between two engines on the one game manager: colours, pauses, score, history and
// the closing words. Owned by the composition root; main thread only.
#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <memory>
#include <optional>

#include "automatch/automatch_game_record.h"
#include "automatch/match_statistics.h"
#include "engine/engine_configuration.h"
#include "game/game_listener.h"
#include "platform/time_source.h"

namespace orlix {

class EngineManager;
class GameManager;
class GameSounds;

/// Every operation assigns all of its own state, then asks the game manager and for sounds, and announces
/// once at its end. The next game never starts inside the call that ended the last one.
class AutomatchManager : public QObject, public GameListener {
    Q_OBJECT
  public:
    /// The registered instance; asserts that there is one.
    static AutomatchManager& shared();
    /// Called by the composition root; null takes the registration back.
    static void registerShared(AutomatchManager* instance);

    /// Listens to `game` for its whole life. All references outlive the manager.
    AutomatchManager(TimeSource& time, GameManager& game, EngineManager& engines, GameSounds& sounds,
                     QObject* parent = nullptr);
    ~AutomatchManager() override;

    // Settings. A change tells nobody but the observers; the running series reads them as it goes on.
    qint64 totalGames() const { return totalGames_; }
    void setTotalGames(qint64 games);
    bool alternateColors() const { return alternateColors_; }
    void setAlternateColors(bool alternate);
    double pauseBetweenGamesSeconds() const { return pauseBetweenGamesSeconds_; }
    void setPauseBetweenGamesSeconds(double seconds);
    const std::optional<EngineConfiguration>& engine1() const { return slot1_.engine; }
    void setEngine1(std::optional<EngineConfiguration> engine);
    bool engine1LimitElo() const { return slot1_.limitElo; }
    qint64 engine1Elo() const { return slot1_.elo; }
    void setEngine1Limit(bool limitElo, qint64 elo);
    const std::optional<EngineConfiguration>& engine2() const { return slot2_.engine; }
    void setEngine2(std::optional<EngineConfiguration> engine);
    bool engine2LimitElo() const { return slot2_.limitElo; }
    qint64 engine2Elo() const { return slot2_.elo; }
    void setEngine2Limit(bool limitElo, qint64 elo);
    /// The engine's name, or "Engine 1" and "Engine 2" while a slot is empty.
    QString engine1DisplayName() const;
    QString engine2DisplayName() const;
    struct Engines {
        std::optional<EngineConfiguration> engine1;
        std::optional<EngineConfiguration> engine2;
    };
    /// Who would play if a game started now: an empty slot as the registry would fill it.
    Engines assignedEngines() const;

    // The series.
    bool isAutomatchActive() const override { return isAutomatchActive_; }
    bool isAutomatchPaused() const { return isAutomatchPaused_; }
    qint64 currentGameIndex() const { return currentGameIndex_; }  ///< from 1 once a series starts
    bool currentWhiteIsEngine1() const { return currentWhiteIsEngine1_; }
    bool isCountingDown() const { return isCountingDown_; }
    /// Seconds; counts while `isCountingDown`, and keeps its last value otherwise.
    double countdownRemaining() const { return countdownRemaining_; }
    qint64 engine1Wins() const { return score_.wins; }
    qint64 engine2Wins() const { return score_.losses; }
    qint64 draws() const { return score_.draws; }
    const MatchScore& score() const { return score_; }  ///< from engine 1's side
    /// Oldest first. Only ever grows at its end, or is emptied.
    const QList<AutomatchGameRecord>& history() const { return history_; }
    /// The closing words of the last series, German; absent while a series runs and before the first.
    const std::optional<QString>& matchFinishedReason() const { return matchFinishedReason_; }
    /// Mean time from the moment the series starts a game to its record, over `history`, pauses included.
    /// Absent before the first record.
    std::optional<double> averageGameSeconds() const;
    /// The games of `history`, oldest first, with two newlines between games; empty without any.
    QString exportAllPGN() const;

    // Commands.
    /// Stores the arguments that are given, fills empty slots from the registry, and starts afresh with game
    /// 1, also while a series is running.
    void startAutomatch(std::optional<qint64> totalGames = {},
                        std::optional<EngineConfiguration> engine1 = {},
                        std::optional<EngineConfiguration> engine2 = {});
    /// Ends the series at once; the game on the board, score and history stay.
    void stopAutomatch();
    /// Also toggles the game's own pause, whether it is running, over, or paused already.
    void pauseAutomatch();
    /// Toggles the game's own pause, or starts the next game at once when the game is over.
    void resumeAutomatch();
    /// Stops a running series; then empties history and score.
    void clearHistory();
    /// Ignored unless a series is running that is not paused.
    void handleGameEnd(const GameEndReason& reason, const ChessBoard& board, const QString& pgn) override;

  Q_SIGNALS:
    void changed();  ///< anything above, once an operation, also for every step of the countdown

  private:
    struct EngineSlot {
        std::optional<EngineConfiguration> engine;
        bool limitElo = false;
        qint64 elo = 1800;
        bool operator==(const EngineSlot&) const = default;
    };

    template <typename Value>
    void assign(Value& field, Value value);
    const EngineSlot& whiteSlot() const { return currentWhiteIsEngine1_ ? slot1_ : slot2_; }
    const EngineSlot& blackSlot() const { return currentWhiteIsEngine1_ ? slot2_ : slot1_; }
    void ensureEnginesAssigned();
    void launchCurrentGame();
    void appendRecord(const GameEndReason& reason, const ChessBoard& board, const QString& pgn);
    void scheduleNextGame();
    void stepCountdown();
    void cancelCountdown();
    void advanceToNextGame();
    void finishSeries();
    void endSeries();
    void clearScore();

    TimeSource& time_;
    GameManager& game_;
    EngineManager& engines_;
    GameSounds& sounds_;

    qint64 totalGames_ = 10;
    bool alternateColors_ = true;
    double pauseBetweenGamesSeconds_ = 1.5;
    EngineSlot slot1_;
    EngineSlot slot2_;
    bool isAutomatchActive_ = false;
    bool isAutomatchPaused_ = false;
    qint64 currentGameIndex_ = 0;
    bool currentWhiteIsEngine1_ = true;
    bool isCountingDown_ = false;
    double countdownRemaining_ = 0;
    MatchScore score_;
    QList<AutomatchGameRecord> history_;
    std::optional<QString> matchFinishedReason_;
    std::unique_ptr<Timer> countdownTask_;  ///< destroying it cancels the countdown

    std::chrono::system_clock::time_point gameStart_;
    std::chrono::milliseconds playedTime_{0};  ///< of all games of `history_`
};

}  // namespace orlix
