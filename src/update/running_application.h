// What the running application is, as far as an update has to know. A value; any thread.
#pragma once

#include <QString>
#include <optional>

#include "update/bundle_info.h"

namespace orlix {

struct RunningApplication {
    QString bundlePath;
    BundleInfo info;
    /// "major.minor.patch" of macOS; absent where the system is another one and asks for no version.
    std::optional<QString> systemVersion;

    /// "0.0.0" without one of its own.
    QString version() const;
    /// "0" without one of its own.
    QString build() const;
    /// "com.dovu.velmorandix" without one of its own.
    QString identifier() const;
};

/// The bundle that the program in the folder `programFolder` belongs to. Where it belongs to none, as on
/// Linux, that folder itself, with `builtIn` for what a bundle would say.
RunningApplication runningApplication(const QString& programFolder, const BundleInfo& builtIn);

}  // namespace orlix
