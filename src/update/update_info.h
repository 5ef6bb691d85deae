// One release as the update feed describes it. A value; any thread.
#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>
#include <optional>

namespace orlix {

struct UpdateInfo {
    QString version;
    std::optional<QString> build;
    QUrl downloadURL;
    std::optional<QString> releaseNotes;
    std::optional<QString> publishedAt;  ///< text as the feed has it, never read as a date
    std::optional<qint64> size;          ///< of the disk image, bytes
    std::optional<QString> sha256;       ///< hexadecimal digits in either case
    std::optional<QString> minimumMacOS;

    /// Reads a feed. `error` gets a sentence for the user, empty on success. Unknown keys do not matter; an
    /// absent "version" or "download_url", or a value of the wrong type, fails.
    static std::optional<UpdateInfo> fromJson(const QByteArray& json, QString& error);
    /// The feed's own keys, without the absent ones.
    QByteArray toJson() const;

    /// True when the release can be verified: it has a build, a size of at least 1 and a digest of exactly 64
    /// hexadecimal digits.
    bool supportsAutomaticInstallation() const;

    bool operator==(const UpdateInfo&) const = default;
};

/// A release whose disk image is verified and ready to be installed.
struct PreparedUpdate {
    UpdateInfo info;
    QString dmgPath;  ///< the verified image

    bool operator==(const PreparedUpdate&) const = default;
};

}  // namespace orlix
