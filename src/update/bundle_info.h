// What an application bundle says about itself in its Info.plist. A value; any thread.
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

namespace orlix {

/// Each only when the property is there and is text.
struct BundleInfo {
    std::optional<QString> identifier = std::nullopt;    ///< "CFBundleIdentifier"
    std::optional<QString> shortVersion = std::nullopt;  ///< "CFBundleShortVersionString"
    std::optional<QString> version = std::nullopt;       ///< "CFBundleVersion": the build
    std::optional<QString> executable = std::nullopt;    ///< "CFBundleExecutable": the name of its program

    bool operator==(const BundleInfo&) const = default;
};

/// From the bytes of an Info.plist; nothing when they are no property list dictionary.
std::optional<BundleInfo> bundleInfoFromPropertyList(const QByteArray& bytes);

/// Opens the folder `path` as a bundle: reads its "Contents/Info.plist". Nothing when it is none.
std::optional<BundleInfo> readBundleInfo(const QString& path);

}  // namespace orlix
