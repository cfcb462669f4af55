// The seam to the system's settings: the two permissions, and the places where the user can change them.
//
// Owned by the application model. Opening shows another program's window; nothing here waits for it.
#pragma once

namespace hopsel {

class SystemSettingsOpening {
  public:
    SystemSettingsOpening() = default;
    SystemSettingsOpening(const SystemSettingsOpening&) = delete;
    SystemSettingsOpening& operator=(const SystemSettingsOpening&) = delete;
    virtual ~SystemSettingsOpening() = default;

    /// May show the system's prompt.
    virtual void requestInputMonitoring() = 0;
    virtual void openInputMonitoring() = 0;
    /// Checks, never prompts.
    virtual bool inputMonitoringGranted() const = 0;
    /// Checks, never prompts.
    virtual bool accessibilityGranted() const = 0;
    /// May show the system's prompt.
    virtual void requestAccessibility() = 0;
    virtual void openAccessibility() = 0;
    virtual void openLoginItems() = 0;
    /// Where the user adds input sources.
    virtual void openInputSources() = 0;
};

} // namespace hopsel
