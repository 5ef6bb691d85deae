// Starts an application by its program, in a session of its own and with nothing of this process's.
// Stateless; any thread.
#pragma once

#include "platform/application_starter.h"
#include "platform/posix/posix_spawn.h"

namespace orlix {

class PosixApplicationStarter : public ApplicationStarter {
  public:
    bool start(const std::string& bundlePath, const std::string& program) override {
        return !program.empty() && spawnDetached(bundlePath + "/Contents/MacOS/" + program, {}) == 0;
    }
};

}  // namespace orlix
