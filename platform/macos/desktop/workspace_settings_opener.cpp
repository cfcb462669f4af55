#include "platform/macos/desktop/workspace_settings_opener.h"

#include <utility>

namespace hopsel {

WorkspaceSettingsOpener::WorkspaceSettingsOpener(std::shared_ptr<Permissions> permissions,
                                                 std::shared_ptr<Workspace> workspace)
    : permissions_(std::move(permissions)), workspace_(std::move(workspace)) {}

void WorkspaceSettingsOpener::openInputMonitoring() {
    permissions_->settingsShown();
    workspace_->open("x-apple.systempreferences:com.apple.preference.security?Privacy_ListenEvent");
}

void WorkspaceSettingsOpener::openAccessibility() {
    permissions_->settingsShown();
    workspace_->open("x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility");
}

void WorkspaceSettingsOpener::openInputSources() {
    workspace_->open("x-apple.systempreferences:com.apple.preference.keyboard?InputSources");
}

} // namespace hopsel
