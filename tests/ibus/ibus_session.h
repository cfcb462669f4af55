// A session with IBus in it: an X server, a message bus, the user's settings, and the real daemon on request.
//
// Home and settings are folders of the test binary's own, the same for all its tests, because the settings'
// library asks for them only once; each session starts with settings that nobody has changed.
#pragma once

#include "core/platform/linux/ibus/ibus_input_sources.h"
#include "session/private_bus.h"
#include "session/x_server.h"

#include <QDBusConnection>
#include <memory>
#include <string>

namespace hopsel::test {

class IbusSession {
  public:
    IbusSession();
    ~IbusSession();
    IbusSession(const IbusSession&) = delete;
    IbusSession& operator=(const IbusSession&) = delete;

    /// As `dconf write`: "/desktop/ibus/general/preload-engines", "['hangul']".
    static void set(const std::string& key, const std::string& value);
    static void setEngines(const std::string& list) { set("/desktop/ibus/general/preload-engines", list); }
    static void setHangulStart(const std::string& mode) {
        set("/org/freedesktop/ibus/engine/hangul/initial-input-mode", "'" + mode + "'");
    }

    /// Returns at once; `become` waits.
    void startDaemon();
    /// As a crash would.
    void killDaemon();
    session::ChildProcess& daemon() { return *daemon_; }

    void startWindowManager() { server_.startWindowManager(); }
    void startPanel() { server_.startPanel(); }
    const QDBusConnection& bus() const { return connection_; }
    /// A new framework on this session's bus, without waiting for it.
    std::shared_ptr<IbusInputSources> makeSources() const;
    /// Lets the framework retry, as the program does every so often, until it is in charge or no longer.
    static bool become(bool isInCharge, IbusInputSources& sources);

  private:
    session::XServer server_;
    session::PrivateBus bus_;
    QDBusConnection connection_;
    std::unique_ptr<session::ChildProcess> settingsWriter_;
    std::unique_ptr<session::ChildProcess> daemon_;
};

} // namespace hopsel::test
