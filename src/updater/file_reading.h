// Whole small files from an open folder.
#pragma once

#include <cstddef>
#include <string>

#include "platform/file_operations.h"

namespace orlix {

/// Reads a regular file of at most `limit` bytes, without following a link; `status` is that of the opened
/// file. 0 or errno: EINVAL for what is no regular file, EFBIG for a longer one.
int readSmallFile(FileOperations& files, int folder, const std::string& name, std::size_t limit,
                  std::string& contents, FileStatus& status);

}  // namespace orlix
