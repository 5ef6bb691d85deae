// Starts programs through posix_spawn, with nothing to read and nowhere to write. Stateless; any thread.
#pragma once

#include "platform/detached_starter.h"
#include "platform/posix/posix_spawn.h"

namespace orlix {

class PosixDetachedStarter : public DetachedStarter {
  public:
    int start(const std::string& path, const std::vector<std::string>& arguments) override {
        return spawnDetached(path, arguments);
    }
};

}  // namespace orlix
