#include "benchmarks/method_watch.h"

#include "session/child_process.h"

#include <QCoreApplication>
#include <QTimer>
#include <stdexcept>

namespace hopsel::bench {

using namespace session;

namespace {

constexpr auto connectionName = "method watch";

QString ibusAddress() {
    ChildProcess::Options options;
    options.program = options.package = "ibus";
    options.arguments = {"address"};
    const Deadline deadline(std::chrono::seconds(10));
    for (;;) {
        const QString address = QString::fromStdString(runProgram(options)).trimmed();
        if (address.startsWith("unix:")) return address;
        if (deadline.hasPassed()) throw std::runtime_error("ibus-daemon did not start");
    }
}

} // namespace

MethodWatch::MethodWatch(const QString& address, QDBusMessage selection)
    : bus_(QDBusConnection::connectToBus(address, connectionName)), selection_(std::move(selection)) {
    if (!bus_.isConnected()) throw std::runtime_error("no connection to " + address.toStdString());
}

MethodWatch::~MethodWatch() { QDBusConnection::disconnectFromBus(connectionName); }

std::unique_ptr<MethodWatch> MethodWatch::ofIbus() {
    const QString name = "org.freedesktop.IBus";
    std::unique_ptr<MethodWatch> watch(
        new MethodWatch(ibusAddress(), QDBusMessage::createMethodCall(name, "/org/freedesktop/IBus", name,
                                                                      "SetGlobalEngine")));
    watch->listen(name, "GlobalEngineChanged");
    return watch;
}

std::unique_ptr<MethodWatch> MethodWatch::ofFcitx() {
    std::unique_ptr<MethodWatch> watch(
        new MethodWatch(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"),
                        QDBusMessage::createMethodCall("org.fcitx.Fcitx5", "/controller",
                                                       "org.fcitx.Fcitx.Controller1", "SetCurrentIM")));
    const QString interface = "org.fcitx.Fcitx.InputContext1";
    watch->listen(interface, "CurrentIM");
    auto match = QDBusMessage::createMethodCall("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                                "org.freedesktop.DBus", "AddMatch");
    match << "type='signal',eavesdrop='true',interface='" + interface + "'";
    if (watch->bus_.call(match).type() == QDBusMessage::ErrorMessage)
        throw std::runtime_error("the bus lets nobody listen in");
    return watch;
}

void MethodWatch::listen(const QString& interface, const QString& signal) {
    bus_.connect(QString(), QString(), interface, signal, this, SLOT(hear(QDBusMessage)));
}

void MethodWatch::hear(const QDBusMessage& signal) {
    // The name, or before it the title.
    const QString method = signal.arguments().value(signal.arguments().size() > 1 ? 1 : 0).toString();
    if (method == current_) return;
    current_ = method;
    heardAt_ = monotonicSeconds();
}

std::optional<double> MethodWatch::waitFor(const QString& method, std::chrono::milliseconds timeout) {
    QTimer wakeUp;
    wakeUp.start(timeout);
    for (const Deadline deadline(timeout); current_ != method;) {
        if (deadline.hasPassed()) return std::nullopt;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return heardAt_;
}

void MethodWatch::select(const QString& method) {
    selection_.setArguments({method});
    bus_.send(selection_);
}

} // namespace hopsel::bench
