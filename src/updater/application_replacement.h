// Replaces the installed application by the one that a plan names, or leaves everything as it was. The
// application does not run by then. One object a plan, one thread.
#pragma once

#include <chrono>
#include <string>

#include "updater/checked_plan.h"
#include "updater/installation_seams.h"
#include "updater/private_folder.h"
#include "updater/verified_image.h"

namespace orlix {

struct ReplacementSettings {
    /// The only application that is ever replaced or installed.
    std::string bundleIdentifier;
    /// The path of the disk-image tool.
    std::string imageTool;
    /// How long a process may go on to run from inside the application, each time that matters.
    std::chrono::milliseconds patience = std::chrono::seconds(60);
};

class ApplicationReplacement {
  public:
    ApplicationReplacement(InstallationSeams seams, const ReplacementSettings& settings,
                           const CheckedPlan& plan);

    /// No fault: the new application is installed and checked, and the old one is gone. A fault: the old one
    /// is there as before.
    Fault run();

  private:
    Fault openTarget();
    Fault waitUntilUnused();
    Fault verifyImage();
    Fault makePrivateFolder();
    Fault copyFromImage();
    Fault copyApplication(const std::string& path);
    Fault verifyCopy();
    Fault exchange();
    Fault verify(int folder, const std::string& folderPath, FileStatus& status);
    bool isInUse(const std::string& name);
    void removeOld();

    const InstallationSeams seams_;
    const ReplacementSettings& settings_;
    const CheckedPlan& plan_;

    const std::string parentPath_;  // of the folder that the application is in
    const std::string name_;        // of the application in it
    UniqueFd parent_;
    FileStatus oldStatus_;
    FileStatus newStatus_;
    VerifiedImage image_;
    PrivateFolder private_;
};

}  // namespace orlix
