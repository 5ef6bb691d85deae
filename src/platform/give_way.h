// For a thread that prepares what the main thread will need later.
#pragma once

#ifdef __linux__
#include <sys/resource.h>
#endif

namespace orlix {

/// From now on the calling thread gives way to the program's other threads where the cores do not suffice for
/// all; there is no way back. On macOS the main thread of a window stands above such a thread anyway.
inline void giveWay() {
#ifdef __linux__
    constexpr int niceness = 10;
    setpriority(PRIO_PROCESS, 0, niceness);  // to Linux 0 is the calling thread alone
#endif
}

}  // namespace orlix
