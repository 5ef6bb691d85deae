#include "updater/private_folder.h"

#include <cerrno>
#include <vector>

#include "updater/random_name.h"
#include "updater/tree_removal.h"

namespace orlix {
namespace {

constexpr std::uint32_t ownerOnly = 0700;

// Opens `name` when it is such a folder: this user's own, closed to others, on its parent's volume.
int openPrivate(FileOperations& files, int parent, const std::string& name, UniqueFd& folder) {
    FileStatus parentStatus;
    FileStatus status;
    if (const int error = files.status(parent, parentStatus)) return error;
    if (const int error = files.openFolder(parent, name, folder)) return error;
    if (const int error = files.status(folder.get(), status)) return error;
    const bool isPrivate = status.owner == files.user() && (status.mode & 0777U) == ownerOnly;
    return isPrivate && status.device == parentStatus.device ? 0 : EPERM;
}

// The folder's name may stand for something else by now.
bool isStillCalled(FileOperations& files, int parent, const std::string& name, int folder) {
    FileStatus named;
    FileStatus opened;
    return files.statusOf(parent, name, named) == 0 && files.status(folder, opened) == 0 &&
           named.isSameFile(opened);
}

void removeOpened(FileOperations& files, int parent, const std::string& name, int folder) {
    if (removeContents(files, folder) == 0 && isStillCalled(files, parent, name, folder))
        files.removeFolder(parent, name);
}

}  // namespace

int PrivateFolder::make(int parent) {
    parent_ = parent;
    const std::string name = prefix + randomDigits();
    if (const int error = files_.makeFolder(parent, name, ownerOnly)) return error;
    if (const int error = openPrivate(files_, parent, name, folder_)) {
        folder_.reset();
        files_.removeFolder(parent, name);
        return error;
    }
    name_ = name;
    return 0;
}

void PrivateFolder::remove() {
    if (folder_ && !isKept_) removeOpened(files_, parent_, name_, folder_.get());
    folder_.reset();
}

void PrivateFolder::removeLeftovers(FileOperations& files, int parent, const IsInUse& isInUse) {
    std::vector<std::string> names;
    if (files.list(parent, names) != 0) return;
    for (const std::string& name : names) {
        UniqueFd folder;
        if (name.rfind(prefix, 0) != 0 || openPrivate(files, parent, name, folder) != 0 || isInUse(name))
            continue;
        removeOpened(files, parent, name, folder.get());
    }
}

}  // namespace orlix
