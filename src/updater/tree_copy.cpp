#include "updater/tree_copy.h"

#include <vector>

namespace orlix {
namespace {

constexpr std::uint32_t setIdBits = 06000;
constexpr std::uint32_t keptBits = 0755;
constexpr std::uint32_t privateFolder = 0700;
constexpr std::uint32_t privateFile = 0600;

class TreeCopy {
  public:
    TreeCopy(FileOperations& files, const TreeLimits& limits) : files_(files), limits_(limits) {}

    Fault run(int from, int to) {
        FileStatus status;
        if (const int error = files_.status(from, status)) return failed(error);
        device_ = status.device;
        return copyFolder(from, to, status.mode, 0);
    }

  private:
    Fault copyFolder(int from, int to, std::uint32_t mode, int depth) {
        if (depth > limits_.depth) return refused("its folders are nested too deep");
        std::vector<std::string> names;
        if (const int error = files_.list(from, names)) return failed(error);
        const std::size_t pathLength = path_.size();
        for (const std::string& name : names) {
            path_ += (path_.empty() ? "" : "/") + name;
            if (++entries_ > limits_.entries) return refused("it has too many files");
            if (Fault fault = copyEntry(from, to, name, depth)) return fault;
            path_.resize(pathLength);
        }
        if (const int error = files_.setMode(to, (mode & keptBits) | privateFolder)) return failed(error);
        if (const int error = files_.sync(to)) return failed(error);
        return std::nullopt;
    }

    Fault copyEntry(int from, int to, const std::string& name, int depth) {
        FileStatus status;
        if (const int error = files_.statusOf(from, name, status)) return failed(error);
        if (status.device != device_) return refused("it lies on another volume");
        switch (status.kind) {
            case FileKind::regular: return copyFile(from, to, name, status);
            case FileKind::folder: return enterFolder(from, to, name, status, depth + 1);
            case FileKind::link: return copyLink(from, to, name, depth);
            case FileKind::other: break;
        }
        return refused("it is a device or another special file");
    }

    Fault enterFolder(int from, int to, const std::string& name, const FileStatus& status, int depth) {
        if ((status.mode & setIdBits) != 0) return refused("it has a set-id bit");
        UniqueFd source;
        UniqueFd copy;
        if (const int error = files_.openFolder(from, name, source)) return failed(error);
        if (const int error = files_.makeFolder(to, name, privateFolder)) return failed(error);
        if (const int error = files_.openFolder(to, name, copy)) return failed(error);
        return copyFolder(source.get(), copy.get(), status.mode, depth);
    }

    Fault copyLink(int from, int to, const std::string& name, int depth) {
        std::string destination;
        if (const int error = files_.readLink(from, name, destination)) return failed(error);
        if (!linkStaysInside(destination, depth)) return refused("it is a link that leaves the application");
        if (const int error = files_.makeLink(to, name, destination)) return failed(error);
        return std::nullopt;
    }

    Fault copyFile(int from, int to, const std::string& name, const FileStatus& status) {
        UniqueFd source;
        UniqueFd copy;
        FileStatus opened;
        if (const int error = files_.openFile(from, name, source)) return failed(error);
        if (const int error = files_.status(source.get(), opened)) return failed(error);
        if (opened != status) return refused("it changed while it was copied");
        if ((opened.mode & setIdBits) != 0) return refused("it has a set-id bit");
        if (const int error = files_.createFile(to, name, privateFile, copy)) return failed(error);
        if (Fault fault = copyBytes(source.get(), copy.get(), opened.size)) return fault;
        if (const int error = files_.setMode(copy.get(), (opened.mode & keptBits) | privateFile))
            return failed(error);
        if (const int error = files_.sync(copy.get())) return failed(error);
        return std::nullopt;
    }

    Fault copyBytes(int source, int copy, std::int64_t expected) {
        std::int64_t total = 0;
        for (;;) {
            std::size_t count = 0;
            if (const int error = files_.read(source, buffer_.data(), buffer_.size(), count))
                return failed(error);
            if (count == 0) break;
            if (const int error = files_.write(copy, buffer_.data(), count)) return failed(error);
            total += static_cast<std::int64_t>(count);
        }
        return total == expected ? std::nullopt : refused("it changed while it was copied");
    }

    Fault failed(int error) const { return refused(errorText(error)); }
    Fault refused(const std::string& why) const {
        return "\"" + (path_.empty() ? std::string("the application") : path_) +
               "\" could not be copied: " + why;
    }

    FileOperations& files_;
    const TreeLimits limits_;
    std::uint64_t device_ = 0;
    std::size_t entries_ = 0;
    std::string path_;  // of the entry at hand, from the top
    std::vector<char> buffer_ = std::vector<char>(256 * 1024);
};

}  // namespace

Fault copyTree(FileOperations& files, int from, int to, const TreeLimits& limits) {
    return TreeCopy(files, limits).run(from, to);
}

// A link's folder is a real one, so going up from it is exact; after that only real names and links of the
// same kind follow, none of which goes above the top either.
bool linkStaysInside(const std::string& destination, int depth) {
    if (destination.empty() || destination.front() == '/') return false;
    bool hasDescended = false;
    std::size_t start = 0;
    while (start <= destination.size()) {
        const std::size_t slash = destination.find('/', start);
        const std::size_t end = slash == std::string::npos ? destination.size() : slash;
        const std::string part = destination.substr(start, end - start);
        if (part == "..") {
            if (hasDescended || --depth < 0) return false;
        } else if (!part.empty() && part != ".") {
            hasDescended = true;
        }
        start = end + 1;
    }
    return true;
}

}  // namespace orlix
