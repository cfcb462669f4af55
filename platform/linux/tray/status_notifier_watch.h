// Is there a panel that shows items described over D-Bus? Asks the StatusNotifierWatcher of the session's
// bus.
//
// Owned by the tray host. Never blocks; the bus and the watcher may come, go, and take their time to answer:
// one that says nothing for a second counts as none until it does.
#pragma once

#include "platform/linux/bus/bus_name.h"

#include <optional>

namespace hopsel {

class StatusNotifierWatch final {
  public:
    /// `onChange` is called when `hasHost` has changed, not before the first turn of the loop.
    StatusNotifierWatch(std::shared_ptr<BusLink> bus, std::function<void()> onChange);

    /// Nothing before the first answer.
    std::optional<bool> hasHost() const { return hasHost_; }

  private:
    void ask();
    void take(bool hasHost);

    std::function<void()> onChange_;
    std::optional<bool> hasHost_;
    unsigned question_ = 0; ///< the number of the last one; an answer to an earlier one is out of date
    BusName watcher_;
    QTimer silence_;
    QObject context_; ///< answers end with it
};

} // namespace hopsel
