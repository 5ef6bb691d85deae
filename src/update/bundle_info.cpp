#include "update/bundle_info.h"

#include <QFile>

#include "update/property_list.h"

namespace orlix {
namespace {

std::optional<QString> text(const QVariantMap& properties, const QString& key) {
    const QVariant value = properties.value(key);
    if (value.typeId() != QMetaType::QString) return std::nullopt;
    return value.toString();
}

}  // namespace

std::optional<BundleInfo> bundleInfoFromPropertyList(const QByteArray& bytes) {
    const auto properties = readPropertyList(bytes);
    if (!properties) return std::nullopt;
    return BundleInfo{text(*properties, QStringLiteral("CFBundleIdentifier")),
                      text(*properties, QStringLiteral("CFBundleShortVersionString")),
                      text(*properties, QStringLiteral("CFBundleVersion")),
                      text(*properties, QStringLiteral("CFBundleExecutable"))};
}

std::optional<BundleInfo> readBundleInfo(const QString& path) {
    QFile file(path + QStringLiteral("/Contents/Info.plist"));
    if (!file.open(QIODevice::ReadOnly)) return std::nullopt;
    return bundleInfoFromPropertyList(file.read(largestPropertyList + 1));
}

}  // namespace orlix
