// Watches processes that are no children of this one: waits for the end of one, and finds those that run a
// program from inside a folder. One thread.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace orlix {

class WatchedProcess {
  public:
    virtual ~WatchedProcess() = default;

    /// The path of the program that the process ran when watching began; empty when it had ended or the
    /// system does not tell.
    virtual std::string program() const = 0;
    /// True as soon as the process has ended, false when it has not within `limit`. A process that ended and
    /// was not reaped counts as ended.
    virtual bool waitForEnd(std::chrono::milliseconds limit) = 0;
};

class ProcessWatcher {
  public:
    virtual ~ProcessWatcher() = default;

    /// Watches the process `id`, which started before this one. When there is none of that number, or when a
    /// younger process has got the number in the meantime, the process that was meant has ended. 0 or errno.
    virtual int watch(pid_t id, std::unique_ptr<WatchedProcess>& result) = 0;

    /// The processes whose program lies in `folder` or below it, as far as the system lets this user see
    /// them. `folder` is absolute, without links and without a slash at its end.
    virtual std::vector<pid_t> processesFrom(const std::string& folder) = 0;
};

}  // namespace orlix
