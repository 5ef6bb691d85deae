// The user's own folders, as the application and the program that installs have to agree on them. Pure
// functions over the system; any thread.
#pragma once

#include <QString>

namespace orlix {

/// Absolute paths, without a slash at their ends.
struct UserFolders {
    QString caches;              ///< "~/Library/Caches"
    QString applicationSupport;  ///< "~/Library/Application Support"
};

/// Those of the user that this program runs for; on Linux what stands for them there. Empty where the system
/// names none.
UserFolders userFolders();

}  // namespace orlix
