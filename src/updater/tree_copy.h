// Copies an application's folder from a volume that nobody vouches for. The copy holds folders, files and
// links that stay inside it, and nothing else.
#pragma once

#include <cstddef>
#include <string>

#include "platform/file_operations.h"
#include "updater/fault.h"

namespace orlix {

struct TreeLimits {
    int depth = 64;                 ///< folders within folders
    std::size_t entries = 200'000;  ///< of all kinds together
};

/// Copies what is in the folder `from` into the empty folder `to`, down to the disk. What went wrong, for the
/// user to read, when it could not or would not: a link that leads out of `from`, a device or another special
/// file, a set-id bit, another volume mounted inside, more than the limits. What was copied by then stays.
/// Nobody but the owner may write to the copy; extended attributes and access lists stay behind.
Fault copyTree(FileOperations& files, int from, int to, const TreeLimits& limits = {});

/// True when a link's destination, from a folder that lies `depth` folders below the top, cannot lead out of
/// the top folder whatever other such links do: it is relative and goes up first, if at all, and not too far.
bool linkStaysInside(const std::string& destination, int depth);

}  // namespace orlix
