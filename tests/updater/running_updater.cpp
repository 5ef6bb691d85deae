#include "updater/running_updater.h"

#include <signal.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>

#include "updater/seal_signatures.h"

namespace orlix::test {
namespace {

namespace fs = std::filesystem;

constexpr useconds_t lookInterval = 2000;  // microseconds
constexpr int mostLooks = 30'000;          // a minute
constexpr int couldNotStart = 99;

[[noreturn]] void become(const RunningUpdater::Setting& setting) {
    if (setting.before && !setting.before()) _exit(couldNotStart);
    for (const std::string& variable : setting.environment)
        putenv(const_cast<char*>(variable.c_str()));
    std::vector<char*> words{const_cast<char*>(setting.program.c_str())};
    for (const std::string& argument : setting.arguments)
        words.push_back(const_cast<char*>(argument.c_str()));
    words.push_back(nullptr);
    execv(setting.program.c_str(), words.data());
    _exit(couldNotStart);
}

// Whether a process has a descriptor of another process.
bool watchesAProcess(const std::string& folder) {
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator(folder + "/fd", ignored)) {
        if (fs::read_symlink(entry.path(), ignored).string().find("pidfd") != std::string::npos) return true;
    }
    return false;
}

bool isAsleep(const std::string& folder) {
    const std::string status = readFile(folder + "/stat");
    return status.find(") S ") != std::string::npos;
}

}  // namespace

RunningUpdater::RunningUpdater(const Setting& setting) {
    id_ = fork();
    if (id_ < 0) throw std::runtime_error("no process for the updater");
    if (id_ == 0) become(setting);
}

RunningUpdater::~RunningUpdater() {
    if (status_) return;
    kill(id_, SIGKILL);
    waitpid(id_, nullptr, 0);
}

bool RunningUpdater::waitUntilItWaits() const {
    const std::string folder = "/proc/" + std::to_string(id_);
    while (!watchesAProcess(folder) || !isAsleep(folder)) {
        siginfo_t info{};
        if (waitid(P_PID, static_cast<id_t>(id_), &info, WEXITED | WNOHANG | WNOWAIT) != 0 ||
            info.si_pid != 0)
            return false;
        usleep(lookInterval);
    }
    return true;
}

int RunningUpdater::waitForEnd() {
    if (!status_) {
        int raw = 0;
        if (waitpid(id_, &raw, 0) != id_) throw std::runtime_error("the updater was lost");
        status_ = WIFEXITED(raw) ? WEXITSTATUS(raw) : 256 + WTERMSIG(raw);
    }
    return *status_;
}

UpdaterBench::UpdaterBench() {
    addRecorder(target(), "1.0.0");
    addRecorder(newApplication(), "1.1.0");
    fs::copy_file(ORLIX_SEALED_UPDATER, updater());
    sealProgram(updater(), "com.dovu.velmorandix.updater", BundleSample().team);
    rememberRest();
}

void UpdaterBench::addRecorder(const fs::path& bundle, const std::string& version) const {
    const std::string record = "'" + (folder / "start-record").string();
    writeFile(bundle / "Contents/MacOS" / sampleProgram,
              "#!/bin/sh\n{\necho \"version " + version +
                  "\"\necho \"program $0\"\necho \"arguments $#\"\n"
                  "echo \"folder $(pwd)\"\n[ \"$(ps -o sid= -p $$)\" -eq $$ ] && echo session own\n"
                  "[ -e /dev/fd/77 ] && echo descriptor inherited\n} > " +
                  record + ".part'\nmv " + record + ".part' " + record + "'\n");
    fs::copy_file("/bin/cat", bundle / "Contents/MacOS/cat");
    sealBundle(bundle, BundleSample().identifier, BundleSample().team);
}

RunningUpdater::Setting UpdaterBench::setting(pid_t parent) const {
    return {updater(),
            {"--plan", plan().string(), "--parent-pid", std::to_string(parent)},
            {"XDG_DATA_HOME=" + (folder / "support").string(),
             "ORLIX_TEST_IMAGE_TOOL=" + imageTool.path().string(),
             "ORLIX_TEST_PATIENCE_MS=" + std::to_string(patienceMs)},
            {}};
}

std::string UpdaterBench::startRecord() const {
    for (int look = 0; !hasStarted(); ++look) {
        if (look == mostLooks) return "nothing was started";
        usleep(lookInterval);
    }
    return readFile(folder / "start-record");
}

}  // namespace orlix::test
