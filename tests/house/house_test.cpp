// Rules about the repository itself rather than the program: scripts, paths, version, desktop file, licence.
#include <gmock/gmock.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using ::testing::StartsWith;

const fs::path root = ORLIX_SOURCE_DIR;

std::string readFile(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

struct CommandResult {
    std::string output;
    int status = -1;
};

// What a shell command writes to both its outputs, and its exit status.
CommandResult runCommand(const std::string& command) {
    CommandResult result;
    FILE* pipe = popen((command + " 2>&1").c_str(), "r");
    if (pipe == nullptr) return result;
    std::array<char, 4096> buffer{};
    while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), pipe))
        result.output.append(buffer.data(), count);
    const int status = pclose(pipe);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}

std::vector<fs::path> filesUnder(const fs::path& folder) {
    std::vector<fs::path> files;
    if (!fs::exists(folder)) return files;
    for (const auto& entry : fs::recursive_directory_iterator(folder))
        if (entry.is_regular_file()) files.push_back(entry.path());
    return files;
}

// All that is kept in the repository: every folder but the build trees and git's own.
std::vector<fs::path> ownFiles() {
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(root)) {
        const std::string name = entry.path().filename().string();
        if (name == ".git" || name == ".cache" || name == "build" || name == "compile_commands.json")
            continue;
        if (entry.is_regular_file()) files.push_back(entry.path());
        if (entry.is_directory())
            for (const fs::path& file : filesUnder(entry.path()))
                files.push_back(file);
    }
    return files;
}

bool isShellScript(const fs::path& path) {
    const std::string text = readFile(path);
    return text.starts_with("#!") && text.substr(0, text.find('\n')).find("bash") != std::string::npos;
}

TEST(Scripts, eachIsExecutableAndParses) {
    int scripts = 0;
    for (const fs::path& folder : {root / "scripts", root / ".ci", root / "packaging"}) {
        for (const fs::path& file : filesUnder(folder)) {
            if (!isShellScript(file)) continue;
            SCOPED_TRACE(file.string());
            ++scripts;
            EXPECT_EQ(access(file.c_str(), X_OK), 0) << "not executable";
            const CommandResult parsed = runCommand("bash -n '" + file.string() + "'");
            EXPECT_EQ(parsed.status, 0) << parsed.output;
        }
    }
    EXPECT_GE(scripts, 4);
    EXPECT_EQ(runCommand("bash -n '" + (root / "scripts/lib/common.sh").string() + "'").status, 0);
}

TEST(Scripts, everyFileOfTheFolderThatRunsHasAnInterpreter) {
    for (const fs::path& file : filesUnder(root / "scripts")) {
        if (access(file.c_str(), X_OK) != 0) continue;
        EXPECT_THAT(readFile(file), StartsWith("#!")) << file;
    }
}

TEST(Scripts, eachStopsAtItsFirstFailure) {
    for (const fs::path& folder : {root / "scripts", root / ".ci"}) {
        for (const fs::path& file : filesUnder(folder)) {
            if (!isShellScript(file)) continue;
            const std::string text = readFile(file);
            const bool strict = text.find("set -euo pipefail") != std::string::npos ||
                                text.find("/lib/common.sh\"") != std::string::npos;
            EXPECT_TRUE(strict) << file << " neither sets -euo pipefail nor sources lib/common.sh";
        }
    }
}

TEST(Scripts, integrationRunsTestsAndChecks) {
    const std::string text = readFile(root / ".ci/run");
    EXPECT_THAT(text, HasSubstr("\nscripts/test\n"));
    EXPECT_THAT(text, HasSubstr("\nscripts/check\n"));
}

TEST(Version, standsInOnePlaceOnly) {
    const std::string place = readFile(root / "cmake/version.cmake");
    EXPECT_THAT(place, HasSubstr("set(ORLIX_VERSION " ORLIX_VERSION ")"));
    EXPECT_THAT(place, HasSubstr("set(ORLIX_BUILD " ORLIX_BUILD ")"));
    for (const fs::path& file : ownFiles()) {
        const fs::path suffix = file.extension();
        const bool isSource = file.string().find("/src/") != std::string::npos ||
                              file.string().find("/packaging/") != std::string::npos ||
                              file.filename() == "CMakeLists.txt";
        if (!isSource || suffix == ".png" || suffix == ".icns") continue;
        EXPECT_EQ(readFile(file).find(ORLIX_VERSION), std::string::npos) << file << " repeats the version";
    }
}

TEST(Version, isWhatTheProgramAnswers) {
    const fs::path program = ORLIX_PROGRAM;
    ASSERT_TRUE(fs::exists(program)) << "it is built with everything else";
    const CommandResult answer = runCommand("QT_QPA_PLATFORM=offscreen '" + program.string() + "' --version");
    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(answer.output, HasSubstr(ORLIX_VERSION));
    EXPECT_THAT(answer.output, HasSubstr(ORLIX_BUILD));
}

TEST(Paths, noFileNamesAFolderOfThisMachine) {
    const std::regex home("/(home|Users)/[A-Za-z0-9]");
    for (const fs::path& file : ownFiles()) {
        if (file.extension() == ".png" || file.extension() == ".wav") continue;
        if (file.string().find("/tests/") != std::string::npos) continue;  // invented homes are fine there
        const std::string text = readFile(file);
        EXPECT_EQ(text.find(root.string() + "/"), std::string::npos) << file;
        EXPECT_FALSE(std::regex_search(text, home)) << file;
    }
}

TEST(Paths, fileNamesAreSnakeCase) {
    const std::regex name("[a-z0-9_]+\\.(h|cpp|mm)|CMakeLists\\.txt");
    for (const char* folder : {"src", "tests", "benchmarks", "fuzz"}) {
        for (const fs::path& file : filesUnder(root / folder)) {
            const fs::path suffix = file.extension();
            if (suffix != ".h" && suffix != ".cpp" && suffix != ".mm") continue;
            EXPECT_TRUE(std::regex_match(file.filename().string(), name)) << file;
        }
    }
}

TEST(DesktopFile, hasWhatALauncherReads) {
    std::map<std::string, std::string> entries;
    std::ifstream stream(root / "packaging/linux/velmorandix-orlix.desktop");
    std::string line;
    ASSERT_TRUE(std::getline(stream, line));
    EXPECT_EQ(line, "[Desktop Entry]");
    while (std::getline(stream, line)) {
        const auto equals = line.find('=');
        ASSERT_NE(equals, std::string::npos) << line;
        EXPECT_TRUE(entries.emplace(line.substr(0, equals), line.substr(equals + 1)).second)
            << "twice: " << line;
    }
    EXPECT_EQ(entries["Type"], "Application");
    EXPECT_EQ(entries["Name"], "Velmorandix Orlix");
    EXPECT_EQ(entries["Exec"], "velmorandix-orlix");
    EXPECT_EQ(entries["Icon"], "velmorandix-orlix");
    EXPECT_EQ(entries["Terminal"], "false");
    EXPECT_THAT(entries["Categories"], HasSubstr("Game;"));
    EXPECT_TRUE(fs::exists(root / "packaging/linux/icons/velmorandix-orlix.svg"));
    for (const char* size : {"16", "32", "48", "64", "128", "256", "512"}) {
        const std::string name = std::string("packaging/linux/icons/velmorandix-orlix-") + size + ".png";
        EXPECT_THAT(readFile(root / name), StartsWith("\x89PNG")) << name;
    }
}

TEST(Bundle, carriesIdentifierAndVersionFromTheOnePlace) {
    const std::string plist = readFile(root / "packaging/macos/Info.plist.in");
    for (const char* line : {"<key>CFBundleIdentifier</key>\n\t<string>${ORLIX_BUNDLE_IDENTIFIER}</string>",
                             "<key>CFBundleShortVersionString</key>\n\t<string>${ORLIX_VERSION}</string>",
                             "<key>CFBundleVersion</key>\n\t<string>${ORLIX_BUILD}</string>"})
        EXPECT_THAT(plist, HasSubstr(line));
    EXPECT_THAT(readFile(root / "cmake/version.cmake"),
                HasSubstr("set(ORLIX_BUNDLE_IDENTIFIER com.dovu.velmorandix)"));
}

TEST(Licence, isThere) {
    EXPECT_THAT(readFile(root / "LICENSE"), StartsWith("MIT License\n"));
}

}  // namespace
