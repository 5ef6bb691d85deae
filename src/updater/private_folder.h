// The folder in which a new application is made ready: beside the installed one, so that both lie on one
// volume, and open to its owner only. Goes with the object, unless it is told to stay.
#pragma once

#include <functional>
#include <string>

#include "platform/file_operations.h"

namespace orlix {

class PrivateFolder {
  public:
    /// Whether a process runs from inside the folder of this name, which must stay then.
    using IsInUse = std::function<bool(const std::string& name)>;

    /// What the names of all such folders begin with.
    static constexpr const char* prefix = ".VelmorandixOrlixUpdate-";

    explicit PrivateFolder(FileOperations& files) : files_(files) {}
    PrivateFolder(const PrivateFolder&) = delete;
    PrivateFolder& operator=(const PrivateFolder&) = delete;
    ~PrivateFolder() { remove(); }

    /// Makes the folder in `parent`, which stays open as long as this object. 0 or errno; EPERM when what was
    /// made is not what was asked for.
    int make(int parent);

    /// Removes the folder with its contents. What cannot be removed is left to `removeLeftovers` of a later
    /// run.
    void remove();
    /// From now on the folder is not removed by this object.
    void keep() { isKept_ = true; }

    int folder() const { return folder_.get(); }
    const std::string& name() const { return name_; }

    /// Removes what runs that were killed left in `parent`.
    static void removeLeftovers(FileOperations& files, int parent, const IsInUse& isInUse);

  private:
    FileOperations& files_;
    int parent_ = -1;
    UniqueFd folder_;
    std::string name_;
    bool isKept_ = false;
};

}  // namespace orlix
