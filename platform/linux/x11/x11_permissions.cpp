#include "platform/linux/x11/x11_permissions.h"

#include "platform/linux/x11/x11_input_devices.h"

#include <stdexcept>

namespace hopsel {

namespace {

bool offers(bool (*question)(X11Connection&)) {
    try {
        X11Connection connection;
        x11_input_devices::requireXInput2(connection);
        return question(connection);
    } catch (const std::runtime_error&) {
        return false;
    }
}

} // namespace

bool X11Permissions::accessibilityGranted() { return offers(&x11_input_devices::hasXTest); }

bool X11Permissions::inputMonitoringGranted() {
    return offers([](X11Connection& connection) {
        x11_input_devices::requireXkb(connection);
        return true;
    });
}

} // namespace hopsel
