// A desktop with accessibility: a session bus and, on request, the launcher of the accessibility bus, whose
// registry starts when it is first needed.
//
// Needs a display: make it after the X server. HOME and the user's settings are not touched.
#pragma once

#include "session/child_process.h"
#include "session/private_bus.h"
#include "session/temporary_folder.h"
#include "support/qt_waiting.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <csignal>
#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace hopsel::test {

class AccessibleDesktop {
  public:
    /// Returns when the launcher is on the session bus.
    void start(bool isEnabled = true) {
        launcher_ = run("/usr/libexec/at-spi-bus-launcher", "at-spi2-core",
                        {"--launch-immediately", isEnabled ? "--a11y=1" : "--a11y=0"});
        EXPECT_TRUE(runLoopUntil(
            [&] { return ask("org.a11y.Bus", "GetAddress").type() == QDBusMessage::ReplyMessage; }));
    }
    void setEnabled(bool isEnabled) {
        ask("org.freedesktop.DBus.Properties", "Set",
            {"org.a11y.Status", "IsEnabled", QVariant::fromValue(QDBusVariant(isEnabled))});
    }
    /// Ends the launcher, and with it its bus, as a crash would.
    void killBus() {
        killpg(launcher_->id(), SIGKILL); // its bus and the registry are of its group
        launcher_->waitForExit(std::chrono::seconds(5));
    }

    enum class Toolkit { gtk, qt };
    /// A program with the two fields.
    std::unique_ptr<session::ChildProcess> startProgram(Toolkit toolkit) const {
        if (toolkit == Toolkit::qt) return run(HOPSEL_QT_PROGRAM, "", {});
        // The Python that Debian's modules belong to.
        return run("/usr/bin/python3", "python3-gi and gir1.2-gtk-3.0", {HOPSEL_GTK_PROGRAM});
    }

    session::PrivateBus sessionBus;

  private:
    std::unique_ptr<session::ChildProcess> run(const std::string& program, const std::string& package,
                                               const std::vector<std::string>& arguments) const {
        session::ChildProcess::Options options;
        options.program = program;
        options.package = package;
        options.arguments = arguments;
        options.environment = {{"HOME", folder_.path().string()},
                               {"XDG_RUNTIME_DIR", folder_.path().string()},
                               {"GSETTINGS_BACKEND", "memory"},
                               {"QT_QPA_PLATFORM", "xcb"},
                               {"ASAN_OPTIONS", "detect_leaks=0"}};
        options.errors = session::ChildProcess::Output::discard;
        return std::make_unique<session::ChildProcess>(options);
    }
    /// Over a connection of its own.
    QDBusMessage ask(const QString& interface, const QString& method, const QVariantList& arguments = {}) {
        auto call = QDBusMessage::createMethodCall("org.a11y.Bus", "/org/a11y/bus", interface, method);
        call.setArguments(arguments);
        const QString name = "test control";
        const auto address = QString::fromStdString(sessionBus.address());
        const QDBusMessage reply = QDBusConnection::connectToBus(address, name).call(call);
        QDBusConnection::disconnectFromBus(name);
        return reply;
    }

    session::TemporaryFolder folder_;
    std::unique_ptr<session::ChildProcess> launcher_;
};

} // namespace hopsel::test
