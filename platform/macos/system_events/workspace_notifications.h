// What the workspace tells of sleep and of the login session: the seam around a service that has no C
// interface.
//
// Owned by the system-event observer. The callback comes on the main thread, and never after `stop` or after
// this object is gone.
#pragma once

#include "core/platform/system_event.h"

#include <functional>
#include <memory>

namespace hopsel {

class WorkspaceNotifications {
  public:
    WorkspaceNotifications() = default;
    WorkspaceNotifications(const WorkspaceNotifications&) = delete;
    WorkspaceNotifications& operator=(const WorkspaceNotifications&) = delete;
    virtual ~WorkspaceNotifications() = default;

    virtual void start(std::function<void(SystemEvent)> onEvent) = 0;
    virtual void stop() = 0;
};

std::unique_ptr<WorkspaceNotifications> makeWorkspaceNotifications();

} // namespace hopsel
