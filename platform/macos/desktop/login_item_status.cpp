#include "platform/macos/desktop/login_item_status.h"

namespace hopsel {

LoginItemStatus loginItemStatus(long serviceStatus, bool wasTried) {
    switch (serviceStatus) {
    case 0: return LoginItemStatus::disabled; // not registered
    case 1: return LoginItemStatus::enabled;
    case 2: return LoginItemStatus::requiresApproval;
    case 3: return wasTried ? LoginItemStatus::unavailable : LoginItemStatus::disabled; // not found
    default: return LoginItemStatus::unavailable;
    }
}

} // namespace hopsel
