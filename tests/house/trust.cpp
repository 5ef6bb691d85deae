#include "house/trust.h"

#include <algorithm>
#include <regex>
#include <sstream>

namespace orlix::house {
namespace {

/// Words that have no place in the code of an update.
struct Rule {
    std::regex words;
    const char* why;
    std::vector<std::string_view> exceptIn;  ///< beginnings of paths
};

const std::vector<Rule>& rules() {
    static const std::vector<Rule> all{
        {std::regex(
             R"(\b(secure_|q)?getenv\b|\bqEnvironmentVariable\w*|\bQProcessEnvironment\b|\bQ?\w*::environment\b)"),
         "reads the environment",
         {}},
        // Children get it whole, unread.
        {std::regex(R"(\benviron\b)"), "reads the environment", {"platform/posix/posix_spawn.cpp"}},
        {std::regex(R"(\barguments\(\)|\bQCommandLineParser\b|\b_?NSGetArgv\b|/proc/self/)"),
         "reads the command line",
         {}},
        {std::regex(R"(\bargv\b)"),
         "reads the command line",
         {"main.cpp", "application.", "updater/main.cpp", "platform/posix/posix_spawn.cpp"}},
        {std::regex(R"(\bignoreSslErrors\b|\bsetPeerVerify\w+|\bVerifyNone\b|\bQueryPeer\b|\bsetProtocol\b)"),
         "weakens the proof of who a server is",
         {}},
        {std::regex(R"(\bsetCaCertificates\b|\baddCaCertificate\w*|\bauthorities\b)"),
         "chooses who vouches for a server",
         {"platform/qt/qt_https_transport."}},
        // The tests' own; a program takes the transport as it is.
        {std::regex(
             R"(\bQtHttpsTransport::Settings\b|\bQtHttpsTransport\b(\s+\w+)?\s*[({]|\bQtHttpsTransport>\([^)])"),
         "sets up the transport",
         {"platform/qt/qt_https_transport."}},
        {std::regex(R"(\b(UserVerified|SameOrigin|Manual)RedirectPolicy\b)"),
         "follows other redirections",
         {}},
        {std::regex(R"(\bfeedAddress\b|\bORLIX_UPDATE_HOST\b)"),
         "names the feed",
         {"update/update_service.", "application."}},
        {std::regex(R"(\bdiskImageTool\s*=(?!\s*DiskImages::systemTool;))"), "names a tool of its own", {}},
        {std::regex(R"(hdiutil)"), "names a tool of its own", {"update/disk_images.h"}},
        {std::regex(R"(\bQSettings\b)"), "reads settings", {}},
    };
    return all;
}

bool begins(std::string_view path, std::string_view beginning) {
    return path.substr(0, beginning.size()) == beginning;
}

/// The program answers questions that need no window, and hands its arguments to Qt.
bool isKnownArgument(const std::string& code) {
    static const std::regex known(
        R"rx(.*\bchar\*\* argv[,)].*|.*std::strcmp\(argv\[index\], "--(version|help)"\) == 0.*|.*\b(commandLineAnswer|application|runApplication)\(argc, argv\b.*)rx");
    return std::regex_match(code, known);
}

/// A program takes the feed that it was built with.
bool isKnownFeed(const std::string& code) {
    return code.find("= UpdateService::defaultFeedAddress();") != std::string::npos ||
           code.find("userFolders(), parts.feedAddress})") != std::string::npos;
}

bool readsOtherSetting(std::string_view path, const std::string& code) {
    static const std::regex read(R"(\bdefaults\.(boolean|string|data)\()");
    return begins(path, "update/") && std::regex_search(code, read) &&
           code.find("checkAtLaunchKey") == std::string::npos;
}

}  // namespace

bool isTrusted(std::string_view path) {
    static const std::vector<std::string_view> files{
        "platform/child",
        "platform/code_signature",
        "platform/linux/https_",
        "platform/linux/linux_code_signature",
        "platform/linux/loaded_",
        "platform/macos/mac_code_signature",
        "platform/posix/name_lookup",
        "platform/posix/posix_app",
        "platform/posix/posix_detached_starter",
        "platform/posix/posix_sp",
        "platform/posix/posix_tool_runner",
        "platform/posix/tool_app",
        "platform/qt/qt_https_transport",
    };
    if (path.size() > 4 && path.substr(path.size() - 4) == ".txt") return false;
    return path == "main.cpp" || begins(path, "application.") || begins(path, "update/") ||
           begins(path, "updater/") ||
           std::any_of(files.begin(), files.end(),
                       [path](std::string_view beginning) { return begins(path, beginning); });
}

std::vector<std::string> trustFaults(std::string_view path, std::string_view text) {
    std::vector<std::string> faults;
    if (!isTrusted(path)) return faults;
    std::istringstream lines{std::string(text)};
    std::string line;
    for (int number = 1; std::getline(lines, line); ++number) {
        // An address has two slashes too, but no space before them.
        std::string code = line.substr(0, line.find(" //"));
        if (begins(code, "//")) continue;
        const auto report = [&](const std::string& why) {
            faults.push_back(std::to_string(number) + ": " + why);
        };
        for (const Rule& rule : rules()) {
            const bool isExcepted =
                std::any_of(rule.exceptIn.begin(), rule.exceptIn.end(),
                            [path](std::string_view beginning) { return begins(path, beginning); });
            if (!isExcepted && std::regex_search(code, rule.words)) report(rule.why);
        }
        const auto says = [&code](const char* word) { return code.find(word) != std::string::npos; };
        if (path == "main.cpp" || begins(path, "application.")) {
            if (says("argv") && !isKnownArgument(code)) report("reads the command line");
            if (says("feedAddress") && !isKnownFeed(code)) report("names the feed");
        }
        if (readsOtherSetting(path, code)) report("reads settings");
    }
    return faults;
}

}  // namespace orlix::house
