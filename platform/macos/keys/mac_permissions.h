// The two permissions that the user gives in System Settings. Stateless: a permission that is given or taken
// while the program runs shows in the next answer.
#pragma once

#include "core/platform/permissions.h"

namespace hopsel {

class MacPermissions final : public Permissions {
  public:
    bool accessibilityGranted() override;
    bool requestAccessibility() override;
    bool inputMonitoringGranted() override;
    bool requestInputMonitoring() override;
};

} // namespace hopsel
