// What one running engine says, on its way from its I/O thread to the main thread: lines are split and info
// lines merged on the I/O thread, then wait here, in order, until the main thread takes them. Shared by the
// engine process and the output handler that it gives the launcher; dies with the later of the two.
#pragma once

#include <QByteArray>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "engine/engine_evaluation.h"
#include "engine/uci_line.h"
#include "engine/uci_line_splitter.h"
#include "platform/posix/waker.h"

namespace orlix {

class EngineOutput {
  public:
    struct Event {
        UciLineKind kind = UciLineKind::other;
        std::string line;             ///< trimmed, never empty, UTF-8
        EngineEvaluation evaluation;  ///< after an info line; empty otherwise
    };

    /// `waker` is woken after lines have come in, unless they may `rest`, and then not again before
    /// `takeAll`. It lives on the calling thread until `close` has returned.
    explicit EngineOutput(Waker& waker);

    /// The bytes of one read. Waits while the main thread is far behind, so a flood waits in the engine's
    /// pipe instead of in memory; a call from the taking thread itself never waits.
    void receive(const QByteArray& chunk);

    /// Moves everything that waits into `events`, which is empty before.
    void takeAll(std::deque<Event>& events);

    /// Until `endRest`, info lines that another thread brings wait without waking anybody, unless they become
    /// many. Every other line wakes at once, and what waits goes before it.
    void rest();
    /// Returns whether lines wait of which nobody was told: the caller takes them then.
    bool endRest();

    /// Drops what waits and everything still to come, and wakes a waiting `receive`.
    void close();
    bool isClosed() const { return isClosed_; }

  private:
    // Far below what a person notices as delay or as memory, far above what a normal search says at once.
    static constexpr std::size_t batchLines = 512;
    static constexpr std::size_t batchBytes = 256 * 1024;
    static constexpr std::size_t pendingLines = 4 * batchLines;
    static constexpr std::size_t pendingBytes = 4 * batchBytes;

    bool handOver();

    Waker& waker_;
    const std::thread::id takingThread_ = std::this_thread::get_id();

    // The I/O thread's own.
    UciLineSplitter splitter_;
    EngineEvaluation evaluation_;
    std::vector<Event> batch_;
    std::size_t bytesOfBatch_ = 0;

    std::mutex mutex_;  // guards what follows
    std::condition_variable roomOrClosed_;
    std::deque<Event> pending_;
    std::size_t bytesPending_ = 0;
    bool isAnnounced_ = false;
    bool isResting_ = false;
    bool isUrgent_ = false;  ///< something else than info lines waits, or many of them

    std::atomic<bool> isClosed_ = false;  // written under the mutex
};

}  // namespace orlix
