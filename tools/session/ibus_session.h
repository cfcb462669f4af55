// A user's session with IBus in it: a message bus, the user's settings, and the real daemon on request.
//
// Needs $DISPLAY. The home is one for the whole process, because the settings' library asks for it only once;
// each session starts with settings that nobody has changed. Destroy it after whatever connected to its bus.
#pragma once

#include "session/private_bus.h"

#include <memory>
#include <string>

namespace hopsel::session {

class IbusSession {
  public:
    enum class Panel { none, ofIbus };

    /// Throws `std::runtime_error`.
    IbusSession();

    /// As `dconf write`: "/desktop/ibus/general/preload-engines", "['hangul']".
    static void set(const std::string& key, const std::string& value);
    static void setEngines(const std::string& list) { set("/desktop/ibus/general/preload-engines", list); }
    static void setHangulStart(const std::string& mode) {
        set("/org/freedesktop/ibus/engine/hangul/initial-input-mode", "'" + mode + "'");
    }

    /// Returns at once. IBus's own trigger key works only with its panel.
    void startDaemon(Panel panel = Panel::none);
    /// As a crash would.
    void killDaemon();
    ChildProcess& daemon() { return *daemon_; }

    PrivateBus& sessionBus() { return bus_; }
    const std::string& busAddress() const { return bus_.address(); }

  private:
    PrivateBus bus_;
    std::unique_ptr<ChildProcess> settingsWriter_;
    std::unique_ptr<ChildProcess> daemon_;
};

} // namespace hopsel::session
