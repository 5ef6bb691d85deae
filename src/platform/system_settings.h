// What the system says about its user: languages, motion, and where engines usually lie.
#pragma once

#include <QString>
#include <QStringList>

namespace orlix {

class SystemSettings {
  public:
    virtual ~SystemSettings() = default;

    /// The user's preferred languages as BCP 47 tags ("de-AT"), the most preferred first; may be empty.
    virtual QStringList preferredLanguages() const = 0;
    /// True when the user asked the system for less motion.
    virtual bool prefersReducedMotion() const = 0;
    /// This system's own usual places of UCI engines, tried after the common paths; empty on macOS.
    virtual QStringList additionalEnginePaths() const = 0;
};

}  // namespace orlix
