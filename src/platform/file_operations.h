// Files and folders by open descriptors and single names, so that nothing can be swapped for a link on the
// way. Every function is one step of the operating system, returns 0 or its error number (errno's values),
// and follows no link unless it says so. `name` is one path component. Any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/posix/unique_fd.h"

namespace orlix {

enum class FileKind { regular, folder, link, other };

struct FileStatus {
    FileKind kind = FileKind::other;
    std::uint32_t mode = 0;  ///< the permission bits with set-id and sticky: at most 07777
    std::uint32_t owner = 0;
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::uint64_t linkCount = 0;
    std::int64_t size = 0;           ///< bytes
    std::int64_t modifiedNanos = 0;  ///< since 1970

    bool operator==(const FileStatus&) const = default;
    bool isSameFile(const FileStatus& other) const { return device == other.device && inode == other.inode; }
};

/// While it exists, the death of this process moves a name back: see `FileOperations::guardMove`.
class MoveGuard {
  public:
    virtual ~MoveGuard() = default;
};

class FileOperations {
  public:
    virtual ~FileOperations() = default;

    /// The user that this program acts for.
    virtual std::uint32_t user() = 0;

    /// Opens the folder at an absolute path, following links: only for places that the system names.
    virtual int openKnownFolder(const std::string& path, UniqueFd& result) = 0;
    virtual int openFolder(int folder, const std::string& name, UniqueFd& result) = 0;
    /// For reading. Does not wait for the other end of a pipe.
    virtual int openFile(int folder, const std::string& name, UniqueFd& result) = 0;
    /// For writing; fails when the name is taken.
    virtual int createFile(int folder, const std::string& name, std::uint32_t mode, UniqueFd& result) = 0;
    virtual int makeFolder(int folder, const std::string& name, std::uint32_t mode) = 0;
    virtual int makeLink(int folder, const std::string& name, const std::string& destination) = 0;

    virtual int status(int file, FileStatus& result) = 0;
    virtual int statusOf(int folder, const std::string& name, FileStatus& result) = 0;
    /// The names in a folder without "." and "..", sorted by their bytes.
    virtual int list(int folder, std::vector<std::string>& result) = 0;
    virtual int readLink(int folder, const std::string& name, std::string& result) = 0;

    /// At most `size` bytes from where the last read ended; `count` is 0 at the end of the file.
    virtual int read(int file, char* bytes, std::size_t size, std::size_t& count) = 0;
    /// All of the bytes.
    virtual int write(int file, const char* bytes, std::size_t size) = 0;
    virtual int setMode(int file, std::uint32_t mode) = 0;
    /// Waits until the disk has the file or the folder.
    virtual int sync(int file) = 0;
    /// Takes the lock of a folder for as long as the descriptor is open; EWOULDBLOCK when another has it.
    virtual int lock(int folder) = 0;

    /// Fails with EEXIST when the new name is taken, as far as the volume can tell that in one step.
    virtual int move(int fromFolder, const std::string& from, int toFolder, const std::string& to) = 0;
    /// Replaces a file that has the new name, in one step.
    virtual int replace(int fromFolder, const std::string& from, int toFolder, const std::string& to) = 0;
    /// Swaps two names in one step. ENOTSUP where the volume cannot.
    virtual int exchange(int folderA, const std::string& a, int folderB, const std::string& b) = 0;
    /// From now on, until the guard is destroyed: should this process end, what is then called `aside` is
    /// moved to `name` unless there is something of that name.
    virtual int guardMove(int asideFolder, const std::string& aside, int folder, const std::string& name,
                          std::unique_ptr<MoveGuard>& result) = 0;

    virtual int removeFile(int folder, const std::string& name) = 0;
    virtual int removeFolder(int folder, const std::string& name) = 0;
};

}  // namespace orlix
