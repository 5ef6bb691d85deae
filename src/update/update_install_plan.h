// What the application leaves for the program that installs: which image, over which application, and how it
// is recognised. A value; any thread.
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

namespace orlix {

/// The keys of the JSON object are the members' names.
struct UpdateInstallPlan {
    QString dmgPath;
    QString targetAppPath;  ///< without links and dots
    QString expectedBundleIdentifier;
    QString expectedTeamIdentifier;
    QString expectedVersion;
    QString expectedBuild;
    QString expectedSHA256;  ///< in lower case
    QString statusPath;      ///< where the result goes

    QByteArray toJson() const;
    /// Nothing unless `json` is one object in which every member is present as text; `error` says why not.
    static std::optional<UpdateInstallPlan> fromJson(const QByteArray& json, QString& error);

    bool operator==(const UpdateInstallPlan&) const = default;
};

}  // namespace orlix
