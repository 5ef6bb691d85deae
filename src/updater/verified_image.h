// A disk image whose bytes have been compared with the digest that was promised.
#pragma once

#include <string>

#include "platform/file_operations.h"
#include "updater/fault.h"

namespace orlix {

class VerifiedImage {
  public:
    explicit VerifiedImage(FileOperations& files) : files_(files) {}

    /// Opens `name` in `folder` without following a link and reads all of it. Refuses what is no regular
    /// file, is empty or longer than 4 GiB, has a length other than was read, or another digest (64
    /// lower-case hexadecimal digits).
    Fault open(int folder, const std::string& name, const std::string& digest);

    /// Whether `name` in `folder` is still the file that was read, and nobody has written to it since.
    bool isUnchanged(int folder, const std::string& name) const;

  private:
    FileOperations& files_;
    UniqueFd file_;
    FileStatus status_;
};

}  // namespace orlix
