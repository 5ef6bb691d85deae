// Has a tool of the system start applications, as the user would: the tool takes the bundle's path and ends
// with status 0 when the application is being started. Blocks while the tool runs; one thread.
#pragma once

#include <chrono>
#include <string>
#include <utility>

#include "platform/application_starter.h"
#include "platform/tool_runner.h"

namespace orlix {

class ToolApplicationStarter : public ApplicationStarter {
  public:
    static constexpr const char* systemTool = "/usr/bin/open";

    /// Right after an application has quit, the system may still take it for running and refuse to start it:
    /// the tool gets `attempts` chances, with `pause` between two of them.
    ToolApplicationStarter(ToolRunner& tools, std::string tool, int attempts = 10,
                           std::chrono::milliseconds pause = std::chrono::seconds(1))
        : tools_(tools), tool_(std::move(tool)), attempts_(attempts), pause_(pause) {}

    bool start(const std::string& bundlePath, const std::string& program) override;

  private:
    ToolRunner& tools_;
    const std::string tool_;
    const int attempts_;
    const std::chrono::milliseconds pause_;
};

}  // namespace orlix
