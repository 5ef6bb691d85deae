// The two-sided game clock. Owned by the game manager for its whole life; main thread only.
#pragma once

#include <QObject>
#include <QString>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>

#include "core/piece.h"
#include "game/time_control_config.h"
#include "platform/time_source.h"

namespace orlix {

/// Stopped (no active side), running (an active side whose time is counted), or paused (the side is kept, no
/// time is counted). Every operation assigns all that it changes and then announces it once. An overflow of
/// the 64-bit millisecond arithmetic ends the program.
class ChessClock : public QObject {
    Q_OBJECT
  public:
    using TimeoutHandler = std::function<void(PieceColor color)>;

    /// A stopped clock with the configuration's times on both sides. `time` outlives the clock.
    ChessClock(const TimeControlConfig& config, TimeSource& time, QObject* parent = nullptr);

    qint64 whiteRemainingMs() const { return whiteRemainingMs_; }
    qint64 blackRemainingMs() const { return blackRemainingMs_; }
    qint64 remainingMs(PieceColor color) const;
    /// True from `start` to `pause`, `stop` or a time-out, also for a clock without a limit.
    bool isRunning() const { return isRunning_; }
    const std::optional<PieceColor>& activeColor() const { return activeColor_; }
    /// What every switch credits, in milliseconds; may be negative.
    qint64 incrementMs() const { return incrementMs_; }
    bool isUnlimited() const { return isUnlimited_; }

    /// Called once when a side's time has reached zero, with that side, after the clock has stopped and
    /// announced it.
    void setOnTimeout(TimeoutHandler handler);

    /// Stops and takes over the configuration's times; no side is active then.
    void reset(const TimeControlConfig& config);
    /// Makes `color` active and counts its time from now, whatever the state was before.
    void start(PieceColor color);
    /// Credits the increment to the side that was active, if one was, and hands the clock to `color`. A
    /// paused or stopped clock does not start to run.
    void switchTurn(PieceColor color);
    /// Stops counting and keeps the active side.
    void pause();
    /// Goes on with the active side; does nothing when there is none.
    void resume();
    /// Stops counting and clears the active side; the remaining times stay.
    void stop();

    /// Remaining time of `color` as a banner shows it: "5:00", "0:09.7" below ten seconds, "--:--" without a
    /// clock.
    QString formattedTime(PieceColor color) const;

  Q_SIGNALS:
    void changed();  ///< anything above, once an operation or tick

  private:
    void tick();
    void setUp(const TimeControlConfig& config);
    void halt();
    qint64& remaining(PieceColor color);

    TimeSource& time_;
    qint64 whiteRemainingMs_ = 0;
    qint64 blackRemainingMs_ = 0;
    bool isRunning_ = false;
    std::optional<PieceColor> activeColor_;
    TimeoutHandler onTimeout_;
    qint64 incrementMs_ = 0;
    bool isUnlimited_ = false;
    std::unique_ptr<Timer> timer_;
    std::optional<std::chrono::system_clock::time_point> lastTickDate_;
};

}  // namespace orlix
