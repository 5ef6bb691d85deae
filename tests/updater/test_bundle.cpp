#include "updater/test_bundle.h"

#include <sys/stat.h>

#include <algorithm>
#include <vector>

#include "support/temporary_folder.h"

namespace orlix::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* sealPath = "Contents/_CodeSignature/CodeResources";

std::string propertyList(const BundleSample& sample) {
    const auto property = [](const char* key, const std::string& value) {
        return "\t<key>" + std::string(key) + "</key>\n\t<string>" + value + "</string>\n";
    };
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
           "<plist version=\"1.0\">\n<dict>\n" +
           property("CFBundleIdentifier", sample.identifier) +
           property("CFBundleShortVersionString", sample.version) +
           property("CFBundleVersion", sample.build) + property("CFBundleExecutable", sampleProgram) +
           property("CFBundlePackageType", "APPL") + "</dict>\n</plist>\n";
}

void add(std::uint64_t& digest, const std::string& text) {
    for (const char c : text + '\0') {
        digest ^= static_cast<unsigned char>(c);
        digest *= 0x100000001b3;
    }
}

void addParts(const fs::path& contents, const BundleSample& sample) {
    const fs::path framework = contents / "Frameworks/Chess.framework";
    writeFile(framework / "Versions/A/Chess", "code of " + sample.version);
    fs::create_directory_symlink("A", framework / "Versions/Current");
    fs::create_symlink("Versions/Current/Chess", framework / "Chess");
    writeFile(contents / "Resources/board.txt", std::string(3000, 'b') + sample.version);
    fs::create_directories(contents / "Resources/empty");
}

}  // namespace

void makeBundle(const fs::path& path, const BundleSample& sample) {
    const fs::path contents = path / "Contents";
    writeFile(contents / "Info.plist", propertyList(sample));
    writeFile(contents / "MacOS" / sampleProgram, "#!/bin/sh\n# " + sample.version + "\n");
    fs::permissions(contents / "MacOS" / sampleProgram, fs::perms(0755));
    fs::create_symlink("MacOS", contents / "Programs");
    if (!sample.isSmall) addParts(contents, sample);
    sealBundle(path, sample.identifier, sample.team);
}

void sealBundle(const fs::path& path, const std::string& identifier, const std::string& team) {
    fs::create_directories((path / sealPath).parent_path());
    fs::remove(path / sealPath);
    const std::uint64_t digest = treeDigest(path, path / sealPath);
    writeFile(path / sealPath, identifier + '\n' + team + '\n' + std::to_string(digest) + '\n');
}

std::optional<Seal> readSeal(const fs::path& path) {
    std::ifstream stream(path / sealPath);
    Seal seal;
    std::string digest;
    if (!std::getline(stream, seal.identifier) || !std::getline(stream, seal.team) || !(stream >> digest) ||
        digest != std::to_string(treeDigest(path, path / sealPath)))
        return std::nullopt;
    return seal;
}

std::uint64_t treeDigest(const fs::path& path, const fs::path& without) {
    std::vector<fs::path> entries;
    for (const auto& entry : fs::recursive_directory_iterator(path))
        entries.push_back(entry.path());
    std::sort(entries.begin(), entries.end());
    std::uint64_t digest = 0xcbf29ce484222325;
    for (const fs::path& entry : entries) {
        if (entry == without) continue;
        struct stat status {};
        if (lstat(entry.c_str(), &status) != 0) continue;
        add(digest, entry.lexically_relative(path).string());
        if (S_ISLNK(status.st_mode)) {
            add(digest, "link to " + fs::read_symlink(entry).string());
        } else {
            add(digest, std::to_string(status.st_mode & (S_IFMT | 0755U)));
            if (S_ISREG(status.st_mode)) add(digest, readFile(entry));
        }
    }
    return digest;
}

}  // namespace orlix::test
