// Finds the application in a mounted volume. Blocks while it reads folders: worker threads only.
#pragma once

#include <QString>

namespace orlix {

/// The path of the first application whose bundle identifier is exactly `identifier`. Looks into all folders
/// of `mountPoint`, those with the lower name first, but not at hidden files, not into packages, and not
/// behind links: those may lead out of the volume.
/// @throws NativeUpdateError invalidApplication when the volume cannot be read or has no such application.
QString findApplication(const QString& mountPoint, const QString& identifier);

}  // namespace orlix
