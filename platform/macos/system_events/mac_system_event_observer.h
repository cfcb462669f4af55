// Sleep, lock and session changes on macOS: from the workspace, and from the login window's notifications to
// all programs.
//
// Owned by start-up.
#pragma once

#include "core/platform/input_source_service.h"
#include "core/platform/system_event.h"
#include "platform/macos/system_events/distributed_notification.h"
#include "platform/macos/system_events/workspace_notifications.h"

#include <memory>
#include <optional>

namespace hopsel {

class MacSystemEventObserver final : public SystemEventObserving {
  public:
    /// While started it has the catalog's `onSourcesChanged`.
    MacSystemEventObserver(std::shared_ptr<InputSourceCatalog> catalog,
                           std::unique_ptr<WorkspaceNotifications> workspace);
    ~MacSystemEventObserver() override;

    void start() override;
    void stop() override;

  private:
    void tell(SystemEvent event) const;

    std::shared_ptr<InputSourceCatalog> catalog_;
    std::unique_ptr<WorkspaceNotifications> workspace_;
    bool isStarted_ = false;
    std::optional<DistributedNotification> locked_;
    std::optional<DistributedNotification> unlocked_;
};

} // namespace hopsel
