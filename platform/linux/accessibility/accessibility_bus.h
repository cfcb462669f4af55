// The desktop's accessibility bus: found through its launcher on the session bus, connected to, and taken up
// again when it comes back.
//
// Owned by AtspiSecureInput; needs the event loop. It starts neither the launcher nor the bus, and never
// switches accessibility on: programs behave differently then, so that is for the user to decide.
#pragma once

#include "platform/linux/bus/bus_name.h"

namespace hopsel {

class AccessibilityBus final {
  public:
    /// `onChange`: there is a connection, there is none any more, or `isEnabled` is another.
    AccessibilityBus(std::shared_ptr<BusLink> sessionBus, std::function<void()> onChange);

    const std::shared_ptr<BusLink>& link() const { return link_; }
    bool isConnected() const { return link_->isConnected(); }
    /// Whether the desktop asks its programs to describe themselves. False as long as nobody says so.
    bool isEnabled() const { return isEnabled_; }
    /// Looks for the bus if there is no connection.
    void retry();
    /// There should be one.
    bool needsRetry() const { return launcher_.isOwned() && !isConnected(); }

  private:
    void followLauncher();
    void readStatus();
    void takeStatus(bool isEnabled);

    std::function<void()> onChange_;
    bool isEnabled_ = false;
    QString address_; ///< as the launcher told it last
    std::shared_ptr<BusLink> link_;
    BusName launcher_;
    QObject context_; ///< answers end with it
};

} // namespace hopsel
