// Proves that an application's bundle is the one that is expected.
#pragma once

#include <string>

#include "platform/code_signature.h"
#include "platform/file_operations.h"
#include "updater/fault.h"

namespace orlix {

struct ExpectedBundle {
    std::string identifier;
    std::string version;
    std::string build;
    std::string team;
};

/// Checks the bundle `name` in the open folder `folder`, which has the path `folderPath`: identifier, version
/// and build by what it says about itself, then its signature. The signature is read by path, so the path has
/// to lead to this very bundle before and after. `status` is that of the bundle's folder.
Fault verifyBundle(FileOperations& files, CodeSignatureReader& signatures, int folder,
                   const std::string& folderPath, const std::string& name, const ExpectedBundle& expected,
                   FileStatus& status);

/// In the system's language of requirements: code that Apple's authority vouches for, signed with a Developer
/// ID certificate of `team` as `identifier`. Both consist of letters, digits, dots and hyphens only.
std::string developerRequirement(const std::string& identifier, const std::string& team);

/// Whether a text is fit for `developerRequirement`.
bool isFitForRequirement(const std::string& text);

}  // namespace orlix
