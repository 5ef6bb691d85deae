// The order of version and build texts: by their numbers, whatever else stands in them. Pure functions; any
// thread.
#pragma once

#include <QList>
#include <QStringView>

namespace orlix {

enum class VersionOrder {
    ascending,   ///< the left text is the older one
    same,        ///< no number differs; the texts may
    descending,  ///< the left text is the newer one
};

/// The numeric parts of a version text: "V1.2.3-beta" gives 1, 2, 3 and "2.0b4" gives 2, 0. A part that has
/// no leading digit, or more than a 64-bit signed integer holds, is 0.
QList<qint64> versionParts(QStringView text);

/// Compares part by part; missing parts count as 0, so "1.2" and "1.2.0.0" are the same.
VersionOrder compareVersions(QStringView left, QStringView right);

/// Whether a release is newer: by its version, and by its build only where the versions are the same. An
/// absent build of the release counts as "0".
bool isNewerRelease(QStringView version, QStringView build, QStringView currentVersion,
                    QStringView currentBuild);

}  // namespace orlix
