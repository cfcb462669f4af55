// The two permissions, and the pages of the system's settings on which the user grants them.
//
// Owned by the application model.
#pragma once

#include "core/platform/permissions.h"
#include "core/platform/system_settings_opening.h"
#include "platform/macos/desktop/workspace.h"

#include <memory>

namespace hopsel {

class WorkspaceSettingsOpener final : public SystemSettingsOpening {
  public:
    WorkspaceSettingsOpener(std::shared_ptr<Permissions> permissions, std::shared_ptr<Workspace> workspace);

    void requestInputMonitoring() override { permissions_->requestInputMonitoring(); }
    void openInputMonitoring() override;
    bool inputMonitoringGranted() const override { return permissions_->inputMonitoringGranted(); }
    bool accessibilityGranted() const override { return permissions_->accessibilityGranted(); }
    void requestAccessibility() override { permissions_->requestAccessibility(); }
    void openAccessibility() override;
    void openLoginItems() override { workspace_->openLoginItems(); }
    void openInputSources() override;

  private:
    std::shared_ptr<Permissions> permissions_;
    std::shared_ptr<Workspace> workspace_;
};

} // namespace hopsel
