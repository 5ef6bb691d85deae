#include "update/image_preflight.h"

#include "update/application_search.h"
#include "update/code_identity.h"
#include "update/disk_images.h"
#include "update/running_application.h"
#include "update/update_error.h"
#include "update/update_info.h"

namespace orlix {
namespace {

void inspectApplication(const QString& path, const UpdateInfo& info, const QString& identifier,
                        const QString& team, CodeSignatureReader& signatures) {
    const BundleInfo bundle = readBundleInfo(path).value_or(BundleInfo{});
    // Letter by letter: what the feed says is what the user was told.
    if (bundle.shortVersion != info.version || !info.build || bundle.version != info.build)
        throw NativeUpdateError::invalidApplication(
            QStringLiteral("Version or build does not match the feed."));
    const CodeIdentity identity = codeIdentity(signatures, path);
    if (identity.signingIdentifier != identifier || identity.teamIdentifier != team)
        throw NativeUpdateError::invalidApplication(
            QStringLiteral("Developer ID identity does not match the installed app."));
}

}  // namespace

void preflightDiskImage(const QString& imagePath, const UpdateInfo& info,
                        const RunningApplication& application, DiskImages& images,
                        CodeSignatureReader& signatures) {
    const QString team = requiredTeam(signatures, application.bundlePath);
    const MountedImage mounted = images.attach(imagePath);
    try {
        const QString identifier = application.identifier();
        inspectApplication(findApplication(mounted.mountPath, identifier), info, identifier, team,
                           signatures);
    } catch (...) {
        try {
            images.detach(mounted);
        } catch (const UpdateError&) {
            // What went wrong before is what the user is told.
        }
        throw;
    }
    images.detach(mounted);
}

}  // namespace orlix
