#include "platform/macos/keys/mac_permissions.h"

#include "platform/macos/base/cf_values.h"

#include <ApplicationServices/ApplicationServices.h>

namespace hopsel {

bool MacPermissions::accessibilityGranted() { return AXIsProcessTrusted() != 0; }

bool MacPermissions::requestAccessibility() {
    wasAsked_ = true;
    const auto options = cf_values::dictionary(kAXTrustedCheckOptionPrompt, kCFBooleanTrue);
    return AXIsProcessTrustedWithOptions(options.get()) != 0;
}

bool MacPermissions::inputMonitoringGranted() { return CGPreflightListenEventAccess(); }

bool MacPermissions::requestInputMonitoring() {
    wasAsked_ = true;
    return CGRequestListenEventAccess();
}

} // namespace hopsel
