// Starts programs that live on when this one has ended.
#pragma once

#include <string>
#include <vector>

namespace orlix {

class DetachedStarter {
  public:
    virtual ~DetachedStarter() = default;

    /// Starts the executable at `path` in a session of its own, without pipes and without any descriptor of
    /// this program, and does not wait for it. 0, or errno when it could not be started.
    virtual int start(const std::string& path, const std::vector<std::string>& arguments) = 0;
};

}  // namespace orlix
