// Light or dark, as the system has it, also when that changes while we run (by hand or at sunset).
//
// Owned by the platform; after it is gone nothing is called.
#pragma once

#include "platform/macos/system_events/distributed_notification.h"

#include <functional>
#include <optional>

namespace hopsel {

class InterfaceStyle {
  public:
    /// Calls at once, and at every change, with whether it is dark.
    explicit InterfaceStyle(std::function<void(bool isDark)> onChange);

  private:
    void report();

    std::function<void(bool isDark)> onChange_;
    std::optional<bool> reported_;
    DistributedNotification changed_;
};

} // namespace hopsel
