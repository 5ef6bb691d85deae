// Updates of the application itself: looks at the feed, downloads and verifies a release, stages the program
// that installs it, and starts that program when the application ends. Nothing is trusted before it is
// proved. Owned by the composition root, which also hands in everything that touches the system.
#pragma once

#include <QString>
#include <QUrl>
#include <atomic>
#include <mutex>
#include <optional>
#include <string>

#include "update/check_result.h"
#include "update/disk_images.h"
#include "update/running_application.h"
#include "update/update_info.h"
#include "update/update_install_result.h"
#include "update/user_folders.h"

namespace orlix {

class CodeSignatureReader;
class DefaultsStore;
class DetachedStarter;
class FileTests;
class HttpsTransport;
class ToolRunner;

/// The defaults key that turns the check at launch off. Nothing in the program writes it.
inline constexpr const char* checkAtLaunchKey = "velmorandix_orlix_update_check_at_launch";

class UpdateService {
  public:
    /// What the service reaches the system through; all of it outlives the service.
    struct Platform {
        HttpsTransport& transport;
        ToolRunner& tools;
        std::string diskImageTool;  ///< path
        CodeSignatureReader& signatures;
        DetachedStarter& starter;
        const FileTests& files;
        const DefaultsStore& defaults;
        RunningApplication application;
        UserFolders folders;
        QString feedAddress = defaultFeedAddress();
    };

    /// The registered instance; asserts that there is one.
    static UpdateService& shared();
    /// Called by the composition root; null takes the registration back.
    static void registerShared(UpdateService* instance);

    /// On the host that was fixed when the program was built.
    static QString defaultFeedAddress();

    explicit UpdateService(Platform platform);

    /// Whether the application is to look for updates when it starts. Main thread.
    bool checksAtLaunch() const;
    QString currentVersion() const { return platform_.application.version(); }
    QString currentBuild() const { return platform_.application.build(); }

    /// Asks the feed. Blocks: worker threads only, several at a time do no harm.
    CheckResult check();

    /// Whether `url` may be the address of an image: HTTPS, on the feed's host whatever the case of its
    /// letters, on any port.
    bool isTrustedDownloadURL(const QUrl& url) const;

    /// Downloads the release's image and verifies it, step by step; the first step that fails ends it.
    /// Blocks: worker threads only, one release at a time.
    /// @throws UpdateError
    PreparedUpdate prepareForInstallation(const UpdateInfo& info);

    /// Writes the install plan and a copy of the installing program next to the image, for the next quit. A
    /// second release replaces the first. Blocks: worker threads only.
    /// @throws UpdateError
    void scheduleInstallation(const PreparedUpdate& update);

    /// Starts the scheduled program and forgets it; does nothing when nothing is scheduled. Any thread.
    /// @throws SystemError when it cannot be started.
    void launchScheduledInstaller();
    void forgetScheduledInstaller();

    /// What the installing program left for this start of the application, once: the file is removed then. A
    /// file that is no result stays where it is and counts as none.
    std::optional<UpdateInstallResult> consumeInstallStatus();
    /// Where that file is. Makes the folder that it lies in.
    QString installStatusPath() const;

    /// The program wants to end: transfers end at once, and what else runs has a few seconds at most. Any
    /// thread.
    void cancel();

  private:
    struct Scheduled {
        QString plan;
        QString helper;
    };

    void refuseUnfit(const UpdateInfo& info) const;
    QString download(const UpdateInfo& info, const QString& folder);
    void stage(const PreparedUpdate& update, const QString& target, const QString& team,
               const Scheduled& scheduled) const;

    Platform platform_;
    DiskImages images_;
    std::atomic<bool> isCancelled_ = false;

    std::mutex lock_;  // of the two paths, which are set and cleared together; nothing else happens under it
    std::optional<QString> scheduledPlanPath_;
    std::optional<QString> scheduledHelperPath_;
};

}  // namespace orlix
