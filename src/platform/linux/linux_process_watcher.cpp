#include "platform/linux/linux_process_watcher.h"

#include <dirent.h>
#include <limits.h>
#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <limits>
#include <optional>
#include <sstream>
#include <string_view>

#include "platform/posix/unique_fd.h"

namespace orlix {
namespace {

using Clock = std::chrono::steady_clock;

// Ticks from the system's start to the process's; nothing when there is no such process or it is hidden.
std::optional<std::uint64_t> startOf(const std::string& id) {
    std::ifstream stream("/proc/" + id + "/stat");
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    // The second field is the program's name in brackets, which may hold anything; the last bracket ends it.
    const std::size_t nameEnd = text.rfind(')');
    if (nameEnd == std::string::npos) return std::nullopt;
    std::istringstream fields(text.substr(nameEnd + 1));
    constexpr int startField = 22;
    std::string field;
    for (int number = 3; number <= startField; ++number) {
        if (!(fields >> field)) return std::nullopt;
    }
    return std::strtoull(field.c_str(), nullptr, 10);
}

// Empty when the process has ended or belongs to somebody else.
std::string programOf(const std::string& id) {
    std::array<char, PATH_MAX> buffer;
    const ssize_t count = readlink(("/proc/" + id + "/exe").c_str(), buffer.data(), buffer.size());
    return count < 0 ? std::string() : std::string(buffer.data(), static_cast<std::size_t>(count));
}

class LinuxWatchedProcess : public WatchedProcess {
  public:
    LinuxWatchedProcess(UniqueFd process, std::string program)
        : process_(std::move(process)), program_(std::move(program)) {}

    std::string program() const override { return program_; }

    bool waitForEnd(std::chrono::milliseconds limit) override {
        if (!process_) return true;
        const auto deadline = Clock::now() + limit;
        for (;;) {
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
            pollfd entry{process_.get(), POLLIN, 0};
            const int count = poll(&entry, 1, static_cast<int>(std::max<std::int64_t>(left.count(), 0)));
            if (count > 0) return true;
            if (count == 0 || errno != EINTR) return false;
        }
    }

  private:
    const UniqueFd process_;  // empty when it had ended before
    const std::string program_;
};

}  // namespace

LinuxProcessWatcher::LinuxProcessWatcher()
    : latestStart_(startOf("self").value_or(std::numeric_limits<std::uint64_t>::max())) {}

int LinuxProcessWatcher::watch(pid_t id, std::unique_ptr<WatchedProcess>& result) {
    // The descriptor first: what is read about the number afterwards is about this process or, when that has
    // ended by then, about nobody of interest.
    UniqueFd process(static_cast<int>(syscall(SYS_pidfd_open, id, 0U)));
    if (!process) {
        if (errno != ESRCH) return errno;
        result = std::make_unique<LinuxWatchedProcess>(UniqueFd(), std::string());
        return 0;
    }
    const std::string text = std::to_string(id);
    const std::optional<std::uint64_t> start = startOf(text);
    if (start && *start > latestStart_) process.reset();
    std::string program = process ? programOf(text) : std::string();
    result = std::make_unique<LinuxWatchedProcess>(std::move(process), std::move(program));
    return 0;
}

std::vector<pid_t> LinuxProcessWatcher::processesFrom(const std::string& folder) {
    std::vector<pid_t> found;
    DIR* stream = opendir("/proc");
    if (stream == nullptr) return found;
    while (const dirent* entry = readdir(stream)) {
        const std::string id = entry->d_name;
        if (id.find_first_not_of("0123456789") != std::string::npos) continue;
        if (programOf(id).rfind(folder + '/', 0) == 0) found.push_back(static_cast<pid_t>(std::stol(id)));
    }
    closedir(stream);
    return found;
}

}  // namespace orlix
