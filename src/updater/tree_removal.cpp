#include "updater/tree_removal.h"

#include <cerrno>
#include <vector>

namespace orlix {
namespace {

// Deeper than any application; each level holds a descriptor.
constexpr int deepest = 100;
constexpr std::uint32_t ownerMayAll = 0700;

int removeContents(FileOperations& files, int folder, std::uint64_t device, int depth);

int removeEntry(FileOperations& files, int folder, const std::string& name, std::uint64_t device, int depth) {
    FileStatus status;
    if (const int error = files.statusOf(folder, name, status)) return error;
    if (status.kind != FileKind::folder) return files.removeFile(folder, name);
    if (status.device != device) return EXDEV;
    if (depth > deepest) return ENAMETOOLONG;
    UniqueFd inner;
    if (const int error = files.openFolder(folder, name, inner)) return error;
    if ((status.mode & ownerMayAll) != ownerMayAll) {
        if (const int error = files.setMode(inner.get(), ownerMayAll)) return error;
    }
    const int error = removeContents(files, inner.get(), device, depth);
    return error != 0 ? error : files.removeFolder(folder, name);
}

int removeContents(FileOperations& files, int folder, std::uint64_t device, int depth) {
    std::vector<std::string> names;
    if (const int error = files.list(folder, names)) return error;
    int first = 0;
    for (const std::string& name : names) {
        const int error = removeEntry(files, folder, name, device, depth + 1);
        if (first == 0) first = error;
    }
    return first;
}

}  // namespace

int removeTree(FileOperations& files, int folder, const std::string& name) {
    FileStatus status;
    if (const int error = files.status(folder, status)) return error;
    return removeEntry(files, folder, name, status.device, 0);
}

int removeContents(FileOperations& files, int folder) {
    FileStatus status;
    if (const int error = files.status(folder, status)) return error;
    return removeContents(files, folder, status.device, 0);
}

}  // namespace orlix
