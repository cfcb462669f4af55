#include "platform/linux/linux_launch.h"

#include "platform/linux/base/session_kind.h"
#include "platform/linux/base/system_log.h"
#include "platform/linux/bus/bus_address.h"
#include "platform/linux/bus/bus_probe.h"
#include "platform/linux/ibus/ibus_address.h"
#include "platform/linux/linux_platform.h"
#include "platform/linux/wayland/wayland_display.h"
#include "platform/posix/open_files.h"
#include "ui/design/symbols.h"

#include <QAccessible>
#include <QApplication>
#include <QDBusConnection>
#include <QDir>
#include <QLibraryInfo>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <xcb/xcb.h>

namespace hopsel {

namespace {

constexpr const char* accessibilityVariable = "AT_SPI_BUS_ADDRESS";
/// Some twenty are open when everything runs; windows, frameworks and what is started take more.
constexpr int openFiles = 64;
/// An address of a bus that leads nowhere, at once.
constexpr const char* nowhere = "disabled:";

/// Without a session bus there is none for us either: the D-Bus library would start one.
void refuseBusOfOurOwn() {
    const std::string runtimeBus = qEnvironmentVariable("XDG_RUNTIME_DIR").toStdString() + "/bus";
    if (qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS") && !std::filesystem::exists(runtimeBus))
        qputenv("DBUS_SESSION_BUS_ADDRESS", nowhere);
}

/// The toolkit would wait for these in our main thread, half a minute each, if they hang. Then it is to do
/// without.
void refuseWhatHangs() {
    constexpr std::chrono::milliseconds patience(250);
    const QString bus = bus_address::session();
    constexpr bus_probe::Service accessibility{"org.a11y.Bus", "/org/a11y/bus", "org.a11y.Status",
                                               "IsEnabled"};
    if (!bus_address::local(bus).isEmpty()) {
        const bus_probe::Answer answer = bus_probe::ask(bus, patience, &accessibility);
        if (answer == bus_probe::Answer::none) qputenv("DBUS_SESSION_BUS_ADDRESS", nowhere);
        if (answer == bus_probe::Answer::silence) qputenv(accessibilityVariable, nowhere);
    }
    const auto ibus = qgetenv("QT_IM_MODULE") == "ibus" ? ibus_address::current() : std::nullopt;
    if (ibus && bus_probe::ask(*ibus, patience) == bus_probe::Answer::none)
        qputenv("QT_IM_MODULE", "compose");
}

/// Is there a plugin of this toolkit through which Fcitx5 reaches text fields?
bool hasFcitxPlugin() {
    QStringList folders = qEnvironmentVariable("QT_PLUGIN_PATH").split(':', Qt::SkipEmptyParts);
    folders.append(QLibraryInfo::path(QLibraryInfo::PluginsPath));
    return std::any_of(folders.begin(), folders.end(), [](const QString& folder) {
        return !QDir(folder + "/platforminputcontexts").entryList({"*fcitx*"}, QDir::Files).isEmpty();
    });
}

/// Without one the key could not be tried where it is asked for: Fcitx5 also serves the clients of IBus, and
/// the plugin for these comes with the toolkit.
void reachFcitxAsIbus() {
    if (qgetenv("QT_IM_MODULE").startsWith("fcitx") && !hasFcitxPlugin()) qputenv("QT_IM_MODULE", "ibus");
}

/// The toolkit cannot move its windows to another server, and ends the process where it notices.
void sayIfTheServerHasGone() {
    const auto* application = qApp; // lives, if this is the toolkit's doing
    if (application == nullptr) return;
    const auto* display = application->nativeInterface<QNativeInterface::QX11Application>();
    if (display == nullptr || xcb_connection_has_error(display->connection()) == 0) return;
    SystemLog().write(Log::Level::error, "Session",
                      "the X server at " + qEnvironmentVariable("DISPLAY").toStdString() +
                          " has gone, and the keyboard and every window with it: ends, to be started again "
                          "with the next session");
}

/// Our windows are the compositor's own: an X server would only be started for them. The shell's input method
/// is IBus, and the toolkit does not know the way that leads there through the compositor.
void useWayland() {
    if (!session_kind::isWayland() || !wayland_display::isThere()) return;
    if (session_kind::isGnomeWayland() && qEnvironmentVariableIsEmpty("QT_IM_MODULE"))
        qputenv("QT_IM_MODULE", "ibus");
    if (!qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) return;
    const QDir plugins(QLibraryInfo::path(QLibraryInfo::PluginsPath) + "/platforms");
    if (!plugins.entryList({"libqwayland*"}, QDir::Files).isEmpty())
        qputenv("QT_QPA_PLATFORM", "wayland");
    else if (!session_kind::hasDisplay())
        throw std::runtime_error("Qt cannot show windows under Wayland here; please install qt6-wayland");
}

} // namespace

void HiddenVariable::showAgain() const {
    if (value_.isNull())
        qunsetenv(name_);
    else
        qputenv(name_, value_);
}

LinuxLaunch::LinuxLaunch()
    : busAddress_("DBUS_SESSION_BUS_ADDRESS"),
      desktop_("XDG_CURRENT_DESKTOP"),
      inputMethod_("QT_IM_MODULE"),
      windows_("QT_QPA_PLATFORM"),
      accessibility_(accessibilityVariable) {
    posix::requireOpenFiles(openFiles);
    LinuxPlatform::requireSession(); // without it the toolkit would end in a crash report
    useWayland();
    if (!session_kind::isWayland()) guard_ = KeyboardGuard::start();
    refuseBusOfOurOwn();
    reachFcitxAsIbus();
    refuseWhatHangs();
    // Qt's own dispatcher comes back from a wait some 10 µs sooner than the one over GLib, on every trigger.
    // Only this process is to use it, not what it starts.
    qputenv("QT_NO_GLIB", "1");
    // The themes of the GTK desktops bring a second toolkit and three times our memory with them; we draw
    // everything ourselves.
    if (!qgetenv("XDG_CURRENT_DESKTOP").contains("KDE")) qunsetenv("XDG_CURRENT_DESKTOP");
}

void LinuxLaunch::applicationMade() {
    // Panels and window lists take it from the windows where the program was not installed.
    QApplication::setWindowIcon(design::applicationIcon());
    // The toolkit's own connection, for its item in the panel: what it finds now it keeps.
    QDBusConnection::sessionBus();
    if (qgetenv(accessibilityVariable) == nowhere) QAccessible::isActive(); // likewise
    std::atexit(sayIfTheServerHasGone);
    desktop_.showAgain();
    inputMethod_.showAgain();
    windows_.showAgain();
    qunsetenv("QT_NO_GLIB");
    // Stopped from a terminal it would leave the keyboard standing still at the next shortcut.
    std::signal(SIGTSTP, [](int) {}); // unlike being ignored, what we start does not inherit this
}

void LinuxLaunch::finished() {
    busAddress_.showAgain();
    // The toolkit reads it in its first turn of the loop.
    QTimer::singleShot(0, [variable = accessibility_] { variable.showAgain(); });
}

} // namespace hopsel
