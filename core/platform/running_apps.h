// The seam of the running applications, for the list of those that may interfere with keys.
//
// Owned by the application model, asked when the diagnostics open.
#pragma once

#include <string>
#include <vector>

namespace hopsel {

class RunningAppsProviding {
  public:
    RunningAppsProviding() = default;
    RunningAppsProviding(const RunningAppsProviding&) = delete;
    RunningAppsProviding& operator=(const RunningAppsProviding&) = delete;
    virtual ~RunningAppsProviding() = default;

    /// Identifiers of the applications that run now, in the platform's order: bundle identifiers on macOS,
    /// desktop-file names and program names elsewhere. Bytes of other programs: any length, any encoding.
    virtual std::vector<std::string> runningBundleIDs() = 0;
};

/// For previews, and for platforms that cannot tell.
class NoRunningApps final : public RunningAppsProviding {
  public:
    std::vector<std::string> runningBundleIDs() override { return {}; }
};

} // namespace hopsel
