// Waits for the system to find a host, and can be told to stop waiting. Qt looks hosts up on threads that the
// application waits for when it ends, however long a name server keeps silent: so a host is looked up here
// first, on a thread that nobody waits for, and Qt is asked only when an answer is at hand. Any thread.
#pragma once

#include <chrono>
#include <memory>
#include <string>

namespace orlix {

class NameLookup {
  public:
    explicit NameLookup(const std::string& host);

    /// True as soon as the system has answered, be it that there is no such host; false when it has not
    /// within `limit`, or when the waiting was cancelled.
    bool wait(std::chrono::milliseconds limit);
    void cancel();

  private:
    struct State;
    std::shared_ptr<State> state_;  // the thread's too, which may outlive this object
};

}  // namespace orlix
