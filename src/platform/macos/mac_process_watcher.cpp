#include "platform/macos/mac_process_watcher.h"

#include <libproc.h>
#include <sys/event.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <ctime>
#include <optional>
#include <utility>

#include "platform/posix/unique_fd.h"

namespace orlix {
namespace {

using Clock = std::chrono::steady_clock;

// Microseconds since 1970; nothing when there is no such process.
std::optional<std::uint64_t> startOf(pid_t id) {
    proc_bsdinfo info{};
    if (proc_pidinfo(id, PROC_PIDTBSDINFO, 0, &info, sizeof info) != static_cast<int>(sizeof info))
        return std::nullopt;
    return info.pbi_start_tvsec * 1'000'000 + info.pbi_start_tvusec;
}

std::string programOf(pid_t id) {
    std::array<char, PROC_PIDPATHINFO_MAXSIZE> buffer;
    const int count = proc_pidpath(id, buffer.data(), static_cast<std::uint32_t>(buffer.size()));
    return count <= 0 ? std::string() : std::string(buffer.data(), static_cast<std::size_t>(count));
}

class MacWatchedProcess : public WatchedProcess {
  public:
    MacWatchedProcess(UniqueFd queue, std::string program)
        : queue_(std::move(queue)), program_(std::move(program)) {}

    std::string program() const override { return program_; }

    bool waitForEnd(std::chrono::milliseconds limit) override {
        if (!queue_ || hasEnded_) return true;
        const auto deadline = Clock::now() + limit;
        for (;;) {
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
            const auto millis = std::max<std::int64_t>(left.count(), 0);
            const timespec time{static_cast<time_t>(millis / 1000),
                                static_cast<long>(millis % 1000) * 1'000'000};
            struct kevent event {};
            const int count = kevent(queue_.get(), nullptr, 0, &event, 1, &time);
            if (count > 0) hasEnded_ = true;
            if (count >= 0 || errno != EINTR) return hasEnded_;
        }
    }

  private:
    const UniqueFd queue_;  // empty when the process had ended before
    const std::string program_;
    bool hasEnded_ = false;  // the queue tells it only once
};

}  // namespace

int MacProcessWatcher::watch(pid_t id, std::unique_ptr<WatchedProcess>& result) {
    UniqueFd queue(kqueue());
    if (!queue) return errno;
    struct kevent change {};
    EV_SET(&change, id, EVFILT_PROC, EV_ADD | EV_ONESHOT, NOTE_EXIT, 0, nullptr);
    if (kevent(queue.get(), &change, 1, nullptr, 0, nullptr) != 0) {
        if (errno != ESRCH) return errno;
        queue.reset();
    }
    // Read after the queue has hold of the process: a number that was given away since tells its own end
    // only.
    const std::optional<std::uint64_t> start = startOf(id);
    const std::optional<std::uint64_t> ownStart = startOf(getpid());
    if (start && ownStart && *start > *ownStart) queue.reset();
    std::string program = queue ? programOf(id) : std::string();
    result = std::make_unique<MacWatchedProcess>(std::move(queue), std::move(program));
    return 0;
}

std::vector<pid_t> MacProcessWatcher::processesFrom(const std::string& folder) {
    // The list may grow while it is fetched; a little more room than asked for takes that in.
    constexpr int spare = 64;
    const int expected = proc_listallpids(nullptr, 0);
    std::vector<pid_t> ids(static_cast<std::size_t>(std::max(expected, 0) + spare));
    const int count = proc_listallpids(ids.data(), static_cast<int>(ids.size() * sizeof(pid_t)));
    ids.resize(static_cast<std::size_t>(std::max(count, 0)));
    const auto isElsewhere = [&](pid_t id) { return programOf(id).rfind(folder + '/', 0) != 0; };
    ids.erase(std::remove_if(ids.begin(), ids.end(), isElsewhere), ids.end());
    return ids;
}

}  // namespace orlix
