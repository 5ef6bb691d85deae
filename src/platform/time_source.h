// The wall clock and the main thread's timers, as one seam: production uses Qt's event loop, tests a
// clock that they move by hand. Owned by the composition root; main thread only.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace orlix {

/// A pending timer. Destroying it cancels it: the action never runs afterwards, not even when its time has
/// come already. It may be destroyed from inside its own action.
class Timer {
  public:
    virtual ~Timer() = default;
};

class TimeSource {
  public:
    using Action = std::function<void()>;

    virtual ~TimeSource() = default;

    /// The wall clock's present instant.
    virtual std::chrono::system_clock::time_point now() const = 0;

    /// Runs `action` on the main thread every `interval` until the returned timer is destroyed.
    [[nodiscard]] virtual std::unique_ptr<Timer> every(std::chrono::milliseconds interval, Action action) = 0;

    /// Runs `action` on the main thread once, `delay` from now, unless the returned timer is destroyed first.
    /// With a delay of zero the action still arrives through the event loop, after what was queued before it.
    [[nodiscard]] virtual std::unique_ptr<Timer> after(std::chrono::milliseconds delay, Action action) = 0;
};

}  // namespace orlix
