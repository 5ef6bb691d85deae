// A clock that tests move by hand. Timers run inside `advance`, in the order in which they fall due and, at
// one instant, in the order in which they were made. Main thread only.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <utility>

#include "platform/time_source.h"

namespace orlix::test {

class FakeTimeSource final : public TimeSource {
  public:
    using Instant = std::chrono::system_clock::time_point;
    using Milliseconds = std::chrono::milliseconds;

    Instant now() const override { return wall_; }

    [[nodiscard]] std::unique_ptr<Timer> every(Milliseconds interval, Action action) override {
        return add(std::max(interval, Milliseconds(1)), std::max(interval, Milliseconds(1)),
                   std::move(action));
    }

    [[nodiscard]] std::unique_ptr<Timer> after(Milliseconds delay, Action action) override {
        return add(std::max(delay, Milliseconds(0)), std::nullopt, std::move(action));
    }

    /// Lets `duration` pass: every timer that falls due runs at its own instant, and what it queues for the
    /// same span runs too.
    void advance(Milliseconds duration) {
        const Milliseconds target = elapsed_ + duration;
        for (auto due = nextDue(target); due; due = nextDue(target)) {
            moveTo(std::max(elapsed_, entries_->at(*due).due));
            fire(*due);
        }
        moveTo(target);
    }

    /// Runs what is due at this instant, including what was queued with a delay of zero.
    void runDue() { advance(Milliseconds(0)); }

    /// Lets `duration` pass while the event loop is busy: timers become late and run once each at the next
    /// `advance`.
    void stall(std::chrono::system_clock::duration duration) {
        elapsed_ += std::chrono::duration_cast<Milliseconds>(duration);
        wall_ += duration;
    }

    /// Sets the wall clock as a user or a time server would; timers do not notice.
    void setNow(Instant instant) { wall_ = instant; }

    std::size_t pendingTimers() const { return entries_->size(); }

  private:
    struct Entry {
        Milliseconds due;
        std::optional<Milliseconds> interval;
        std::shared_ptr<Action> action;
    };
    using Entries = std::map<std::uint64_t, Entry>;

    class FakeTimer final : public Timer {
      public:
        FakeTimer(std::shared_ptr<Entries> entries, std::uint64_t id)
            : entries_(std::move(entries)), id_(id) {}
        FakeTimer(const FakeTimer&) = delete;
        FakeTimer& operator=(const FakeTimer&) = delete;
        ~FakeTimer() override { entries_->erase(id_); }

      private:
        std::shared_ptr<Entries> entries_;
        std::uint64_t id_;
    };

    std::unique_ptr<Timer> add(Milliseconds delay, std::optional<Milliseconds> interval, Action action) {
        const std::uint64_t id = nextId_++;
        entries_->emplace(id, Entry{elapsed_ + delay, interval, std::make_shared<Action>(std::move(action))});
        return std::make_unique<FakeTimer>(entries_, id);
    }

    std::optional<std::uint64_t> nextDue(Milliseconds target) const {
        std::optional<std::uint64_t> best;
        for (const auto& [id, entry] : *entries_) {
            if (entry.due <= target && (!best || entry.due < entries_->at(*best).due)) best = id;
        }
        return best;
    }

    void fire(std::uint64_t id) {
        Entry& entry = entries_->at(id);
        const std::shared_ptr<Action> action = entry.action;
        if (entry.interval) {
            entry.due = std::max(entry.due, elapsed_) + *entry.interval;
        } else {
            entries_->erase(id);
        }
        (*action)();
    }

    void moveTo(Milliseconds elapsed) {
        wall_ += elapsed - elapsed_;
        elapsed_ = elapsed;
    }

    Instant wall_{std::chrono::seconds(1'700'000'000)};
    Milliseconds elapsed_{0};
    std::uint64_t nextId_ = 0;
    std::shared_ptr<Entries> entries_ = std::make_shared<Entries>();
};

}  // namespace orlix::test
