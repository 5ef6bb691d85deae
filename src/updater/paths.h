// Paths as the installer takes them: absolute, in their plainest form, and walked without following links.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/file_operations.h"

namespace orlix {

/// The names of an absolute path, outermost first. Nothing for a relative path, for the root itself, and for
/// one with an empty, "." or ".." part, a control character or more than 4,000 bytes.
std::optional<std::vector<std::string>> pathNames(const std::string& path);

/// True for a name that stands for one thing inside a folder: no slash, not empty, "." or "..".
bool isPlainName(const std::string& name);

/// Everything before the last slash and what follows it; `path` has at least two names.
std::string folderOf(const std::string& path);
std::string nameOf(const std::string& path);

/// Opens the folder at a path for which `pathNames` has names; no part of it may be a link. 0 or errno,
/// EINVAL for another path.
int openFolderPath(FileOperations& files, const std::string& path, UniqueFd& result);

/// The same below an open folder.
int openFolderBelow(FileOperations& files, int folder, const std::vector<std::string>& names,
                    UniqueFd& result);

}  // namespace orlix
