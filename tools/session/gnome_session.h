// A user's session of GNOME without a screen: a message bus, settings, a logind that is played, and the real
// shell as a Wayland compositor or on the X server of $DISPLAY, with Hopsel's extension.
//
// The shell runs in its unsafe mode, so that a test may ask it anything. The home is one for the whole
// process, as the settings' library asks for it only once. Destroy it after whatever connected to its bus.
#pragma once

#include "session/ibus_session.h"

#include <memory>
#include <string>

namespace hopsel::session {

class GnomeSession {
  public:
    enum class Kind { wayland, x11 };

    /// `dataFolder` has the extension beneath it, as an installation's share has. Returns at once. Throws
    /// `std::runtime_error`.
    GnomeSession(const std::string& dataFolder, const std::string& sources, Kind kind = Kind::wayland);
    ~GnomeSession();
    GnomeSession(const GnomeSession&) = delete;
    GnomeSession& operator=(const GnomeSession&) = delete;

    static constexpr const char* display = "wayland-0";
    const std::string& busAddress() const { return settings_.busAddress(); }
    ChildProcess& shell() { return *shell_; }

  private:
    IbusSession settings_;
    PrivateBus systemBus_{PrivateBus::Kind::system};
    std::unique_ptr<ChildProcess> logind_;
    std::unique_ptr<ChildProcess> shell_;
};

} // namespace hopsel::session
