// What the environment and the desktop's configuration files say about the user. Owned by the composition
// root; main thread only.
#pragma once

#include <optional>

#include "platform/system_settings.h"

namespace orlix {

class LinuxSystemSettings : public SystemSettings {
  public:
    /// From LANGUAGE, LC_ALL, LC_MESSAGES and LANG by gettext's rules; empty in the C locale.
    QStringList preferredLanguages() const override;
    /// From the configuration of GTK 4, GTK 3 and KDE, read at the first question and then remembered.
    bool prefersReducedMotion() const override;
    /// Where Debian's packages of UCI engines put their programs.
    QStringList additionalEnginePaths() const override;

    /// Whether the desktop is one that shows a window's menus in a place of its own. Elsewhere nobody needs
    /// to be asked: Qt would do it over D-Bus, and the window would wait for the answer.
    static bool desktopMayShowMenus();

  private:
    mutable std::optional<bool> reducedMotion_;
};

}  // namespace orlix
