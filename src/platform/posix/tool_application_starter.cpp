#include "platform/posix/tool_application_starter.h"

#include <thread>

namespace orlix {

bool ToolApplicationStarter::start(const std::string& bundlePath, const std::string&) {
    for (int attempt = 1;; ++attempt) {
        const ToolRunner::Result result = tools_.run(tool_, {bundlePath});
        if (result.startError == 0 && result.exitStatus == 0) return true;
        if (result.startError != 0 || attempt >= attempts_) return false;
        std::this_thread::sleep_for(pause_);
    }
}

}  // namespace orlix
