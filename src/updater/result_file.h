// Writes the result of an installation where the application looks for it.
#pragma once

#include <string>
#include <vector>

#include "platform/file_operations.h"

namespace orlix {

/// A file below a folder that the system names. Folders on the way from there are made as needed, and none of
/// them may be a link.
struct ResultPlace {
    std::string knownFolder;           ///< absolute, without a slash at its end; may be reached through links
    std::vector<std::string> folders;  ///< outermost first
    std::string name;

    std::string path() const;
};

/// Writes `contents` in one step: an earlier file there is whole until the new one is. False when it could
/// not; then nothing has changed.
bool writeResultFile(FileOperations& files, const ResultPlace& place, const std::string& contents);

}  // namespace orlix
