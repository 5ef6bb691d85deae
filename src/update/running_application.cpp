#include "update/running_application.h"

#include "update/update_places.h"

namespace orlix {

QString RunningApplication::version() const {
    return info.shortVersion.value_or(QStringLiteral("0.0.0"));
}

QString RunningApplication::build() const {
    return info.version.value_or(QStringLiteral("0"));
}

QString RunningApplication::identifier() const {
    return info.identifier.value_or(defaultBundleIdentifier());
}

}  // namespace orlix
