#include "app/linux/session_bus.h"

#include <QFileInfo>

namespace hopsel {

QDBusConnection sessionBus() {
    // The same two places in which the D-Bus library looks before it starts a bus (dbus-launch).
    const QString runtimeBus = qEnvironmentVariable("XDG_RUNTIME_DIR") + "/bus";
    if (qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS") && !QFileInfo::exists(runtimeBus))
        return QDBusConnection("hopsel: there is no session bus");
    return QDBusConnection::sessionBus();
}

} // namespace hopsel
