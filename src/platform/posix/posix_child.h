// One running child of the POSIX launcher: its pipes, its process group, and the loop of its I/O thread.
// Shared by the handle that the launcher gave out and by that thread; every public function is safe from any
// thread.
#pragma once

#include <QByteArray>
#include <chrono>
#include <deque>
#include <memory>
#include <mutex>

#include "platform/child_process.h"
#include "platform/posix/posix_spawn.h"

namespace orlix {

class PosixChild {
  public:
    using Clock = std::chrono::steady_clock;

    /// How long a child may outlive the terminate signal before it is killed.
    static constexpr std::chrono::milliseconds grace{2000};

    /// Takes over a child that was spawned without an error. Throws std::system_error when the system has no
    /// more descriptors; the child is killed then.
    PosixChild(SpawnedChild spawned, ProcessLauncher::OutputHandler onOutput);

    void write(QByteArray bytes);
    /// Closes the child's input and asks its group to end; it is killed at `killAt`, or earlier if an earlier
    /// call said so.
    void terminate(Clock::time_point killAt = Clock::now() + grace);
    /// Kills the group at once and reaps the child if it is gone already.
    void kill();
    /// For a child that gets no I/O thread: kills the group and reaps the child, which is a matter of
    /// moments.
    void giveUp();

    /// The I/O thread's work: returns when the child has been reaped and nobody is left in its group.
    void run();

  private:
    void talk();
    void seeOff();
    bool isTerminated() const;
    void readOutput();
    void wake() const;
    void drainWakes() const;

    // With the lock held.
    void offerInput();
    void reapIfEnded();
    bool isGroupGone();
    void signalGroup(int signal);

    const pid_t pid_;
    const ProcessLauncher::OutputHandler onOutput_;
    UniqueFd wakePipe_[2];
    UniqueFd exitFd_;  // becomes readable when the child ends; empty where the system has no such thing
    UniqueFd output_;  // I/O thread only

    mutable std::mutex mutex_;  // guards what follows
    UniqueFd input_;
    std::deque<QByteArray> queue_;
    qsizetype offset_ = 0;  // of the queue's first entry: written already
    bool isTerminated_ = false;
    bool isReaped_ = false;
    bool isGroupGone_ = false;
    Clock::time_point killAt_{};
};

}  // namespace orlix
