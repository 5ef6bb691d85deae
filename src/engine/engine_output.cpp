#include "engine/engine_output.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace orlix {

EngineOutput::EngineOutput(Waker& waker) : waker_(waker) {}

void EngineOutput::receive(const QByteArray& chunk) {
    if (isClosed_) return;
    const std::string_view bytes(chunk.constData(), static_cast<std::size_t>(chunk.size()));
    splitter_.feed(bytes, [this](std::string_view line) {
        const UciLineKind kind = uciLineKind(line);
        if (kind == UciLineKind::info) {
            mergeInfoLine(line, evaluation_);
            batch_.push_back({kind, std::string(line), evaluation_});
        } else {
            batch_.push_back({kind, std::string(line), {}});
        }
        bytesOfBatch_ += line.size();
        return (batch_.size() < batchLines && bytesOfBatch_ < batchBytes) || handOver();
    });
    if (!batch_.empty()) handOver();
}

bool EngineOutput::handOver() {
    std::unique_lock lock(mutex_);
    const bool isFromOtherThread = std::this_thread::get_id() != takingThread_;
    if (isFromOtherThread) {
        roomOrClosed_.wait(lock, [this] {
            return isClosed_ || (pending_.size() < pendingLines && bytesPending_ < pendingBytes);
        });
    }
    if (isClosed_) return false;
    const auto isInfo = [](const Event& event) { return event.kind == UciLineKind::info; };
    if (!isFromOtherThread || !std::all_of(batch_.begin(), batch_.end(), isInfo)) isUrgent_ = true;
    std::move(batch_.begin(), batch_.end(), std::back_inserter(pending_));
    bytesPending_ += bytesOfBatch_;
    batch_.clear();
    bytesOfBatch_ = 0;
    if (pending_.size() >= batchLines || bytesPending_ >= batchBytes) isUrgent_ = true;
    if (!isAnnounced_ && (isUrgent_ || !isResting_)) {
        isAnnounced_ = true;
        waker_.wake();  // under the lock: `close` then keeps it alive until this is through
    }
    return true;
}

void EngineOutput::takeAll(std::deque<Event>& events) {
    Q_ASSERT(events.empty());
    {
        const std::lock_guard lock(mutex_);
        events.swap(pending_);
        bytesPending_ = 0;
        isAnnounced_ = false;
        isUrgent_ = false;
    }
    roomOrClosed_.notify_one();
}

void EngineOutput::rest() {
    const std::lock_guard lock(mutex_);
    isResting_ = true;
}

bool EngineOutput::endRest() {
    const std::lock_guard lock(mutex_);
    isResting_ = false;
    return !pending_.empty() && !isAnnounced_;
}

void EngineOutput::close() {
    {
        const std::lock_guard lock(mutex_);
        isClosed_ = true;
        pending_.clear();
    }
    roomOrClosed_.notify_one();
}

}  // namespace orlix
