// Where programs keep a user's configuration on Linux.
#pragma once

#include <QDir>
#include <QString>

namespace orlix {

/// $XDG_CONFIG_HOME, or ~/.config when that is unset or relative (Qt's own answer takes a relative one).
inline QString configurationFolder() {
    const QString folder = qEnvironmentVariable("XDG_CONFIG_HOME");
    return QDir::isAbsolutePath(folder) ? folder : QDir::homePath() + QStringLiteral("/.config");
}

}  // namespace orlix
