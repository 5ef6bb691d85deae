// System settings that a test sets by hand.
#pragma once

#include <QStringList>

#include "platform/system_settings.h"

namespace orlix {

class FakeSystemSettings : public SystemSettings {
  public:
    QStringList languages{QStringLiteral("en-US")};
    bool reducedMotion = false;
    QStringList enginePaths;

    QStringList preferredLanguages() const override { return languages; }
    bool prefersReducedMotion() const override { return reducedMotion; }
    QStringList additionalEnginePaths() const override { return enginePaths; }
};

}  // namespace orlix
