// The connection to the session bus that all of the application's own D-Bus work shares.
#pragma once

#include <QDBusConnection>

namespace hopsel {

/// Not connected when the session has no bus: none is ever started for us, as the D-Bus library would do.
QDBusConnection sessionBus();

} // namespace hopsel
