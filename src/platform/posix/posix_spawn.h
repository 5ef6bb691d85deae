// Starts a child program in a process group of its own, with two or three pipes and no other descriptor of
// ours, with default signal dispositions and an empty signal mask. Pure function over the system; any thread.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "platform/posix/unique_fd.h"

namespace orlix {

struct SpawnedChild {
    int error = 0;    ///< errno of what failed; all else is empty then
    pid_t pid = -1;   ///< also the id of its process group
    UniqueFd input;   ///< writes to the child's standard input, without ever waiting
    UniqueFd output;  ///< reads what the child writes to standard output, without waiting
    UniqueFd errors;  ///< the same for standard error where that has a pipe of its own
};

enum class ErrorPipe {
    shared,  ///< standard error goes where standard output goes
    own
};

SpawnedChild spawnChild(const std::string& path, const std::vector<std::string>& arguments,
                        ErrorPipe errorPipe = ErrorPipe::shared);

/// Starts a program that lives on without this one: in a session of its own, with nothing to read and nowhere
/// to write. Nobody reaps it while this program runs. 0 or errno.
int spawnDetached(const std::string& path, const std::vector<std::string>& arguments);

/// A pipe whose ends no child inherits; ends 0 (reading) and 1 (writing) are above the standard descriptors.
/// False, with errno set, when there is none to be had.
bool makePipe(UniqueFd (&ends)[2]);

bool setNonBlocking(int fd);

}  // namespace orlix
