// The stand-in for the disk-image tool as an executable with the real one's command line: a small script in a
// folder of its own that starts it with the flags of one test. Owned by the test; the folder goes with the
// object. Standard C++ only.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "support/built_programs.h"

namespace orlix::test {

class DiskImageTool {
  public:
    /// `flags` as disk_image_tool.cpp lists them. The folder is made in `parent`.
    explicit DiskImageTool(const std::vector<std::string>& flags = {},
                           const std::filesystem::path& parent = std::filesystem::temp_directory_path()) {
        std::string name = (parent / "disk-image-tool-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder for the disk-image tool");
        // A mount point is a real path, so no link may be a part of it.
        folder_ = std::filesystem::canonical(name);
        setFlags(flags);
    }
    ~DiskImageTool() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    DiskImageTool(const DiskImageTool&) = delete;
    DiskImageTool& operator=(const DiskImageTool&) = delete;

    /// From the next call on.
    void setFlags(const std::vector<std::string>& flags) const {
        std::string command =
            "exec " + quoted(diskImageToolProgram) + ' ' + quoted("--state=" + folder_.string());
        for (const std::string& flag : flags)
            command += ' ' + quoted(flag);
        std::ofstream(path()) << "#!/bin/sh\n" << command << " \"$@\"\n";
        std::filesystem::permissions(path(), std::filesystem::perms::owner_all);
    }

    std::filesystem::path path() const { return folder_ / "disk-image-tool"; }

    /// Where an image whose volume is the folder `volume` is mounted while it is attached.
    std::filesystem::path mountPoint(const std::filesystem::path& volume) const {
        return folder_ / "Volumes" / volume.filename();
    }
    bool isAttached() const { return std::filesystem::exists(folder_ / "attached"); }

    /// The calls so far, oldest first, each with its words parted by tabs.
    std::vector<std::string> calls() const {
        std::vector<std::string> lines;
        std::ifstream stream(folder_ / "calls");
        for (std::string line; std::getline(stream, line);)
            lines.push_back(line);
        return lines;
    }

    /// The bytes of an image whose volume is the folder `volume`; `rest` makes the file as long as one likes.
    static std::string imageOf(const std::filesystem::path& volume, const std::string& rest = {}) {
        return "orlix disk image\n" + volume.string() + '\n' + rest;
    }

  private:
    static std::string quoted(const std::string& text) {
        std::string result = "'";
        for (const char c : text)
            result += c == '\'' ? std::string("'\\''") : std::string(1, c);
        return result + "'";
    }

    std::filesystem::path folder_;
};

}  // namespace orlix::test
