// The applications that run now, as the workspace knows them. Owned by the application model; stateless.
#pragma once

#include "core/platform/running_apps.h"

namespace hopsel {

class LiveRunningApps final : public RunningAppsProviding {
  public:
    /// Applications without a bundle identifier are left out.
    std::vector<std::string> runningBundleIDs() override;
};

} // namespace hopsel
