#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

#include "platform/posix/change_names.h"

namespace orlix {
namespace {

constexpr unsigned noReplace = 1;  // RENAME_NOREPLACE and RENAME_EXCHANGE, which not every libc names
constexpr unsigned exchange = 2;

int rename(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) {
    return syscall(SYS_renameat2, fromFolder, from, toFolder, to, flags) == 0 ? 0 : errno;
}

bool isUnsupported(int error) {
    return error == EINVAL || error == ENOSYS;
}

}  // namespace

int moveName(int fromFolder, const char* from, int toFolder, const char* to) {
    const int error = rename(fromFolder, from, toFolder, to, noReplace);
    if (!isUnsupported(error)) return error;
    struct stat ignored {};
    if (fstatat(toFolder, to, &ignored, AT_SYMLINK_NOFOLLOW) == 0) return EEXIST;
    return renameat(fromFolder, from, toFolder, to) == 0 ? 0 : errno;
}

int exchangeNames(int folderA, const char* a, int folderB, const char* b) {
    const int error = rename(folderA, a, folderB, b, exchange);
    return isUnsupported(error) ? ENOTSUP : error;
}

}  // namespace orlix
