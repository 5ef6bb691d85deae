#include "updater/paths.h"

#include <algorithm>
#include <cerrno>

namespace orlix {
namespace {

constexpr std::size_t longestPath = 4000;

bool hasControlCharacter(const std::string& text) {
    return std::any_of(text.begin(), text.end(), [](char c) {
        const auto code = static_cast<unsigned char>(c);
        return code < 0x20 || code == 0x7f;
    });
}

}  // namespace

bool isPlainName(const std::string& name) {
    return !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos;
}

std::optional<std::vector<std::string>> pathNames(const std::string& path) {
    if (path.size() < 2 || path.size() > longestPath || path.front() != '/' || hasControlCharacter(path))
        return std::nullopt;
    std::vector<std::string> names;
    std::size_t start = 1;
    while (start <= path.size()) {
        const std::size_t end = std::min(path.find('/', start), path.size());
        names.push_back(path.substr(start, end - start));
        if (!isPlainName(names.back())) return std::nullopt;
        start = end + 1;
    }
    return names;
}

std::string folderOf(const std::string& path) {
    return path.substr(0, path.rfind('/'));
}

std::string nameOf(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

int openFolderPath(FileOperations& files, const std::string& path, UniqueFd& result) {
    const auto names = pathNames(path);
    if (!names) return EINVAL;
    UniqueFd root;
    const int error = files.openKnownFolder("/", root);
    return error != 0 ? error : openFolderBelow(files, root.get(), *names, result);
}

int openFolderBelow(FileOperations& files, int folder, const std::vector<std::string>& names,
                    UniqueFd& result) {
    UniqueFd current;
    int at = folder;
    for (const std::string& name : names) {
        UniqueFd next;
        const int error = files.openFolder(at, name, next);
        if (error != 0) return error;
        current = std::move(next);
        at = current.get();
    }
    result = std::move(current);
    return 0;
}

}  // namespace orlix
