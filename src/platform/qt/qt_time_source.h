// The wall clock and the main thread's timers over Qt's event loop. Owned by the composition root; main
// thread only, and timers fire only while that thread's event loop runs.
#pragma once

#include <vector>

#include "platform/time_source.h"

namespace orlix {

class QtTimeSource final : public TimeSource {
  public:
    std::chrono::system_clock::time_point now() const override;

    /// Wakes up within 5 % of `interval`, so that the system can serve several timers with one wake-up.
    [[nodiscard]] std::unique_ptr<Timer> every(std::chrono::milliseconds interval, Action action) override;

    [[nodiscard]] std::unique_ptr<Timer> after(std::chrono::milliseconds delay, Action action) override;

    /// From now on actions without a delay wait for `release()`, which queues them in the order in which they
    /// came. Further calls of either change nothing.
    void hold() { isHolding_ = true; }
    void release();

  private:
    bool isHolding_ = false;
    std::vector<Action> held_;
};

}  // namespace orlix
