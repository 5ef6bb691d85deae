// What the program that installs leaves for the application's next start. A value; any thread.
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

namespace orlix {

/// The keys of the JSON object are the members' names.
struct UpdateInstallResult {
    bool succeeded = false;
    QString message;  ///< a sentence for the user, shown as it stands
    QString version;  ///< that was installed, or was to be

    QByteArray toJson() const;
    /// Nothing unless `json` is one object with all three keys.
    static std::optional<UpdateInstallResult> fromJson(const QByteArray& json);

    bool operator==(const UpdateInstallResult&) const = default;
};

}  // namespace orlix
