#include "platform/posix/posix_file_operations.h"

#include <dirent.h>
#include <fcntl.h>
#include <limits.h>
#include <stdio.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>

#include "platform/posix/change_names.h"
#include "platform/posix/posix_move_guard.h"

namespace orlix {
namespace {

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

int answer(int result) {
    return result == 0 ? 0 : errno;
}

int take(int fd, UniqueFd& result) {
    if (fd < 0) return errno;
    result.reset(fd);
    return 0;
}

FileKind kindOf(mode_t mode) {
    if (S_ISREG(mode)) return FileKind::regular;
    if (S_ISDIR(mode)) return FileKind::folder;
    if (S_ISLNK(mode)) return FileKind::link;
    return FileKind::other;
}

FileStatus statusFrom(const struct stat& raw) {
#if defined(__APPLE__)
    const timespec& modified = raw.st_mtimespec;
#else
    const timespec& modified = raw.st_mtim;
#endif
    FileStatus status;
    status.kind = kindOf(raw.st_mode);
    status.mode = static_cast<std::uint32_t>(raw.st_mode) & 07777U;
    status.owner = raw.st_uid;
    status.device = static_cast<std::uint64_t>(raw.st_dev);
    status.inode = static_cast<std::uint64_t>(raw.st_ino);
    status.linkCount = static_cast<std::uint64_t>(raw.st_nlink);
    status.size = static_cast<std::int64_t>(raw.st_size);
    status.modifiedNanos = static_cast<std::int64_t>(modified.tv_sec) * 1'000'000'000 + modified.tv_nsec;
    return status;
}

}  // namespace

std::uint32_t PosixFileOperations::user() {
    return geteuid();
}

int PosixFileOperations::openKnownFolder(const std::string& path, UniqueFd& result) {
    return take(::open(path.c_str(), folderFlags), result);
}

int PosixFileOperations::openFolder(int folder, const std::string& name, UniqueFd& result) {
    return take(openat(folder, name.c_str(), folderFlags | O_NOFOLLOW), result);
}

int PosixFileOperations::openFile(int folder, const std::string& name, UniqueFd& result) {
    return take(openat(folder, name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC),
                result);
}

int PosixFileOperations::createFile(int folder, const std::string& name, std::uint32_t mode,
                                    UniqueFd& result) {
    const int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    return take(openat(folder, name.c_str(), flags, static_cast<mode_t>(mode)), result);
}

int PosixFileOperations::makeFolder(int folder, const std::string& name, std::uint32_t mode) {
    return answer(mkdirat(folder, name.c_str(), static_cast<mode_t>(mode)));
}

int PosixFileOperations::makeLink(int folder, const std::string& name, const std::string& destination) {
    return answer(symlinkat(destination.c_str(), folder, name.c_str()));
}

int PosixFileOperations::status(int file, FileStatus& result) {
    struct stat raw {};
    if (fstat(file, &raw) != 0) return errno;
    result = statusFrom(raw);
    return 0;
}

int PosixFileOperations::statusOf(int folder, const std::string& name, FileStatus& result) {
    struct stat raw {};
    if (fstatat(folder, name.c_str(), &raw, AT_SYMLINK_NOFOLLOW) != 0) return errno;
    result = statusFrom(raw);
    return 0;
}

int PosixFileOperations::list(int folder, std::vector<std::string>& result) {
    // A descriptor of its own: reading moves its place in the folder.
    const int fd = openat(folder, ".", folderFlags);
    if (fd < 0) return errno;
    DIR* stream = fdopendir(fd);
    if (stream == nullptr) {
        const int error = errno;
        ::close(fd);
        return error;
    }
    result.clear();
    errno = 0;
    while (const dirent* entry = readdir(stream)) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..") result.emplace_back(name);
        errno = 0;
    }
    const int error = errno;
    closedir(stream);
    std::sort(result.begin(), result.end());
    return error;
}

int PosixFileOperations::readLink(int folder, const std::string& name, std::string& result) {
    std::array<char, PATH_MAX + 1> buffer;
    const ssize_t count = readlinkat(folder, name.c_str(), buffer.data(), buffer.size());
    if (count < 0) return errno;
    if (static_cast<std::size_t>(count) == buffer.size()) return ENAMETOOLONG;
    result.assign(buffer.data(), static_cast<std::size_t>(count));
    return 0;
}

int PosixFileOperations::read(int file, char* bytes, std::size_t size, std::size_t& count) {
    ssize_t result = 0;
    do {
        result = ::read(file, bytes, size);
    } while (result < 0 && errno == EINTR);
    if (result < 0) return errno;
    count = static_cast<std::size_t>(result);
    return 0;
}

int PosixFileOperations::write(int file, const char* bytes, std::size_t size) {
    while (size > 0) {
        const ssize_t count = ::write(file, bytes, size);
        if (count < 0) {
            if (errno == EINTR) continue;
            return errno;
        }
        bytes += count;
        size -= static_cast<std::size_t>(count);
    }
    return 0;
}

int PosixFileOperations::setMode(int file, std::uint32_t mode) {
    return answer(fchmod(file, static_cast<mode_t>(mode)));
}

int PosixFileOperations::sync(int file) {
#if defined(__APPLE__)
    // What is written later does not reach the disk before this; a plain fsync promises less there.
    if (fcntl(file, F_BARRIERFSYNC) == 0) return 0;
#endif
    return answer(fsync(file));
}

int PosixFileOperations::lock(int folder) {
    return answer(flock(folder, LOCK_EX | LOCK_NB));
}

int PosixFileOperations::move(int fromFolder, const std::string& from, int toFolder, const std::string& to) {
    return moveName(fromFolder, from.c_str(), toFolder, to.c_str());
}

int PosixFileOperations::replace(int fromFolder, const std::string& from, int toFolder,
                                 const std::string& to) {
    return answer(renameat(fromFolder, from.c_str(), toFolder, to.c_str()));
}

int PosixFileOperations::exchange(int folderA, const std::string& a, int folderB, const std::string& b) {
    return exchangeNames(folderA, a.c_str(), folderB, b.c_str());
}

int PosixFileOperations::guardMove(int asideFolder, const std::string& aside, int folder,
                                   const std::string& name, std::unique_ptr<MoveGuard>& result) {
    auto guard = std::make_unique<PosixMoveGuard>();
    const int error = guard->start(asideFolder, aside, folder, name);
    if (error == 0) result = std::move(guard);
    return error;
}

int PosixFileOperations::removeFile(int folder, const std::string& name) {
    return answer(unlinkat(folder, name.c_str(), 0));
}

int PosixFileOperations::removeFolder(int folder, const std::string& name) {
    return answer(unlinkat(folder, name.c_str(), AT_REMOVEDIR));
}

}  // namespace orlix
