// An empty volume of its own, mounted over a folder for as long as the object exists. Takes root, and Linux;
// elsewhere nothing is mounted. Owned by the test.
#pragma once

#include <filesystem>
#include <string>

#ifdef __linux__
#include <sys/mount.h>
#endif

namespace orlix::test {

class MountedFolder {
  public:
    explicit MountedFolder(std::filesystem::path path) : path_(std::move(path)) {
#ifdef __linux__
        isMounted_ = mount("none", path_.c_str(), "tmpfs", 0, "size=1m") == 0;
#endif
    }
    ~MountedFolder() {
#ifdef __linux__
        if (isMounted_) umount(path_.c_str());
#endif
    }
    MountedFolder(const MountedFolder&) = delete;
    MountedFolder& operator=(const MountedFolder&) = delete;

    explicit operator bool() const {
        return isMounted_;
    }

  private:
    const std::filesystem::path path_;
    bool isMounted_ = false;
};

}  // namespace orlix::test
