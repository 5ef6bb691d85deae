#include "update/update_message.h"

namespace orlix {

QString UpdateMessage::text() const {
    switch (kind) {
        case Kind::asItStands: return detail;
        case Kind::checking: return QStringLiteral("Checking for updates…");
        case Kind::upToDate:
            return QStringLiteral("Velmorandix Orlix is up to date (version ") + detail +
                   QStringLiteral(").");
        case Kind::checkFailed: return QStringLiteral("Update check failed: ") + detail;
        case Kind::verifying:
            return QStringLiteral("Downloading and verifying Velmorandix Orlix ") + detail +
                   QStringLiteral("…");
        case Kind::verified:
            return QStringLiteral("Update verified. Velmorandix Orlix will now install and relaunch.");
        case Kind::updaterNotStarted: return QStringLiteral("Could not start the updater: ") + detail;
    }
    return {};
}

}  // namespace orlix
