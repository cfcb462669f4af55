// What an X server lets us do. Nothing is ever prompted: every X client may listen, or none.
//
// Stateless; each question opens a connection of its own for a moment.
#pragma once

#include "core/platform/permissions.h"

namespace hopsel {

class X11Permissions final : public Permissions {
  public:
    /// Can the filter and posting be used: XInput 2.2 and XTEST.
    bool accessibilityGranted() override;
    bool requestAccessibility() override { return accessibilityGranted(); }
    /// Can the listening source be opened: a display with XInput 2.2 and XKB.
    bool inputMonitoringGranted() override;
    bool requestInputMonitoring() override { return inputMonitoringGranted(); }
};

} // namespace hopsel
