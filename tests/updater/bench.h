// All that an installation needs, in a folder of the test's own, with every call of a seam a numbered step:
//   Applications/Velmorandix Orlix.app   version 1.0.0, build 1
//   Volume/Velmorandix Orlix.app         version 1.1.0, build 2, on the image
//   cache/                               the plan and the disk image
//   support/                             where results go
//   outside/                             what nobody may touch
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "support/temporary_folder.h"
#include "update/update_install_result.h"
#include "updater/stepped_files.h"
#include "updater/test_bundle.h"
#include "updater/update_installation.h"

namespace orlix::test {

/// Mounts an image by moving the folder that it names, in this process; see disk_image_tool.cpp.
class SteppedTools : public ToolRunner {
  public:
    SteppedTools(Steps& steps, std::filesystem::path mounts) : steps_(steps), mounts_(std::move(mounts)) {}

    int refusalsToDetach = 0;                         ///< so often it is busy
    std::vector<std::vector<std::string>> arguments;  ///< of each call

    Result run(const std::string& path, const std::vector<std::string>& words) override;
    void hurry(std::chrono::milliseconds) override {}
    bool isAttached() const { return std::filesystem::exists(mounts_ / "attached"); }

  private:
    int attach(const std::string& imagePath, std::string& answer) const;
    int detach();

    Steps& steps_;
    const std::filesystem::path mounts_;
};

/// Takes the seal of a sample for its signature, and the requirement as what the seal has to name.
class SteppedSignatures : public CodeSignatureReader {
  public:
    explicit SteppedSignatures(Steps& steps) : steps_(steps) {}

    std::vector<std::string> paths;         ///< that were read
    std::vector<std::string> requirements;  ///< with which
    std::function<void(const std::string& path)> onRead;
    bool ignoresRequirement = false;
    SignatureFault fault = SignatureFault::none;  ///< told in spite of everything

    SignatureFault read(const std::string& path, const std::string& requirement,
                        SignatureInfo& result) override;

  private:
    Steps& steps_;
};

/// One watched process that ends when it is waited for, unless told otherwise, and none inside the
/// application.
class SteppedProcesses : public ProcessWatcher {
  public:
    explicit SteppedProcesses(Steps& steps) : steps_(steps) {}

    bool hasEnded = true;
    std::string program;                ///< of the watched process
    std::vector<std::string> programs;  ///< that run somewhere
    std::vector<pid_t> watched;
    std::vector<std::chrono::milliseconds> waits;

    int watch(pid_t id, std::unique_ptr<WatchedProcess>& result) override;
    std::vector<pid_t> processesFrom(const std::string& folder) override;

  private:
    Steps& steps_;
};

/// Writes down what it starts, in memory and in a file that outlives the process.
class SteppedStarter : public ApplicationStarter {
  public:
    SteppedStarter(Steps& steps, std::filesystem::path record) : steps_(steps), record_(std::move(record)) {}

    std::vector<std::string> started;  ///< "bundle path|program"

    bool start(const std::string& bundlePath, const std::string& program) override;

  private:
    Steps& steps_;
    const std::filesystem::path record_;
};

class Bench {
  public:
    enum class Size { usual, small };  ///< of the two applications

    explicit Bench(Size size = Size::usual);

    std::filesystem::path target() const { return folder / "Applications" / "Velmorandix Orlix.app"; }
    std::filesystem::path newApplication() const { return folder / "Volume" / "Velmorandix Orlix.app"; }
    std::filesystem::path image() const { return folder / "cache" / "update.dmg"; }
    std::filesystem::path plan() const { return folder / "cache" / "install-plan.json"; }
    std::filesystem::path result() const {
        return folder / "support/com.dovu.velmorandix/Updates/last-install.json";
    }

    /// The plan's fields as they are to be written.
    std::vector<std::pair<std::string, std::string>> planFields() const;
    /// Writes the plan, with other values for some fields.
    void writePlan(const std::vector<std::pair<std::string, std::string>>& changes = {}) const;

    UpdateInstallation::Ending install();

    bool isOldInstalled() const;
    bool isNewInstalled() const;
    std::optional<UpdateInstallResult> readResult() const;
    /// The result's message; empty without a result.
    std::string message() const;
    /// What lies in the folder with the application, besides it.
    std::vector<std::string> leftovers() const;
    /// Takes what lies in the other folders now for what has to stay.
    void rememberRest() { restBefore_ = restDigest(); }
    /// True when nothing has changed outside the folders that an installation may write to.
    bool isRestUntouched() const;

    TemporaryFolder folder;
    Steps steps;
    SteppedFiles files{steps};
    SteppedTools tools{steps, folder / "mounts"};
    SteppedSignatures signatures{steps};
    SteppedProcesses processes{steps};
    SteppedStarter starter{steps, folder / "started"};
    /// May be changed before `install`.
    InstallationSettings settings;

  private:
    std::uint64_t restDigest() const;
    std::uint64_t restBefore_ = 0;
};

}  // namespace orlix::test
