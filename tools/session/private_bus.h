// A message bus of a test's own, and the environment variable that leads to it.
//
// While it lives, the variable (DBUS_SESSION_BUS_ADDRESS, or DBUS_SYSTEM_BUS_ADDRESS) names it. Nothing that
// is installed can be activated on it: a service is there only if the test starts it. Destroy it after
// whatever connected to it.
#pragma once

#include "session/child_process.h"
#include "session/temporary_folder.h"

#include <memory>
#include <optional>
#include <string>

namespace hopsel::session {

class PrivateBus {
  public:
    enum class Kind { session, system };

    /// Throws `std::runtime_error`, also when dbus-daemon is not installed.
    explicit PrivateBus(Kind kind = Kind::session);
    ~PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    const std::string& address() const { return address_; }
    ChildProcess& process() { return *daemon_; }
    /// Ends the bus as a crash would. The variable goes on naming it.
    void kill();
    /// After a `kill`: another one at the same address.
    void restart();

  private:
    void start(const std::vector<std::string>& arguments);

    const char* variable_;
    std::optional<std::string> previousAddress_;
    TemporaryFolder folder_;
    std::unique_ptr<ChildProcess> daemon_;
    std::string address_;
};

} // namespace hopsel::session
