#include "platform/posix/posix_tool_runner.h"

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "platform/posix/posix_spawn.h"

namespace orlix {
namespace {

// How often it is looked whether the tool has ended: its pipes may stay open longer, or close sooner.
constexpr int lookInterval = 10;  // milliseconds
// What a stream says beyond this is read, so that the tool goes on, and dropped.
constexpr std::size_t largestOutput = 4 * 1024 * 1024;  // bytes

// Takes what is there now; closes the pipe at its end.
void drain(UniqueFd& pipe, std::string& text) {
    std::array<char, 16384> bytes{};
    while (pipe) {
        const ssize_t count = read(pipe.get(), bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0 && errno == EAGAIN) return;
        if (count <= 0) {
            pipe.reset();
            return;
        }
        const auto room = largestOutput - std::min(largestOutput, text.size());
        text.append(bytes.data(), std::min(room, static_cast<std::size_t>(count)));
    }
}

// True when the child has ended; it is reaped then.
bool hasEnded(pid_t pid, std::int32_t& exitStatus) {
    int status = 0;
    const pid_t reaped = waitpid(pid, &status, WNOHANG);
    if (reaped == 0 || (reaped < 0 && errno == EINTR)) return false;
    exitStatus = reaped < 0 ? -1 : WIFEXITED(status) ? WEXITSTATUS(status) : WTERMSIG(status);
    return true;
}

}  // namespace

PosixToolRunner::Clock::time_point PosixToolRunner::deadline(Clock::time_point start) const {
    const std::lock_guard lock(mutex_);
    return (hurriedAt_ == Clock::time_point::max() ? start : std::max(start, hurriedAt_)) + limit_;
}

void PosixToolRunner::hurry(std::chrono::milliseconds limit) {
    const std::lock_guard lock(mutex_);
    limit_ = std::min(limit_, limit);
    hurriedAt_ = Clock::now();
}

ToolRunner::Result PosixToolRunner::run(const std::string& path, const std::vector<std::string>& arguments) {
    Result result;
    const auto start = Clock::now();
    SpawnedChild child = spawnChild(path, arguments, ErrorPipe::own);
    if (child.error != 0) {
        result.startError = child.error;
        return result;
    }
    child.input.reset();
    bool isKilled = false;
    while (!hasEnded(child.pid, result.exitStatus)) {
        if (!isKilled && Clock::now() >= deadline(start)) {
            isKilled = true;
            kill(-child.pid, SIGKILL);
        }
        std::array<pollfd, 2> pipes{{{child.output.get(), POLLIN, 0}, {child.errors.get(), POLLIN, 0}}};
        poll(pipes.data(), pipes.size(), lookInterval);
        drain(child.output, result.output);
        drain(child.errors, result.errors);
    }
    // All that the tool itself said is in the pipes now, even where a program that it started keeps them
    // open.
    drain(child.output, result.output);
    drain(child.errors, result.errors);
    // It may have ended by itself in the moment before.
    if (isKilled && result.exitStatus == 0) result.exitStatus = SIGKILL;
    return result;
}

}  // namespace orlix
