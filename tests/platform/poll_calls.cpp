#include "poll_calls.h"

#include <poll.h>

#include <atomic>

namespace {
std::atomic<int> calls{0};
}  // namespace

namespace orlix::test {

int pollCalls() {
    return calls;
}

}  // namespace orlix::test

#ifdef __linux__
extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier): the names are the linker's.
int __real_poll(pollfd* descriptors, nfds_t count, int timeout);
int __wrap_poll(pollfd* descriptors, nfds_t count, int timeout);
int __wrap_poll(pollfd* descriptors, nfds_t count, int timeout) {
    ++calls;
    return __real_poll(descriptors, count, timeout);
}
// NOLINTEND(bugprone-reserved-identifier)
}
#endif  // __linux__
