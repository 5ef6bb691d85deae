// What a look at the update feed came to. A value; any thread.
#pragma once

#include <QString>
#include <variant>

#include "update/update_info.h"

namespace orlix {

/// The feed's release is not newer.
struct UpToDate {
    QString version;  ///< of the running application
    bool operator==(const UpToDate&) const = default;
};
/// The feed's release is newer.
struct UpdateAvailable {
    UpdateInfo info;
    bool operator==(const UpdateAvailable&) const = default;
};
/// The check could not be completed.
struct CheckFailed {
    QString message;  ///< for the user
    bool operator==(const CheckFailed&) const = default;
};

using CheckResult = std::variant<UpToDate, UpdateAvailable, CheckFailed>;

}  // namespace orlix
