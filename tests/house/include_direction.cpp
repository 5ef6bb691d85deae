#include "house/include_direction.h"

#include <algorithm>
#include <map>
#include <optional>
#include <regex>
#include <set>
#include <sstream>

namespace orlix::house {

namespace {

// What each folder may include besides itself. A folder that is missing here may include nothing.
const std::map<std::string, std::set<std::string>, std::less<>> allowedFolders{
    {"core", {}},
    {"records", {"core", "platform"}},
    {"platform", {}},
    {"engine", {"core", "platform"}},
    {"game", {"core", "records", "engine", "platform"}},
    {"automatch", {"core", "records", "engine", "game", "platform"}},
    {"update", {"platform"}},
    {"updater", {"update", "platform"}},
    {"l10n", {"platform"}},
    {"ui", {"core", "records", "engine", "game", "automatch", "l10n", "update", "platform"}},
};

// Single headers that a folder may include beyond that: the sounds that a game asks for are played by l10n.
const std::map<std::string, std::set<std::string>, std::less<>> allowedHeaders{
    {"l10n", {"game/game_sounds.h"}},
};

std::string folderOf(std::string_view path) {
    const auto slash = path.find('/');
    return slash == std::string_view::npos ? std::string() : std::string(path.substr(0, slash));
}

bool isStandardOnly(std::string_view path) {
    return folderOf(path) == "core" || path.starts_with("records/pgn_game.");
}

// What builds everything and hands it on.
bool isCompositionRoot(std::string_view path) {
    return path == "main.cpp" || path == "application.cpp" || path == "application.h";
}

bool mayUseSharedObjects(std::string_view path) {
    return isCompositionRoot(path) || folderOf(path) == "ui";
}

// The C++ standard library's headers have neither a suffix, a folder nor an upper-case letter.
bool isStandardHeader(const std::string& header) {
    return std::all_of(header.begin(), header.end(),
                       [](char c) { return (c >= 'a' && c <= 'z') || c == '_'; });
}

std::optional<std::string> includeFault(std::string_view path, const std::string& header, bool isQuoted) {
    const std::string from = folderOf(path);
    if (isStandardOnly(path) && !isQuoted && !isStandardHeader(header))
        return "standard C++ only, but includes <" + header + ">";
    if (!isQuoted || isCompositionRoot(path)) return std::nullopt;

    const std::string to = folderOf(header);
    if (header.starts_with("moc_") || header.ends_with(".moc")) return std::nullopt;  // generated
    if (allowedFolders.find(to) == allowedFolders.end())
        return "includes \"" + header + "\", which is not written from src/";
    if (isStandardOnly(path) && to != "core" && header != "records/pgn_game.h")
        return "standard C++ only, but includes \"" + header + "\"";
    if (to == from) return std::nullopt;
    const auto folders = allowedFolders.find(from);
    if (folders != allowedFolders.end() && folders->second.count(to) != 0) return std::nullopt;
    const auto headers = allowedHeaders.find(from);
    if (headers != allowedHeaders.end() && headers->second.count(header) != 0) return std::nullopt;
    return "folder \"" + from + "\" must not include \"" + header + "\"";
}

}  // namespace

std::vector<std::string> directionFaults(std::string_view path, std::string_view text) {
    static const std::regex include(R"rx(^\s*#\s*(?:include|import)\s*(["<])([^">]+)[">].*)rx");
    static const std::regex sharedUse(R"rx((\w+)::shared\(\))rx");
    static const std::regex sharedDefinition(R"rx(^(\w+)& \1::shared\(\).*)rx");

    std::vector<std::string> faults;
    std::istringstream lines{std::string(text)};
    std::string line;
    for (int number = 1; std::getline(lines, line); ++number) {
        const auto report = [&](const std::string& why) {
            faults.push_back(std::to_string(number) + ": " + why);
        };
        std::smatch match;
        if (std::regex_match(line, match, include)) {
            if (const auto fault = includeFault(path, match[2], match[1] == "\"")) report(*fault);
        } else if (!mayUseSharedObjects(path)) {
            const std::string code = line.substr(0, line.find("//"));
            if (std::regex_search(code, match, sharedUse) && !std::regex_match(code, sharedDefinition))
                report("only views and application.cpp may say " + match.str());
        }
    }
    return faults;
}

}  // namespace orlix::house
