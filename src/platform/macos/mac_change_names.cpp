#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/posix/change_names.h"

namespace orlix {

int moveName(int fromFolder, const char* from, int toFolder, const char* to) {
    if (renameatx_np(fromFolder, from, toFolder, to, RENAME_EXCL) == 0) return 0;
    if (errno != ENOTSUP && errno != EINVAL) return errno;
    struct stat ignored {};
    if (fstatat(toFolder, to, &ignored, AT_SYMLINK_NOFOLLOW) == 0) return EEXIST;
    return renameat(fromFolder, from, toFolder, to) == 0 ? 0 : errno;
}

int exchangeNames(int folderA, const char* a, int folderB, const char* b) {
    if (renameatx_np(folderA, a, folderB, b, RENAME_SWAP) == 0) return 0;
    return errno == EINVAL ? ENOTSUP : errno;
}

}  // namespace orlix
