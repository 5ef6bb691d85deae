#include "updater/update_installation.h"

#include <memory>
#include <utility>

#include "update/update_install_result.h"
#include "updater/bundle_identity.h"
#include "updater/paths.h"

namespace orlix {
namespace {

constexpr const char* stillRuns = "the application did not quit";

// "/a/B.app" of "/a/B.app/Contents/MacOS/B"; empty for a program elsewhere.
std::string bundleOf(const std::string& program) {
    static const std::string inside = ".app/Contents/MacOS/";
    const std::size_t at = program.rfind(inside);
    if (at == std::string::npos || !isPlainName(program.substr(at + inside.size()))) return {};
    return program.substr(0, at + 4);
}

}  // namespace

UpdateInstallation::UpdateInstallation(InstallationSeams seams, InstallationSettings settings)
    : seams_(seams), settings_(std::move(settings)) {}

UpdateInstallation::Ending UpdateInstallation::run(const std::string& planPath, pid_t parent) {
    // First of all, while its number still means the application most likely.
    std::unique_ptr<WatchedProcess> process;
    const int watching = seams_.processes.watch(parent, process);

    CheckedPlan plan;
    const PlanPolicy policy{settings_.replacement.bundleIdentifier, settings_.ownTeam(),
                            settings_.resultPlace.path()};
    Fault fault = readPlan(seams_.files, planPath, policy, plan);
    if (watching != 0 || !process->waitForEnd(settings_.replacement.patience)) {
        writeResult(plan, stillRuns);
        return Ending::leftAlone;
    }
    if (!fault) fault = ApplicationReplacement(seams_, settings_.replacement, plan).run();
    writeResult(plan, fault);
    relaunch(plan, process->program());
    return fault ? Ending::failed : Ending::installed;
}

bool UpdateInstallation::writeResult(const CheckedPlan& plan, const Fault& fault) {
    const std::string what = plan.version.empty() ? "The update" : "Velmorandix Orlix " + plan.version;
    const std::string message =
        fault ? what + " could not be installed: " + *fault + '.' : what + " was installed.";
    const UpdateInstallResult result{!fault, QString::fromStdString(message),
                                     QString::fromStdString(plan.version)};
    const std::string contents = result.toJson().toStdString();
    // Once more when the first attempt fails: what kept it may have been the very thing that went wrong
    // before.
    return writeResultFile(seams_.files, settings_.resultPlace, contents) ||
           writeResultFile(seams_.files, settings_.resultPlace, contents);
}

// The plan's application when it is the right one, else the one that was told to quit. The latter also gets a
// second chance by this.
void UpdateInstallation::relaunch(const CheckedPlan& plan, const std::string& parentProgram) {
    if (!plan.targetPath.empty() && start(plan.targetPath)) return;
    const std::string bundle = bundleOf(parentProgram);
    if (!bundle.empty()) start(bundle);
}

bool UpdateInstallation::start(const std::string& bundlePath) {
    UniqueFd bundle;
    BundleIdentity identity;
    if (openFolderPath(seams_.files, bundlePath, bundle) != 0 ||
        readBundleIdentity(seams_.files, bundle.get(), identity) ||
        identity.identifier != settings_.replacement.bundleIdentifier)
        return false;
    return seams_.starter.start(bundlePath, identity.program);
}

}  // namespace orlix
