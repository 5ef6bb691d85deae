// Starts an application that goes on when this process ends.
#pragma once

#include <string>

namespace orlix {

class ApplicationStarter {
  public:
    virtual ~ApplicationStarter() = default;

    /// Starts the application at `bundlePath`, with nothing of this process's own; `program` is the name of
    /// its executable file in the bundle. False when it could not be started.
    virtual bool start(const std::string& bundlePath, const std::string& program) = 0;
};

}  // namespace orlix
