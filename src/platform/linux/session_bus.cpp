#include "platform/linux/session_bus.h"

#include <QFile>
#include <QThreadPool>
#include <QtDBus/QDBusConnection>

namespace orlix {
namespace {

constexpr const char* addressVariable = "DBUS_SESSION_BUS_ADDRESS";
// No transport has this name: whoever tries it fails at once.
constexpr const char* noBus = "disabled:";

// The two places where the D-Bus library looks before it starts a bus of its own.
bool desktopHasBus() {
    const QByteArray address = qgetenv(addressVariable);
    if (!address.isEmpty()) return address != noBus;
    const QString runtimeFolder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return !runtimeFolder.isEmpty() && QFile::exists(runtimeFolder + QStringLiteral("/bus"));
}

}  // namespace

void startNoSessionBus() {
    if (!desktopHasBus()) qputenv(addressVariable, noBus);
}

void connectToSessionBusAhead() {
    if (desktopHasBus()) QThreadPool::globalInstance()->start([] { QDBusConnection::sessionBus(); });
}

}  // namespace orlix
