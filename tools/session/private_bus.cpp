#include "session/private_bus.h"

#include <csignal>
#include <cstdlib>
#include <stdexcept>

namespace hopsel::session {

namespace {

constexpr auto patience = std::chrono::seconds(10);

// Everybody may own and call everything: the tests play system services as an ordinary user.
std::string configuration(const std::filesystem::path& folder) {
    return R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:dir=)" +
           folder.string() + R"(</listen>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";
}

} // namespace

PrivateBus::PrivateBus(Kind kind)
    : variable_(kind == Kind::session ? "DBUS_SESSION_BUS_ADDRESS" : "DBUS_SYSTEM_BUS_ADDRESS") {
    start({});
    if (const char* previous = std::getenv(variable_)) previousAddress_ = previous;
    setenv(variable_, address_.c_str(), 1);
}

void PrivateBus::start(const std::vector<std::string>& arguments) {
    ChildProcess::Options options;
    options.program = "dbus-daemon";
    options.arguments = {"--config-file=" + folder_.write("bus.conf", configuration(folder_.path())).string(),
                         "--nofork", "--nopidfile", "--print-address=1"};
    options.arguments.insert(options.arguments.end(), arguments.begin(), arguments.end());
    options.package = "dbus-daemon";
    options.output = ChildProcess::Output::capture;
    options.errors = ChildProcess::Output::discard; // it may not raise its own limits in a container
    daemon_ = std::make_unique<ChildProcess>(options);
    const auto line = daemon_->waitForLine("unix:", patience);
    if (!line) throw std::runtime_error("dbus-daemon did not start");
    address_ =
        line->substr(0, line->find(',')); // without its own mark, as sessions name it: another may follow
}

void PrivateBus::restart() { start({"--address=" + address_}); }

PrivateBus::~PrivateBus() {
    if (previousAddress_)
        setenv(variable_, previousAddress_->c_str(), 1);
    else
        unsetenv(variable_);
}

void PrivateBus::kill() {
    daemon_->kill(SIGKILL);
    daemon_->waitForExit(patience);
}

} // namespace hopsel::session
