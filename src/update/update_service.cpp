#include "update/update_service.h"

#include <QDir>
#include <cassert>

#include "platform/defaults_store.h"
#include "platform/https_transport.h"
#include "platform/tool_runner.h"
#include "update/file_digest.h"
#include "update/image_preflight.h"
#include "update/update_error.h"
#include "update/update_files.h"
#include "update/update_places.h"
#include "update/version_order.h"

namespace orlix {
namespace {

constexpr qint64 largestFeed = 1024 * 1024;  // bytes
constexpr std::chrono::seconds toolLimitAtTheEnd{3};

UpdateService* registered = nullptr;

NativeUpdateError refusal(NativeUpdateError::Case kind) {
    return NativeUpdateError(kind);
}

// Removes the file when it goes out of scope.
class Discarded {
  public:
    explicit Discarded(QString path) : path_(std::move(path)) {}
    ~Discarded() { files::remove(path_); }
    Discarded(const Discarded&) = delete;
    Discarded& operator=(const Discarded&) = delete;

  private:
    QString path_;
};

}  // namespace

UpdateService& UpdateService::shared() {
    assert(registered != nullptr);
    return *registered;
}

void UpdateService::registerShared(UpdateService* instance) {
    registered = instance;
}

QString UpdateService::defaultFeedAddress() {
    return QStringLiteral("https://" ORLIX_UPDATE_HOST "/updates/Velmorandix/appcast.json");
}

UpdateService::UpdateService(Platform platform)
    : platform_(std::move(platform)), images_(platform_.tools, platform_.diskImageTool) {}

bool UpdateService::checksAtLaunch() const {
    return platform_.defaults.boolean(QString::fromLatin1(checkAtLaunchKey)).value_or(true);
}

CheckResult UpdateService::check() {
    const QUrl feed(platform_.feedAddress, QUrl::StrictMode);
    if (feed.isEmpty() || !feed.isValid()) return CheckFailed{QStringLiteral("Invalid update feed URL.")};
    const HttpResponse response = platform_.transport.fetch(feed, largestFeed);
    if (!response.error.isEmpty()) return CheckFailed{response.error};
    if (!isSuccess(response.status))
        return CheckFailed{QStringLiteral("The update feed did not return a successful response.")};
    if (response.isTooLong) return CheckFailed{QStringLiteral("The update feed is too long.")};
    QString error;
    const std::optional<UpdateInfo> info = UpdateInfo::fromJson(response.body, error);
    if (!info) return CheckFailed{error};
    // The system that the release needs is not looked at here: it is refused only when it is to be installed.
    const QString build = info->build.value_or(QStringLiteral("0"));
    if (isNewerRelease(info->version, build, currentVersion(), currentBuild())) return UpdateAvailable{*info};
    return UpToDate{currentVersion()};
}

bool UpdateService::isTrustedDownloadURL(const QUrl& url) const {
    const auto host = [](const QUrl& address) { return address.host(QUrl::FullyEncoded).toLower(); };
    return url.scheme().toLower() == QLatin1String("https") && !host(url).isEmpty() &&
           host(url) == host(QUrl(platform_.feedAddress, QUrl::StrictMode));
}

PreparedUpdate UpdateService::prepareForInstallation(const UpdateInfo& info) {
    refuseUnfit(info);
    const QString folder = updateDirectory(platform_.folders.caches, info);
    files::makeFolder(folder);
    const QString image = download(info, folder);
    try {
        preflightDiskImage(image, info, platform_.application, images_, platform_.signatures);
    } catch (...) {
        files::remove(image);
        throw;
    }
    return {info, image};
}

// What can be told before anything is downloaded.
void UpdateService::refuseUnfit(const UpdateInfo& info) const {
    using Case = NativeUpdateError::Case;
    if (!info.supportsAutomaticInstallation()) throw refusal(Case::missingVerificationMetadata);
    if (!isTrustedDownloadURL(info.downloadURL)) throw refusal(Case::invalidDownloadURL);
    const std::optional<QString>& system = platform_.application.systemVersion;
    if (info.minimumMacOS && system &&
        compareVersions(*system, *info.minimumMacOS) == VersionOrder::ascending)
        throw NativeUpdateError::incompatibleSystem(*info.minimumMacOS);
    if (platform_.application.bundlePath.startsWith(QLatin1String("/Volumes/")))
        throw refusal(Case::appRunningFromDiskImage);
}

// The path of the image, which has the size and the digest that the feed says.
QString UpdateService::download(const UpdateInfo& info, const QString& folder) {
    using Case = NativeUpdateError::Case;
    const QString image = folder + QLatin1Char('/') + imageFileName(info);
    const QString part = image + QStringLiteral(".part");
    files::remove(part);
    const Discarded discarded(part);
    const HttpResponse response = platform_.transport.download(info.downloadURL, part, *info.size);
    if (!response.error.isEmpty()) throw SystemError(response.error);
    if (!isSuccess(response.status) || !isTrustedDownloadURL(response.finalUrl))
        throw refusal(Case::unexpectedResponse);
    const qint64 size = files::sizeOf(part);
    if (size != *info.size) throw NativeUpdateError::sizeMismatch(*info.size, size);
    if (sha256(part, &isCancelled_) != info.sha256->toLower()) throw refusal(Case::checksumMismatch);
    files::remove(image);
    files::move(part, image);
    return image;
}

void UpdateService::cancel() {
    isCancelled_ = true;
    platform_.transport.cancel();
    platform_.tools.hurry(toolLimitAtTheEnd);
}

}  // namespace orlix
