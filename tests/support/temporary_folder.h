// A folder of one test's own, in memory where the system has such a place, gone with the object. Its path has
// no link in it. Standard C++ and POSIX only.
#pragma once

#include <stdlib.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

namespace orlix::test {

class TemporaryFolder {
  public:
    TemporaryFolder() {
        const std::filesystem::path memory = "/dev/shm";
        const std::filesystem::path parent = isFit(memory) ? memory : std::filesystem::temp_directory_path();
        std::string name = (parent / "orlix-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
        path_ = std::filesystem::canonical(name);
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(const std::filesystem::path& name) const { return path_ / name; }

  private:
    // Programs of a test run from here.
    static bool isFit(const std::filesystem::path& folder) {
#if defined(ST_NOEXEC)
        struct statvfs volume {};
        return access(folder.c_str(), W_OK) == 0 && statvfs(folder.c_str(), &volume) == 0 &&
               (volume.f_flag & ST_NOEXEC) == 0;
#else
        return access(folder.c_str(), W_OK) == 0;
#endif
    }

    std::filesystem::path path_;
};

/// Writes a file, with the folders above it.
inline void writeFile(const std::filesystem::path& path, const std::string& text) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << text;
}

/// Empty when there is no such file.
inline std::string readFile(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

}  // namespace orlix::test
