#include "updater/result_file.h"

#include <cerrno>

#include "updater/random_name.h"

namespace orlix {
namespace {

constexpr std::uint32_t folderMode = 0755;
constexpr std::uint32_t fileMode = 0600;

int openOrMake(FileOperations& files, int at, const std::string& name, UniqueFd& folder) {
    const int error = files.openFolder(at, name, folder);
    if (error != ENOENT) return error;
    const int making = files.makeFolder(at, name, folderMode);
    return making != 0 && making != EEXIST ? making : files.openFolder(at, name, folder);
}

int openPlace(FileOperations& files, const ResultPlace& place, UniqueFd& folder) {
    if (const int error = files.openKnownFolder(place.knownFolder, folder)) return error;
    for (const std::string& name : place.folders) {
        UniqueFd next;
        if (const int error = openOrMake(files, folder.get(), name, next)) return error;
        folder = std::move(next);
    }
    return 0;
}

int writeNew(FileOperations& files, int folder, const std::string& name, const std::string& contents) {
    UniqueFd file;
    if (const int error = files.createFile(folder, name, fileMode, file)) return error;
    if (const int error = files.write(file.get(), contents.data(), contents.size())) return error;
    return files.sync(file.get());
}

}  // namespace

std::string ResultPlace::path() const {
    std::string text = knownFolder;
    for (const std::string& folder : folders)
        text += '/' + folder;
    return text + '/' + name;
}

bool writeResultFile(FileOperations& files, const ResultPlace& place, const std::string& contents) {
    UniqueFd folder;
    if (openPlace(files, place, folder) != 0) return false;
    const std::string fresh = '.' + place.name + '-' + randomDigits();
    int error = writeNew(files, folder.get(), fresh, contents);
    if (error == 0) error = files.replace(folder.get(), fresh, folder.get(), place.name);
    if (error != 0) {
        if (error != EEXIST) files.removeFile(folder.get(), fresh);
        return false;
    }
    files.sync(folder.get());
    return true;
}

}  // namespace orlix
