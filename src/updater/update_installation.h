// One installation from a plan: waits for the application to end, has it replaced by the one on the disk
// image, says how it went, and starts what is then there. docs/updater.md has the steps as a table. One
// thread.
#pragma once

#include <functional>
#include <string>

#include "updater/application_replacement.h"
#include "updater/result_file.h"

namespace orlix {

struct InstallationSettings {
    ReplacementSettings replacement;
    /// The team that signed this program; empty when no team did, which refuses every plan. Asked for once
    /// the parent is watched, since it takes its time.
    std::function<std::string()> ownTeam;
    /// Where results are written, whatever a plan says.
    ResultPlace resultPlace;
};

class UpdateInstallation {
  public:
    enum class Ending {
        installed,
        failed,    ///< what was installed is there as before
        leftAlone  ///< the application did not quit: nothing was touched, nothing is started
    };

    UpdateInstallation(InstallationSeams seams, InstallationSettings settings);

    /// Installs what the plan at `planPath` names once the process `parent` has ended. Writes a result in
    /// every case.
    Ending run(const std::string& planPath, pid_t parent);

    /// Writes the result of an installation that was never begun.
    void refuse(const std::string& why) { writeResult({}, why); }

  private:
    bool writeResult(const CheckedPlan& plan, const Fault& fault);
    void relaunch(const CheckedPlan& plan, const std::string& parentProgram);
    bool start(const std::string& bundlePath);

    const InstallationSeams seams_;
    const InstallationSettings settings_;
};

}  // namespace orlix
