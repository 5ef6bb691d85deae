#include "update/application_search.h"

#include <QDir>
#include <QFileInfo>
#include <algorithm>
#include <array>
#include <optional>

#include "update/bundle_info.h"
#include "update/update_error.h"

namespace orlix {
namespace {

// Folders that the system shows as one file. There is no list that is always complete; these are the ones
// that a disk image may carry.
bool isPackage(const QFileInfo& folder) {
    static const std::array<QLatin1String, 16> suffixes{
        QLatin1String("app"),       QLatin1String("appex"), QLatin1String("bundle"),
        QLatin1String("component"), QLatin1String("kext"),  QLatin1String("mdimporter"),
        QLatin1String("mpkg"),      QLatin1String("pkg"),   QLatin1String("plugin"),
        QLatin1String("prefpane"),  QLatin1String("rtfd"),  QLatin1String("qlgenerator"),
        QLatin1String("saver"),     QLatin1String("vst"),   QLatin1String("wdgt"),
        QLatin1String("xpc")};
    const QString suffix = folder.suffix().toLower();
    return std::any_of(suffixes.begin(), suffixes.end(),
                       [&](QLatin1String known) { return suffix == known; });
}

bool isApplication(const QFileInfo& folder, const QString& identifier) {
    if (folder.suffix().toLower() != QLatin1String("app")) return false;
    const auto info = readBundleInfo(folder.filePath());
    return info && info->identifier == identifier;
}

std::optional<QString> search(const QString& folder, const QString& identifier) {
    QFileInfoList entries =
        QDir(folder).entryInfoList(QDir::Dirs | QDir::NoSymLinks | QDir::NoDotAndDotDot, QDir::NoSort);
    std::sort(entries.begin(), entries.end(), [](const QFileInfo& left, const QFileInfo& right) {
        return left.fileName() < right.fileName();
    });
    for (const QFileInfo& entry : entries) {
        if (isApplication(entry, identifier)) return entry.filePath();
        if (isPackage(entry)) continue;
        if (const auto found = search(entry.filePath(), identifier)) return found;
    }
    return std::nullopt;
}

}  // namespace

QString findApplication(const QString& mountPoint, const QString& identifier) {
    const QFileInfo volume(mountPoint);
    if (!volume.isDir() || !volume.isReadable())
        throw NativeUpdateError::invalidApplication(QStringLiteral("Could not inspect the disk image."));
    if (const auto found = search(volume.filePath(), identifier)) return *found;
    throw NativeUpdateError::invalidApplication(
        QStringLiteral("No matching Velmorandix Orlix app was found."));
}

}  // namespace orlix
