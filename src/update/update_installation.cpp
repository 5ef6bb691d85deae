// The hand-off to the program that installs: staged next to the verified image, started when the application
// ends, heard of at the next start.
#include <QCoreApplication>
#include <QFile>

#include "platform/detached_starter.h"
#include "platform/file_tests.h"
#include "update/code_identity.h"
#include "update/update_error.h"
#include "update/update_files.h"
#include "update/update_install_plan.h"
#include "update/update_places.h"
#include "update/update_service.h"

namespace orlix {
namespace {

constexpr qint64 largestResult = 1024 * 1024;  // bytes

QString folderOf(const QString& path) {
    return path.left(path.lastIndexOf(QLatin1Char('/')));
}

std::string native(const QString& path) {
    return QFile::encodeName(path).toStdString();
}

}  // namespace

void UpdateService::scheduleInstallation(const PreparedUpdate& update) {
    using Case = NativeUpdateError::Case;
    if (!update.info.sha256 || !update.info.build) throw NativeUpdateError(Case::missingVerificationMetadata);
    const QString target = files::resolved(platform_.application.bundlePath);
    const QString team = requiredTeam(platform_.signatures, target);
    if (!platform_.files.isExecutableFile(target + QLatin1Char('/') + helperInBundle()))
        throw NativeUpdateError(Case::missingInstallerHelper);

    // The installing program opens its plan through no link, and the user's folder of caches may be one.
    const QString folder = files::resolved(folderOf(update.dmgPath)) + QLatin1Char('/');
    const Scheduled scheduled{folder + planFileName(), folder + helperFileName()};
    try {
        stage(update, target, team, scheduled);
    } catch (const UpdateError& error) {
        throw NativeUpdateError::installerPreparationFailed(error.errorDescription());
    }
    const std::lock_guard guard(lock_);
    scheduledPlanPath_ = scheduled.plan;
    scheduledHelperPath_ = scheduled.helper;
}

void UpdateService::stage(const PreparedUpdate& update, const QString& target, const QString& team,
                          const Scheduled& scheduled) const {
    files::remove(scheduled.helper);
    files::copy(target + QLatin1Char('/') + helperInBundle(), scheduled.helper);
    files::makeProgram(scheduled.helper);
    UpdateInstallPlan plan;
    plan.dmgPath = update.dmgPath;
    plan.targetAppPath = target;
    plan.expectedBundleIdentifier = platform_.application.identifier();
    plan.expectedTeamIdentifier = team;
    plan.expectedVersion = update.info.version;
    plan.expectedBuild = *update.info.build;
    plan.expectedSHA256 = update.info.sha256->toLower();
    plan.statusPath = installStatusPath();
    files::writeForUser(scheduled.plan, plan.toJson());
}

void UpdateService::launchScheduledInstaller() {
    std::optional<QString> plan;
    std::optional<QString> helper;
    {
        const std::lock_guard guard(lock_);
        plan.swap(scheduledPlanPath_);
        helper.swap(scheduledHelperPath_);
    }
    if (!plan || !helper) return;
    const int error = platform_.starter.start(
        native(*helper),
        {"--plan", native(*plan), "--parent-pid", std::to_string(QCoreApplication::applicationPid())});
    if (error != 0) throw SystemError::fromErrno(error);
}

void UpdateService::forgetScheduledInstaller() {
    const std::lock_guard guard(lock_);
    scheduledPlanPath_.reset();
    scheduledHelperPath_.reset();
}

std::optional<UpdateInstallResult> UpdateService::consumeInstallStatus() {
    const QString path = orlix::installStatusPath(platform_.folders.applicationSupport);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return std::nullopt;
    const std::optional<UpdateInstallResult> result =
        UpdateInstallResult::fromJson(file.read(largestResult + 1));
    file.close();
    if (result) files::remove(path);
    return result;
}

QString UpdateService::installStatusPath() const {
    files::makeFolder(installStatusDirectory(platform_.folders.applicationSupport));
    return orlix::installStatusPath(platform_.folders.applicationSupport);
}

}  // namespace orlix
