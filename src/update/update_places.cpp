#include "update/update_places.h"

#include "update/update_info.h"

namespace orlix {
namespace {

QString updatesBelow(const QString& folder) {
    return folder + QStringLiteral("/com.dovu.velmorandix/Updates");
}

// Version and build are the feed's words: one path component, whatever they hold.
QString releaseName(const UpdateInfo& info) {
    QString name = info.version + QLatin1Char('-') + info.build.value_or(QStringLiteral("0"));
    return name.replace(QLatin1Char('/'), QLatin1Char('_')).replace(QChar::Null, QLatin1Char('_'));
}

}  // namespace

QString defaultBundleIdentifier() {
    return QStringLiteral("com.dovu.velmorandix");
}

QString updateDirectory(const QString& caches, const UpdateInfo& info) {
    return updatesBelow(caches) + QLatin1Char('/') + releaseName(info);
}

QString imageFileName(const UpdateInfo& info) {
    return QStringLiteral("Velmorandix-Orlix-") + releaseName(info) + QStringLiteral(".dmg");
}

QString helperFileName() {
    return QStringLiteral("VelmorandixOrlixUpdater");
}

QString planFileName() {
    return QStringLiteral("install-plan.json");
}

QString helperInBundle() {
    return QStringLiteral("Contents/Helpers/") + helperFileName();
}

QString installStatusDirectory(const QString& applicationSupport) {
    return updatesBelow(applicationSupport);
}

QString installStatusPath(const QString& applicationSupport) {
    return installStatusDirectory(applicationSupport) + QStringLiteral("/last-install.json");
}

}  // namespace orlix
