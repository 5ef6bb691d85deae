// Where the files of an update lie, and by which names the application and the installing program know them.
// Pure functions; any thread.
#pragma once

#include <QString>

namespace orlix {

struct UpdateInfo;

/// The bundle identifier that counts when the running application has none.
QString defaultBundleIdentifier();

/// The folder of one release's image, staged program and plan, below the user's folder of caches.
QString updateDirectory(const QString& caches, const UpdateInfo& info);
/// The file name of the release's image in that folder.
QString imageFileName(const UpdateInfo& info);
QString helperFileName();
QString planFileName();
/// The installing program, relative to the application bundle.
QString helperInBundle();

/// The folder of the result file, below the user's folder of application support.
QString installStatusDirectory(const QString& applicationSupport);
QString installStatusPath(const QString& applicationSupport);

}  // namespace orlix
