// The real file operations, each of them a step.
#pragma once

#include <sys/stat.h>

#include <filesystem>
#include <functional>
#include <stdexcept>
#include <utility>
#include <vector>

#include "platform/posix/posix_file_operations.h"
#include "updater/steps.h"

namespace orlix::test {

class SteppedFiles : public FileOperations {
  public:
    explicit SteppedFiles(Steps& steps) : steps_(steps) {}

    /// A volume that exchanges no names.
    bool canExchange = true;

    /// From now on what lies at `path` is told of as `change` makes it: the state of things that only root
    /// can bring about.
    void disguise(const std::filesystem::path& path, std::function<void(FileStatus&)> change) {
        struct stat raw {};
        if (lstat(path.c_str(), &raw) != 0) throw std::runtime_error("nothing to disguise");
        FileStatus real;
        real.device = static_cast<std::uint64_t>(raw.st_dev);
        real.inode = static_cast<std::uint64_t>(raw.st_ino);
        disguises_.emplace_back(real, std::move(change));
    }

    std::uint32_t user() override { return real_.user(); }

    int openKnownFolder(const std::string& path, UniqueFd& result) override {
        return steps_.run("openKnownFolder", [&] { return real_.openKnownFolder(path, result); });
    }
    int openFolder(int folder, const std::string& name, UniqueFd& result) override {
        return steps_.run("openFolder", [&] { return real_.openFolder(folder, name, result); });
    }
    int openFile(int folder, const std::string& name, UniqueFd& result) override {
        return steps_.run("openFile", [&] { return real_.openFile(folder, name, result); });
    }
    int createFile(int folder, const std::string& name, std::uint32_t mode, UniqueFd& result) override {
        return steps_.run("createFile", [&] { return real_.createFile(folder, name, mode, result); });
    }
    int makeFolder(int folder, const std::string& name, std::uint32_t mode) override {
        return steps_.run("makeFolder", [&] { return real_.makeFolder(folder, name, mode); });
    }
    int makeLink(int folder, const std::string& name, const std::string& destination) override {
        return steps_.run("makeLink", [&] { return real_.makeLink(folder, name, destination); });
    }
    int status(int file, FileStatus& result) override {
        return steps_.run("status", [&] { return disguised(real_.status(file, result), result); });
    }
    int statusOf(int folder, const std::string& name, FileStatus& result) override {
        return steps_.run("statusOf",
                          [&] { return disguised(real_.statusOf(folder, name, result), result); });
    }
    int list(int folder, std::vector<std::string>& result) override {
        return steps_.run("list", [&] { return real_.list(folder, result); });
    }
    int readLink(int folder, const std::string& name, std::string& result) override {
        return steps_.run("readLink", [&] { return real_.readLink(folder, name, result); });
    }
    int read(int file, char* bytes, std::size_t size, std::size_t& count) override {
        return steps_.run("read", [&] { return real_.read(file, bytes, size, count); });
    }
    int write(int file, const char* bytes, std::size_t size) override {
        return steps_.run("write", [&] { return real_.write(file, bytes, size); });
    }
    int setMode(int file, std::uint32_t mode) override {
        return steps_.run("setMode", [&] { return real_.setMode(file, mode); });
    }
    int sync(int file) override {
        return steps_.run("sync", [&] { return real_.sync(file); });
    }
    int lock(int folder) override {
        return steps_.run("lock", [&] { return real_.lock(folder); });
    }
    int move(int fromFolder, const std::string& from, int toFolder, const std::string& to) override {
        return steps_.run("move", [&] { return real_.move(fromFolder, from, toFolder, to); });
    }
    int replace(int fromFolder, const std::string& from, int toFolder, const std::string& to) override {
        return steps_.run("replace", [&] { return real_.replace(fromFolder, from, toFolder, to); });
    }
    int exchange(int folderA, const std::string& a, int folderB, const std::string& b) override {
        return steps_.run("exchange",
                          [&] { return canExchange ? real_.exchange(folderA, a, folderB, b) : ENOTSUP; });
    }
    int guardMove(int asideFolder, const std::string& aside, int folder, const std::string& name,
                  std::unique_ptr<MoveGuard>& result) override {
        return steps_.run("guardMove",
                          [&] { return real_.guardMove(asideFolder, aside, folder, name, result); });
    }
    int removeFile(int folder, const std::string& name) override {
        return steps_.run("removeFile", [&] { return real_.removeFile(folder, name); });
    }
    int removeFolder(int folder, const std::string& name) override {
        return steps_.run("removeFolder", [&] { return real_.removeFolder(folder, name); });
    }

  private:
    int disguised(int error, FileStatus& status) const {
        const FileStatus real = status;
        for (const auto& [file, change] : disguises_)
            if (error == 0 && real.isSameFile(file)) change(status);
        return error;
    }

    std::vector<std::pair<FileStatus, std::function<void(FileStatus&)>>> disguises_;
    Steps& steps_;
    PosixFileOperations real_;
};

}  // namespace orlix::test
