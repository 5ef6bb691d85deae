// An install plan that has been opened safely and holds nothing but what this program would do anyway.
#pragma once

#include <string>

#include "platform/file_operations.h"
#include "updater/fault.h"

namespace orlix {

struct CheckedPlan {
    UniqueFd folder;         ///< the plan's, which the disk image is in too
    std::string folderPath;  ///< without links
    std::string imageName;
    std::string targetPath;  ///< absolute and plain; ends with ".app"
    std::string version;
    std::string build;
    std::string digest;  ///< SHA-256 as 64 lower-case hexadecimal digits
    std::string team;    ///< that of this program's own signature
};

/// What a plan must say, because this program knows it already.
struct PlanPolicy {
    std::string bundleIdentifier;
    std::string ownTeam;     ///< empty refuses every plan
    std::string resultPath;  ///< the only place for a result
};

/// Opens the plan without following links, reads it and checks every field. Refused are a plan that is not
/// this user's own, that others may write to, that has a second name or more than 64 KiB, with a field
/// missing, of the wrong type or too many, or with a value that the policy or the field's own rule does not
/// allow.
Fault readPlan(FileOperations& files, const std::string& path, const PlanPolicy& policy, CheckedPlan& result);

}  // namespace orlix
