// What macOS says about its user. Owned by the composition root; main thread only.
#pragma once

#include "platform/system_settings.h"

namespace orlix {

class MacSystemSettings : public SystemSettings {
  public:
    QStringList preferredLanguages() const override;
    bool prefersReducedMotion() const override;
    /// None: the common paths are this system's own.
    QStringList additionalEnginePaths() const override;
};

}  // namespace orlix
