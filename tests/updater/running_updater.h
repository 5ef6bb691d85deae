// The updater as a process: started the way the application starts it, over the folders of a bench. What it
// starts writes down how it was started. Linux only.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "support/disk_image_tool.h"
#include "updater/bench.h"

namespace orlix::test {

/// One run of the updater. The destructor leaves no process behind.
class RunningUpdater {
  public:
    struct Setting {
        std::filesystem::path program;
        std::vector<std::string> arguments;
        std::vector<std::string> environment;  ///< "NAME=value", on top of the own
        /// Runs in the new process before the program does; false ends it with status 99.
        std::function<bool()> before;
    };

    explicit RunningUpdater(const Setting& setting);
    ~RunningUpdater();
    RunningUpdater(const RunningUpdater&) = delete;
    RunningUpdater& operator=(const RunningUpdater&) = delete;

    pid_t id() const { return id_; }
    /// Returns once it waits for its parent; false when it has ended before.
    bool waitUntilItWaits() const;
    /// The exit status, or 256 and the signal that ended it.
    int waitForEnd();

  private:
    pid_t id_ = -1;
    std::optional<int> status_;
};

/// A bench whose applications write down their starts, with the updater staged beside the plan.
class UpdaterBench : public Bench {
  public:
    UpdaterBench();

    std::filesystem::path updater() const { return folder / "cache/VelmorandixOrlixUpdater"; }
    /// A program that runs from inside the installed application: a copy of "cat" by this name in
    /// Contents/MacOS.
    std::filesystem::path innerProgram() const { return target() / "Contents/MacOS/cat"; }

    /// The usual run, after the process `parent`. Tests change parts of it.
    RunningUpdater::Setting setting(pid_t parent) const;
    /// What the started application wrote down, as "name value" lines; waits for it, a minute at
    /// most.
    std::string startRecord() const;
    bool hasStarted() const { return std::filesystem::exists(folder / "start-record"); }

    DiskImageTool imageTool{{}, folder.path()};
    int patienceMs = 60'000;

  private:
    void addRecorder(const std::filesystem::path& bundle, const std::string& version) const;
};

}  // namespace orlix::test
