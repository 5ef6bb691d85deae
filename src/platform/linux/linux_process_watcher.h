// Processes on Linux: a descriptor for the process (pidfd) tells its end and keeps its number's meaning; the
// rest is read from /proc.
#pragma once

#include <cstdint>

#include "platform/process_watcher.h"

namespace orlix {

class LinuxProcessWatcher : public ProcessWatcher {
  public:
    /// Processes that started after this one are not those that are meant.
    LinuxProcessWatcher();
    /// Processes that started later than `latestStart` ticks after the system did are not those that are
    /// meant.
    explicit LinuxProcessWatcher(std::uint64_t latestStart) : latestStart_(latestStart) {}

    int watch(pid_t id, std::unique_ptr<WatchedProcess>& result) override;
    std::vector<pid_t> processesFrom(const std::string& folder) override;

  private:
    std::uint64_t latestStart_;
};

}  // namespace orlix
