// Runs tools through posix_spawn, with two pipes for what they say and nothing to read. Any thread; several
// tools may run at once.
#pragma once

#include <chrono>
#include <mutex>

#include "platform/tool_runner.h"

namespace orlix {

class PosixToolRunner : public ToolRunner {
  public:
    /// A tool that has not ended after `limit` is killed with its whole process group.
    explicit PosixToolRunner(std::chrono::milliseconds limit = std::chrono::seconds(120)) : limit_(limit) {}

    Result run(const std::string& path, const std::vector<std::string>& arguments) override;

    void hurry(std::chrono::milliseconds limit) override;

  private:
    using Clock = std::chrono::steady_clock;

    Clock::time_point deadline(Clock::time_point start) const;

    mutable std::mutex mutex_;
    std::chrono::milliseconds limit_;
    Clock::time_point hurriedAt_ = Clock::time_point::max();
};

}  // namespace orlix
