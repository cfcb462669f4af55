#include "session/ibus_session.h"

#include "session/private_home.h"

#include <csignal>

namespace hopsel::session {

namespace {

ChildProcess::Options options(const char* program, const std::vector<std::string>& arguments,
                              const char* package) {
    ChildProcess::Options options;
    options.program = program;
    options.arguments = arguments;
    options.package = package;
    options.errors = ChildProcess::Output::discard; // that some services cannot be activated
    return options;
}

PrivateBus busWithHome() {
    static const PrivateHome home;
    return PrivateBus();
}

void dconf(const std::vector<std::string>& arguments) {
    runProgram(options("dconf", arguments, "dconf-cli"));
}

} // namespace

IbusSession::IbusSession()
    : bus_(busWithHome()),
      settingsWriter_(
          std::make_unique<ChildProcess>(options("/usr/libexec/dconf-service", {}, "dconf-service"))) {
    runProgram(
        options("gdbus", {"wait", "--session", "--timeout", "10", "ca.desrt.dconf"}, "libglib2.0-bin"));
    dconf({"reset", "-f", "/"});
}

void IbusSession::set(const std::string& key, const std::string& value) { dconf({"write", key, value}); }

void IbusSession::startDaemon(Panel panel) {
    std::vector<std::string> arguments{"--emoji-extension", "disable"};
    if (panel == Panel::none) arguments.insert(arguments.end(), {"--panel", "disable"});
    daemon_ = std::make_unique<ChildProcess>(options("ibus-daemon", arguments, "ibus"));
}

void IbusSession::killDaemon() {
    daemon_->kill(SIGKILL);
    daemon_->waitForExit(std::chrono::seconds(5));
}

} // namespace hopsel::session
