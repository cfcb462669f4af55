// The seam of permissions: may we listen, and may we filter and post?
//
// On macOS these are the input-monitoring and accessibility permissions; elsewhere they tell whether the
// listening source can be opened, and whether the filter and posting can be used. The `request` operations
// may show the system's prompt where there is one, and answer the state after it.
#pragma once

namespace hopsel {

class Permissions {
  public:
    Permissions() = default;
    Permissions(const Permissions&) = delete;
    Permissions& operator=(const Permissions&) = delete;
    virtual ~Permissions() = default;

    /// Checks, never prompts.
    virtual bool accessibilityGranted() = 0;
    virtual bool requestAccessibility() = 0;
    /// Checks, never prompts.
    virtual bool inputMonitoringGranted() = 0;
    virtual bool requestInputMonitoring() = 0;
    /// The user is being shown where permissions are given: what is answered above may be behind from now on.
    virtual void settingsShown() {}
};

} // namespace hopsel
