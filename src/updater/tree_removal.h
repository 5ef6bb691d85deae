// Removes a folder with everything in it, link by link and file by file, on one volume only.
#pragma once

#include <string>

#include "platform/file_operations.h"

namespace orlix {

/// Removes what `name` stands for in `folder`: a folder with its contents, or a single file or link. Links
/// are removed and never followed; another volume mounted inside stays. 0, or errno of the first thing that
/// could not be removed; the rest is gone then. ENOENT when there was nothing.
int removeTree(FileOperations& files, int folder, const std::string& name);

/// Removes what is in an open folder, not the folder.
int removeContents(FileOperations& files, int folder);

}  // namespace orlix
