#include "update/running_application.h"

#include <QOperatingSystemVersion>

#include "update/update_places.h"

namespace orlix {
namespace {

std::optional<QString> versionOfMacOS() {
    if (QOperatingSystemVersion::currentType() != QOperatingSystemVersion::MacOS) return std::nullopt;
    const QOperatingSystemVersion system = QOperatingSystemVersion::current();
    return QStringLiteral("%1.%2.%3")
        .arg(system.majorVersion())
        .arg(system.minorVersion())
        .arg(system.microVersion());
}

}  // namespace

QString RunningApplication::version() const {
    return info.shortVersion.value_or(QStringLiteral("0.0.0"));
}

QString RunningApplication::build() const {
    return info.version.value_or(QStringLiteral("0"));
}

QString RunningApplication::identifier() const {
    return info.identifier.value_or(defaultBundleIdentifier());
}

RunningApplication runningApplication(const QString& programFolder, const BundleInfo& builtIn) {
    const QString inBundle = QStringLiteral("/Contents/MacOS");
    if (!programFolder.endsWith(inBundle)) return {programFolder, builtIn, versionOfMacOS()};
    const QString bundle = programFolder.chopped(inBundle.size());
    return {bundle, readBundleInfo(bundle).value_or(BundleInfo{}), versionOfMacOS()};
}

}  // namespace orlix
