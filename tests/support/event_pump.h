// Runs the event loop until something has happened, and measures how evenly it turns.
#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <algorithm>
#include <functional>
#include <vector>

namespace orlix {

/// How long a test waits for something that happens in a moment: only one that fails waits that long, and no
/// machine is so slow or so busy that it takes longer.
constexpr int patienceMs = 60'000;

/// True as soon as `condition` holds, which is looked at after every turn of the event loop and at least
/// every few milliseconds; false when it does not within `limitMs`.
inline bool pumpUntil(const std::function<bool()>& condition, int limitMs = patienceMs) {
    QElapsedTimer elapsed;
    elapsed.start();
    QTimer tick;
    tick.start(5);
    while (!condition()) {
        if (elapsed.elapsed() > limitMs) return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    return true;
}

/// Times between the ticks of a timer that is due every millisecond: how long the event loop was not free.
class LoopGaps {
  public:
    LoopGaps() {
        timer_.setTimerType(Qt::PreciseTimer);
        QObject::connect(&timer_, &QTimer::timeout, &timer_,
                         [this] { gaps_.push_back(sinceTick_.nsecsElapsed()), sinceTick_.restart(); });
        timer_.start(1);
        sinceTick_.start();
    }

    /// How often the event loop was free.
    std::size_t ticks() const { return gaps_.size(); }

    /// Milliseconds that `share` (0 to 1) of the gaps do not exceed; the longest for 1.
    double quantile(double share) {
        if (gaps_.empty()) return 0;
        std::sort(gaps_.begin(), gaps_.end());
        const auto last = static_cast<double>(gaps_.size() - 1);
        return static_cast<double>(gaps_[static_cast<std::size_t>(share * last)]) / 1e6;
    }

  private:
    QTimer timer_;
    QElapsedTimer sinceTick_;
    std::vector<qint64> gaps_;
};

}  // namespace orlix
