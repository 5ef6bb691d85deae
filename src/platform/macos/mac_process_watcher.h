// Processes on macOS: a kernel queue tells the end of one, the process information library the rest.
#pragma once

#include "platform/process_watcher.h"

namespace orlix {

class MacProcessWatcher : public ProcessWatcher {
  public:
    int watch(pid_t id, std::unique_ptr<WatchedProcess>& result) override;
    std::vector<pid_t> processesFrom(const std::string& folder) override;
};

}  // namespace orlix
