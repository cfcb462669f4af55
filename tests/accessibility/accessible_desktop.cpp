#include "accessible_desktop.h"

#include "support/qt_waiting.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>
#include <csignal>
#include <stdexcept>

namespace hopsel::test {

using session::ChildProcess;

namespace {

/// Asks over a connection of its own.
QDBusMessage ask(const session::PrivateBus& bus, const QDBusMessage& call) {
    const QString name = "test control";
    const QDBusMessage reply =
        QDBusConnection::connectToBus(QString::fromStdString(bus.address()), name).call(call);
    QDBusConnection::disconnectFromBus(name);
    return reply;
}

QDBusMessage launcherCall(const QString& interface, const QString& method) {
    return QDBusMessage::createMethodCall("org.a11y.Bus", "/org/a11y/bus", interface, method);
}

} // namespace

void AccessibleDesktop::start(bool isEnabled) {
    ChildProcess::Options options;
    options.program = "/usr/libexec/at-spi-bus-launcher";
    options.arguments = {"--launch-immediately", isEnabled ? "--a11y=1" : "--a11y=0"};
    options.package = "at-spi2-core";
    options.environment = {{"XDG_RUNTIME_DIR", folder_.path().string()},
                           {"HOME", folder_.path().string()},
                           {"GSETTINGS_BACKEND", "memory"}};
    options.errors = ChildProcess::Output::discard;
    launcher_ = std::make_unique<ChildProcess>(options);
    if (!runLoopUntil([&] {
            return ask(sessionBus, launcherCall("org.a11y.Bus", "GetAddress")).type() ==
                   QDBusMessage::ReplyMessage;
        }))
        throw std::runtime_error("at-spi-bus-launcher did not start");
}

void AccessibleDesktop::setEnabled(bool isEnabled) {
    ask(sessionBus, launcherCall("org.freedesktop.DBus.Properties", "Set")
                        << "org.a11y.Status" << "IsEnabled" << QVariant::fromValue(QDBusVariant(isEnabled)));
}

void AccessibleDesktop::killBus() {
    killpg(launcher_->id(), SIGKILL); // its bus and the registry are of its group
    launcher_->waitForExit(std::chrono::seconds(5));
}

std::unique_ptr<ChildProcess> AccessibleDesktop::startProgram(Toolkit toolkit) const {
    ChildProcess::Options options;
    if (toolkit == Toolkit::gtk) {
        options.program = "/usr/bin/python3"; // the one that Debian's modules belong to
        options.arguments = {HOPSEL_GTK_PROGRAM};
        options.package = "python3-gi and gir1.2-gtk-3.0";
    } else {
        options.program = HOPSEL_QT_PROGRAM;
    }
    options.environment = {{"HOME", folder_.path().string()},
                           {"XDG_RUNTIME_DIR", folder_.path().string()},
                           {"GSETTINGS_BACKEND", "memory"},
                           {"QT_QPA_PLATFORM", "xcb"},
                           {"ASAN_OPTIONS", "detect_leaks=0"}};
    options.errors = ChildProcess::Output::discard;
    return std::make_unique<ChildProcess>(options);
}

} // namespace hopsel::test
