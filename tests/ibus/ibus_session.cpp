#include "ibus/ibus_session.h"

#include "session/temporary_folder.h"
#include "support/qt_waiting.h"

#include <csignal>
#include <filesystem>

namespace hopsel::test {

namespace {

using session::ChildProcess;

void useOwnHome() {
    static const session::TemporaryFolder folder;
    for (const auto& [variable, name] : {std::pair{"HOME", "home"},
                                         {"XDG_CONFIG_HOME", "config"},
                                         {"XDG_CACHE_HOME", "cache"},
                                         {"XDG_DATA_HOME", "data"},
                                         {"XDG_RUNTIME_DIR", "run"}}) {
        const std::filesystem::path path = folder.path() / name;
        std::filesystem::create_directories(path);
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        setenv(variable, path.c_str(), 1);
    }
    for (const char* variable : {"IBUS_ADDRESS", "IBUS_ADDRESS_FILE", "WAYLAND_DISPLAY", "GSETTINGS_BACKEND"})
        unsetenv(variable);
}

std::unique_ptr<ChildProcess> start(const char* program, const std::vector<std::string>& arguments,
                                    const char* package) {
    ChildProcess::Options options;
    options.program = program;
    options.arguments = arguments;
    options.package = package;
    options.errors = ChildProcess::Output::discard; // that some services cannot be activated
    return std::make_unique<ChildProcess>(options);
}

void dconf(const std::vector<std::string>& arguments) {
    ChildProcess::Options options;
    options.program = "dconf";
    options.arguments = arguments;
    options.package = "dconf-cli";
    session::runProgram(options);
}

bool hasOwner(const QDBusConnection& bus, const QString& name) {
    auto call =
        QDBusMessage::createMethodCall("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "NameHasOwner");
    call << name;
    return bus.call(call).arguments().value(0).toBool();
}

} // namespace

IbusSession::IbusSession()
    : connection_((useOwnHome(),
                   QDBusConnection::connectToBus(QString::fromStdString(bus_.address()), "test session"))),
      settingsWriter_(start("/usr/libexec/dconf-service", {}, "dconf-service")) {
    if (!runLoopUntil([this] { return hasOwner(connection_, "ca.desrt.dconf"); }))
        throw std::runtime_error("dconf-service did not start");
    dconf({"reset", "-f", "/"});
}

IbusSession::~IbusSession() { QDBusConnection::disconnectFromBus("test session"); }

void IbusSession::set(const std::string& key, const std::string& value) { dconf({"write", key, value}); }

void IbusSession::startDaemon() {
    daemon_ = start("ibus-daemon", {"--panel", "disable", "--emoji-extension", "disable"}, "ibus");
}

void IbusSession::killDaemon() {
    daemon_->kill(SIGKILL);
    daemon_->waitForExit(std::chrono::seconds(5));
}

std::shared_ptr<IbusInputSources> IbusSession::makeSources() const {
    return std::make_shared<IbusInputSources>(connection_);
}

bool IbusSession::become(bool isInCharge, IbusInputSources& sources) {
    for (int i = 0; i < 200; ++i) {
        if (runLoopUntil([&] { return sources.isInCharge() == isInCharge; }, std::chrono::milliseconds(50)))
            return true;
        sources.retry();
    }
    return false;
}

} // namespace hopsel::test
