// Runs a tool of the system to its end. Blocks: worker threads only, any of them at the same time.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace orlix {

class ToolRunner {
  public:
    struct Result {
        int startError = 0;           ///< errno when the tool could not be started; all else is empty then
        std::int32_t exitStatus = 0;  ///< the signal's number when one ended the tool
        std::string output;           ///< its whole standard output
        std::string errors;           ///< its whole standard error
    };

    virtual ~ToolRunner() = default;

    /// Starts the executable at `path` and waits until it has ended. A tool that the runner ended itself has
    /// a status other than 0.
    virtual Result run(const std::string& path, const std::vector<std::string>& arguments) = 0;

    /// From now on every tool, also one that runs already, gets no more than `limit`: the program wants to
    /// end.
    virtual void hurry(std::chrono::milliseconds limit) = 0;
};

}  // namespace orlix
