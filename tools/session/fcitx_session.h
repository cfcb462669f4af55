// A user's session with Fcitx5 in it: a message bus, a home, and the real daemon on request.
//
// Needs $DISPLAY once the daemon starts. Destroy it after whatever connected to its bus.
#pragma once

#include "session/private_bus.h"
#include "session/private_home.h"

#include <memory>
#include <string>

namespace hopsel::session {

class FcitxSession {
  public:
    /// With English and Korean in this order, for the daemon to start with.
    FcitxSession();

    /// Returns at once.
    void startDaemon();
    /// As a crash would.
    void killDaemon();
    ChildProcess& daemon() { return *daemon_; }

    PrivateBus& bus() { return bus_; }
    const PrivateHome& home() const { return home_; }

  private:
    PrivateHome home_;
    PrivateBus bus_;
    std::unique_ptr<ChildProcess> daemon_;
};

} // namespace hopsel::session
