#include "updater/application_replacement.h"

#include <cerrno>
#include <thread>
#include <utility>

#include "update/version_order.h"
#include "updater/bundle_identity.h"
#include "updater/bundle_verification.h"
#include "updater/image_attachment.h"
#include "updater/name_exchange.h"
#include "updater/paths.h"
#include "updater/tree_copy.h"

namespace orlix {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds lookInterval{100};
constexpr std::uint32_t ownerOnly = 0700;

bool isNewer(const CheckedPlan& plan, const BundleIdentity& installed) {
    return isNewerRelease(QString::fromStdString(plan.version), QString::fromStdString(plan.build),
                          QString::fromStdString(installed.version), QString::fromStdString(installed.build));
}

}  // namespace

ApplicationReplacement::ApplicationReplacement(InstallationSeams seams, const ReplacementSettings& settings,
                                               const CheckedPlan& plan)
    : seams_(seams),
      settings_(settings),
      plan_(plan),
      parentPath_(folderOf(plan.targetPath)),
      name_(nameOf(plan.targetPath)),
      image_(seams.files),
      private_(seams.files) {}

Fault ApplicationReplacement::run() {
    using Step = Fault (ApplicationReplacement::*)();
    for (const Step step : {&ApplicationReplacement::openTarget, &ApplicationReplacement::waitUntilUnused,
                            &ApplicationReplacement::verifyImage, &ApplicationReplacement::makePrivateFolder,
                            &ApplicationReplacement::copyFromImage, &ApplicationReplacement::verifyCopy,
                            &ApplicationReplacement::waitUntilUnused, &ApplicationReplacement::exchange}) {
        if (Fault fault = (this->*step)()) return fault;
    }
    removeOld();
    return std::nullopt;
}

Fault ApplicationReplacement::openTarget() {
    static const std::string what = "the installed application could not be opened";
    FileOperations& files = seams_.files;
    if (const int error = openFolderPath(files, parentPath_, parent_)) return faultOf(what, error);
    if (const int error = files.lock(parent_.get()))
        return error == EWOULDBLOCK ? Fault("another update is being installed") : faultOf(what, error);
    UniqueFd target;
    FileStatus parentStatus;
    if (const int error = files.openFolder(parent_.get(), name_, target)) return faultOf(what, error);
    if (const int error = files.status(target.get(), oldStatus_)) return faultOf(what, error);
    if (const int error = files.status(parent_.get(), parentStatus)) return faultOf(what, error);
    if (oldStatus_.device != parentStatus.device) return "the installed application is a volume of its own";

    BundleIdentity installed;
    if (Fault fault = readBundleIdentity(files, target.get(), installed)) return fault;
    if (installed.identifier != settings_.bundleIdentifier)
        return "another application is installed at its place";
    if (!isNewer(plan_, installed)) return "the installed version is not older";
    return std::nullopt;
}

Fault ApplicationReplacement::waitUntilUnused() {
    const auto deadline = Clock::now() + settings_.patience;
    while (isInUse(name_)) {
        if (Clock::now() >= deadline) return "a program of the installed application is still running";
        std::this_thread::sleep_for(lookInterval);
    }
    return std::nullopt;
}

bool ApplicationReplacement::isInUse(const std::string& name) {
    return !seams_.processes.processesFrom(parentPath_ + '/' + name).empty();
}

Fault ApplicationReplacement::verifyImage() {
    return image_.open(plan_.folder.get(), plan_.imageName, plan_.digest);
}

Fault ApplicationReplacement::makePrivateFolder() {
    PrivateFolder::removeLeftovers(seams_.files, parent_.get(),
                                   [this](const std::string& name) { return isInUse(name); });
    return faultOf("no folder could be made beside the installed application", private_.make(parent_.get()));
}

Fault ApplicationReplacement::copyFromImage() {
    static const char* const changed = "the disk image changed after it was verified";
    ImageAttachment attachment(seams_.tools, settings_.imageTool);
    // The tool takes a path; what it opened is what was verified when nothing has changed before and after.
    if (!image_.isUnchanged(plan_.folder.get(), plan_.imageName)) return changed;
    if (Fault fault = attachment.attach(plan_.folderPath + '/' + plan_.imageName)) return fault;
    if (!image_.isUnchanged(plan_.folder.get(), plan_.imageName)) return changed;
    std::string path;
    if (Fault fault = attachment.findApplication(settings_.bundleIdentifier, path)) return fault;
    return copyApplication(path);
}

Fault ApplicationReplacement::copyApplication(const std::string& path) {
    FileOperations& files = seams_.files;
    UniqueFd source;
    UniqueFd copy;
    if (const int error = openFolderPath(files, path, source))
        return faultOf("the application on the disk image could not be opened", error);
    int error = files.makeFolder(private_.folder(), name_, ownerOnly);
    if (error == 0) error = files.openFolder(private_.folder(), name_, copy);
    if (error != 0) return faultOf("the application could not be copied", error);
    return copyTree(files, source.get(), copy.get());
}

Fault ApplicationReplacement::verify(int folder, const std::string& folderPath, FileStatus& status) {
    return verifyBundle(seams_.files, seams_.signatures, folder, folderPath, name_,
                        {settings_.bundleIdentifier, plan_.version, plan_.build, plan_.team}, status);
}

Fault ApplicationReplacement::verifyCopy() {
    return verify(private_.folder(), parentPath_ + '/' + private_.name(), newStatus_);
}

Fault ApplicationReplacement::exchange() {
    FileOperations& files = seams_.files;
    NameExchange names(files, parent_.get(), private_.folder(), name_);
    const auto isInPlace = [&](const FileStatus& wanted) {
        FileStatus status;
        return files.statusOf(parent_.get(), name_, status) == 0 && status.isSameFile(wanted);
    };
    if (!isInPlace(oldStatus_)) return "the installed application was moved meanwhile";
    Fault fault = faultOf("the application could not be replaced", names.exchange());
    if (!fault) {
        FileStatus status;
        fault = verify(parent_.get(), parentPath_, status);
        if (!fault && !status.isSameFile(newStatus_)) fault = "another application got in its place";
        if (fault) names.exchangeBack();
    }
    // Never remove what may be the only complete application.
    if (fault && !isInPlace(oldStatus_)) private_.keep();
    return fault;
}

void ApplicationReplacement::removeOld() {
    // Something may have been started in the last moment. A later run removes what stays.
    if (isInUse(private_.name()))
        private_.keep();
    else
        private_.remove();
}

}  // namespace orlix
