#include "updater/bench.h"

#include <algorithm>
#include <cerrno>
#include <fstream>

#include "platform/sha256.h"
#include "support/disk_image_tool.h"
#include "updater/seal_signatures.h"

namespace orlix::test {

namespace fs = std::filesystem;

namespace {

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::size_t start = 0;
    while (start < text.size()) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        lines.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return lines;
}

}  // namespace

ToolRunner::Result SteppedTools::run(const std::string&, const std::vector<std::string>& words) {
    arguments.push_back(words);
    Result result;
    try {
        if (words.front() == "attach")
            result.exitStatus = steps_.run("attach", [&] { return attach(words.back(), result.output); });
        else
            result.exitStatus = steps_.run("detach", [&] { return detach(); });
    } catch (const fs::filesystem_error&) {
        result.exitStatus = 1;  // somebody swaps folders meanwhile
    }
    if (result.exitStatus != 0) result.errors = "hdiutil: Resource busy";
    return result;
}

int SteppedTools::attach(const std::string& imagePath, std::string& answer) const {
    const std::vector<std::string> lines = linesOf(readFile(imagePath));
    if (lines.size() < 2) return 1;
    const fs::path volume = lines[1];
    const fs::path mountPoint = mounts_ / volume.filename();
    if (!isAttached()) {
        fs::create_directories(mounts_);
        fs::rename(volume, mountPoint);
        writeFile(mounts_ / "attached", volume.string());
    }
    answer =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n<dict>\n"
        "<key>system-entities</key>\n<array>\n<dict>\n<key>dev-entry</key>\n<string>/dev/disk4s1</string>\n"
        "<key>mount-point</key>\n<string>" +
        mountPoint.string() + "</string>\n</dict>\n</array>\n</dict>\n</plist>\n";
    return 0;
}

int SteppedTools::detach() {
    if (refusalsToDetach-- > 0) return 16;
    if (!isAttached()) return 1;
    const fs::path volume = readFile(mounts_ / "attached");
    fs::rename(mounts_ / volume.filename(), volume);
    fs::remove(mounts_ / "attached");
    return 0;
}

SignatureFault SteppedSignatures::read(const std::string& path, const std::string& requirement,
                                       SignatureInfo& result) {
    paths.push_back(path);
    requirements.push_back(requirement);
    if (onRead) onRead(path);
    const int error = steps_.run("read signature", [&] {
        std::optional<Seal> seal;
        try {
            seal = readSeal(path);
        } catch (const fs::filesystem_error&) {
            return ENOENT;  // somebody swaps folders meanwhile
        }
        if (!seal) return EPERM;
        result = {seal->identifier, seal->team};
        return ignoresRequirement || meetsRequirement(*seal, requirement) ? 0 : EPERM;
    });
    return error == 0 ? fault : SignatureFault::invalid;
}

namespace {

class SteppedProcess : public WatchedProcess {
  public:
    SteppedProcess(SteppedProcesses& processes, Steps& steps) : processes_(processes), steps_(steps) {}

    std::string program() const override { return processes_.program; }
    bool waitForEnd(std::chrono::milliseconds limit) override {
        processes_.waits.push_back(limit);
        return steps_.run("waitForEnd", [&] { return processes_.hasEnded ? 0 : ETIMEDOUT; }) == 0;
    }

  private:
    SteppedProcesses& processes_;
    Steps& steps_;
};

}  // namespace

int SteppedProcesses::watch(pid_t id, std::unique_ptr<WatchedProcess>& result) {
    watched.push_back(id);
    return steps_.run("watch", [&] {
        result = std::make_unique<SteppedProcess>(*this, steps_);
        return 0;
    });
}

std::vector<pid_t> SteppedProcesses::processesFrom(const std::string& folder) {
    std::vector<pid_t> found;
    steps_.run("processesFrom", [&] {
        for (std::size_t index = 0; index < programs.size(); ++index) {
            if (programs[index].rfind(folder + '/', 0) == 0) found.push_back(static_cast<pid_t>(100 + index));
        }
        return 0;
    });
    return found;
}

bool SteppedStarter::start(const std::string& bundlePath, const std::string& program) {
    return steps_.run("start", [&] {
        started.push_back(bundlePath + '|' + program);
        std::ofstream(record_, std::ios::app) << started.back() << '\n';
        return 0;
    }) == 0;
}

Bench::Bench(Size size) {
    processes.program = target().string() + "/Contents/MacOS/" + sampleProgram;
    BundleSample sample;
    sample.isSmall = size == Size::small;
    makeBundle(target(), sample);
    sample.version = "1.1.0";
    sample.build = "2";
    makeBundle(newApplication(), sample);
    writeFile(image(), DiskImageTool::imageOf((folder / "Volume"), std::string(500, 'i')));
    writeFile(folder / "outside/file", "outside");
    fs::create_directories(folder / "support");
    settings.replacement = {BundleSample().identifier, "disk-image-tool", std::chrono::milliseconds(0)};
    settings.ownTeam = [] { return BundleSample().team; };
    settings.resultPlace = {
        (folder / "support").string(), {"com.dovu.velmorandix", "Updates"}, "last-install.json"};
    writePlan();
    rememberRest();
}

std::vector<std::pair<std::string, std::string>> Bench::planFields() const {
    Sha256 digest;
    const std::string bytes = readFile(image());
    digest.add(bytes.data(), bytes.size());
    return {{"dmgPath", image().string()},
            {"targetAppPath", target().string()},
            {"expectedBundleIdentifier", "com.dovu.velmorandix"},
            {"expectedTeamIdentifier", BundleSample().team},
            {"expectedVersion", "1.1.0"},
            {"expectedBuild", "2"},
            {"expectedSHA256", digest.finish()},
            {"statusPath", result().string()}};
}

void Bench::writePlan(const std::vector<std::pair<std::string, std::string>>& changes) const {
    std::string text;
    for (auto [name, value] : planFields()) {
        for (const auto& [changed, other] : changes) {
            if (changed == name) value = other;
        }
        text += (text.empty() ? "{\"" : ",\n\"") + name + "\": \"" + value + '"';
    }
    fs::remove(plan());
    writeFile(plan(), text + "}\n");
    fs::permissions(plan(), fs::perms(0600));
}

UpdateInstallation::Ending Bench::install() {
    UpdateInstallation installation({files, processes, tools, signatures, starter}, settings);
    return installation.run(plan().string(), 4711);
}

bool Bench::isOldInstalled() const {
    return readSeal(target()) &&
           readFile(target() / "Contents/MacOS" / sampleProgram).find("1.0.0") != std::string::npos;
}

bool Bench::isNewInstalled() const {
    return readSeal(target()) &&
           readFile(target() / "Contents/MacOS" / sampleProgram).find("1.1.0") != std::string::npos;
}

std::string Bench::message() const {
    const auto found = readResult();
    return found ? found->message.toStdString() : std::string();
}

std::optional<UpdateInstallResult> Bench::readResult() const {
    return UpdateInstallResult::fromJson(QByteArray::fromStdString(readFile(result())));
}

std::vector<std::string> Bench::leftovers() const {
    std::vector<std::string> names;
    std::error_code ignored;  // the folder may be away for a moment
    for (const auto& entry : fs::directory_iterator(target().parent_path(), ignored)) {
        if (entry.path() != target()) names.push_back(entry.path().filename().string());
    }
    return names;
}

bool Bench::isRestUntouched() const {
    return restDigest() == restBefore_;
}

std::uint64_t Bench::restDigest() const {
    std::uint64_t digest = treeDigest(folder / "outside") ^ (treeDigest(folder / "cache") * 3);
    // The volume lies at its mount point when nobody was left to detach it.
    const fs::path volume = tools.isAttached() ? folder / "mounts/Volume" : folder / "Volume";
    digest ^= treeDigest(volume) * 5;
    return digest;
}

}  // namespace orlix::test
