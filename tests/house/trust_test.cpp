#include "house/trust.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>

namespace orlix::house {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

struct Sample {
    const char* name;
    const char* path;
    const char* text;
};

std::string contentsOf(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

TEST(Trust, ofWhatIsChosenFromOutsideIsReported) {
    const std::vector<Sample> wrong{
        {"a host from the environment", "update/update_service.cpp",
         "const QString host = qEnvironmentVariable(\"ORLIX_HOST\");"},
        {"the same by another function", "update/update_service.cpp", "auto host = qgetenv(\"ORLIX_HOST\");"},
        {"and by the C library's", "update/update_places.cpp", "const char* home = std::getenv(\"HOME\");"},
        {"its careful twin", "updater/paths.cpp", "secure_getenv(\"TOOL\")"},
        {"the whole environment", "updater/main.cpp", "extern char** environ;"},
        {"Qt's view of it", "update/disk_images.cpp",
         "QProcessEnvironment::systemEnvironment().value(QStringLiteral(\"TOOL\"))"},
        {"in the transport", "platform/qt/qt_https_transport.cpp",
         "if (qEnvironmentVariableIsSet(\"INSECURE\"))"},
        {"in the module's loader", "platform/linux/loaded_https_transport.cpp", "getenv(\"ORLIX_MODULE\")"},
        {"in the runner of tools", "platform/posix/posix_tool_runner.cpp", "getenv(\"PATH\")"},
        {"in main", "main.cpp", "    const auto tool = qEnvironmentVariable(\"DISK_TOOL\");"},
        {"another option", "main.cpp",
         "if (std::strcmp(argv[index], \"--feed\") == 0) feed = argv[index + 1];"},
        {"an argument by its place", "main.cpp", "UpdateService service(argv[1]);"},
        {"the same in the program's body", "application.cpp", "parts.diskImageTool = argv[1];"},
        {"another feed in the program's body", "application.h", "QString feedAddress = elsewhere;"},
        {"another tool", "main.cpp", "    parts.diskImageTool = \"/tmp/tool\";"},
        {"a transport with settings, made elsewhere", "main.cpp",
         "parts.transport = std::make_unique<QtHttpsTransport>(settings);"},
        {"Qt's list of arguments", "main.cpp", "const auto all = QCoreApplication::arguments();"},
        {"a parser of arguments", "update/update_service.cpp", "QCommandLineParser parser;"},
        {"arguments from the system", "update/update_service.cpp", "QFile file(\"/proc/self/cmdline\");"},
        {"arguments in the updater's insides", "updater/updater_program.cpp", "int start(char** argv);"},
        {"errors that do not matter", "platform/qt/qt_https_transport.cpp", "reply->ignoreSslErrors();"},
        {"peers that nobody asks", "platform/qt/qt_https_transport.cpp",
         "tls.setPeerVerifyMode(QSslSocket::VerifyNone);"},
        {"authorities in the program", "main.cpp", "settings.authorities = ours;"},
        {"a transport with settings", "main.cpp", "QtHttpsTransport transport(settings);"},
        {"the same in braces", "main.cpp", "QtHttpsTransport transport{QtHttpsTransport::Settings{ours}};"},
        {"the same in the module", "platform/linux/https_module.cpp",
         "return new QtHttpsTransport(settings);"},
        {"redirections to anywhere", "platform/qt/qt_https_transport.cpp",
         "QNetworkRequest::UserVerifiedRedirectPolicy"},
        {"another feed", "main.cpp",
         "platform.feedAddress = QStringLiteral(\"https://elsewhere.example/\");"},
        {"the host beside its place", "update/update_places.cpp",
         "return QStringLiteral(ORLIX_UPDATE_HOST);"},
        {"a tool of one's own in main", "main.cpp", "const char* tool = \"/tmp/hdiutil\";"},
        {"a tool that is found by its name", "update/disk_images.cpp", "run(\"hdiutil\", arguments);"},
        {"a host from the settings", "update/update_service.cpp",
         "platform_.defaults.string(QStringLiteral(\"feed\"))"},
        {"settings past the store", "update/update_service.cpp", "QSettings settings;"},
    };
    for (const Sample& sample : wrong) {
        EXPECT_THAT(trustFaults(sample.path, sample.text), testing::Not(IsEmpty())) << sample.name;
    }
}

TEST(Trust, isNotDoubtedByWhatDoesNotTouchIt) {
    const std::vector<Sample> fine{
        {"the parts as they are", "main.cpp", "    return runApplication(argc, argv, systemParts);"},
        {"the transport as it is, made elsewhere", "main.cpp",
         "    parts.transport = std::make_unique<QtHttpsTransport>();"},
        {"the system's tool", "main.cpp", "    parts.diskImageTool = DiskImages::systemTool;"},
        {"the feed of the build", "application.h",
         "    QString feedAddress = UpdateService::defaultFeedAddress();"},
        {"the known options", "application.cpp",
         "        if (std::strcmp(argv[index], \"--help\") == 0) return helpText;"},
        {"arguments for Qt", "main.cpp", "    QApplication application(argc, argv);"},
        {"the transport as it is", "main.cpp", "    QtHttpsTransport transport;"},
        {"the tool's place", "update/disk_images.h",
         "    static constexpr const char* systemTool = \"/usr/bin/hdiutil\";"},
        {"the updater's own arguments", "updater/main.cpp", "int main(int argc, char** argv) {"},
        {"the switch of the check at launch", "update/update_service.cpp",
         "return platform_.defaults.boolean(QString::fromLatin1(checkAtLaunchKey)).value_or(true);"},
        {"a comment", "update/update_service.cpp", "// nobody calls getenv here"},
        {"a comment behind code", "update/update_service.cpp", "int a;  // no getenv"},
        {"another part of the program", "platform/linux/canberra_output.cpp", "qEnvironmentVariable(\"X\")"},
    };
    for (const Sample& sample : fine)
        EXPECT_THAT(trustFaults(sample.path, sample.text), IsEmpty()) << sample.name;
}

TEST(Trust, faultsCarryTheirLine) {
    EXPECT_THAT(trustFaults("update/a.cpp", "\n\ngetenv(\"A\");\n"), ElementsAre("3: reads the environment"));
}

TEST(Trust, ofTheSourcesIsFixed) {
    const fs::path root = fs::path(ORLIX_SOURCE_DIR) / "src";
    int files = 0;
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
        const std::string path = entry.path().lexically_relative(root).generic_string();
        if (!entry.is_regular_file() || !isTrusted(path)) continue;
        ++files;
        EXPECT_THAT(trustFaults(path, contentsOf(entry.path())), IsEmpty()) << path;
    }
    EXPECT_GT(files, 80);
}

TEST(Trust, theHostIsASettingOfTheBuildAndByDefaultNobodys) {
    const std::string text = contentsOf(fs::path(ORLIX_SOURCE_DIR) / "src/update/CMakeLists.txt");
    std::smatch match;
    ASSERT_TRUE(
        std::regex_search(text, match, std::regex(R"rx(set\(ORLIX_UPDATE_HOST "([^"]+)" CACHE STRING)rx")));
    EXPECT_THAT(match[1].str(), testing::EndsWith(".invalid"));
    const std::string service = contentsOf(fs::path(ORLIX_SOURCE_DIR) / "src/update/update_service.cpp");
    EXPECT_THAT(service, HasSubstr("\"https://\" ORLIX_UPDATE_HOST \"/updates/Velmorandix/appcast.json\""));
}

}  // namespace
}  // namespace orlix::house
