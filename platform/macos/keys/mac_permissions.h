// The two permissions that the user gives in System Settings.
//
// Owned by the platform, shared with the taps. In some versions of the system the answers stay what they were
// when the program started; so the taps are told whether the user has been asked, from when on it is worth
// trying without them.
#pragma once

#include "core/platform/permissions.h"

namespace hopsel {

class MacPermissions final : public Permissions {
  public:
    bool accessibilityGranted() override;
    bool requestAccessibility() override;
    bool inputMonitoringGranted() override;
    bool requestInputMonitoring() override;
    void settingsShown() override { wasAsked_ = true; }
    /// By the system's prompt, or by the page of its settings.
    bool wasAsked() const { return wasAsked_; }

  private:
    bool wasAsked_ = false;
};

} // namespace hopsel
