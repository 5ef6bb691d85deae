// The real file operations, for POSIX systems. Stateless.
#pragma once

#include "platform/file_operations.h"

namespace orlix {

class PosixFileOperations : public FileOperations {
  public:
    std::uint32_t user() override;

    int openKnownFolder(const std::string& path, UniqueFd& result) override;
    int openFolder(int folder, const std::string& name, UniqueFd& result) override;
    int openFile(int folder, const std::string& name, UniqueFd& result) override;
    int createFile(int folder, const std::string& name, std::uint32_t mode, UniqueFd& result) override;
    int makeFolder(int folder, const std::string& name, std::uint32_t mode) override;
    int makeLink(int folder, const std::string& name, const std::string& destination) override;

    int status(int file, FileStatus& result) override;
    int statusOf(int folder, const std::string& name, FileStatus& result) override;
    int list(int folder, std::vector<std::string>& result) override;
    int readLink(int folder, const std::string& name, std::string& result) override;

    int read(int file, char* bytes, std::size_t size, std::size_t& count) override;
    int write(int file, const char* bytes, std::size_t size) override;
    int setMode(int file, std::uint32_t mode) override;
    int sync(int file) override;
    int lock(int folder) override;

    int move(int fromFolder, const std::string& from, int toFolder, const std::string& to) override;
    int replace(int fromFolder, const std::string& from, int toFolder, const std::string& to) override;
    int exchange(int folderA, const std::string& a, int folderB, const std::string& b) override;
    /// By a second process that waits for the end of this one; descriptors stay open in it for that time.
    int guardMove(int asideFolder, const std::string& aside, int folder, const std::string& name,
                  std::unique_ptr<MoveGuard>& result) override;

    int removeFile(int folder, const std::string& name) override;
    int removeFolder(int folder, const std::string& name) override;
};

}  // namespace orlix
