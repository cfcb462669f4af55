#include "platform/linux/linux_launch.h"

#include "platform/linux/linux_platform.h"
#include "ui/design/symbols.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDir>
#include <QLibraryInfo>
#include <algorithm>
#include <csignal>
#include <filesystem>

namespace hopsel {

namespace {

/// Without a session bus there is none for us either: the D-Bus library would start one.
void refuseBusOfOurOwn() {
    const std::string runtimeBus = qEnvironmentVariable("XDG_RUNTIME_DIR").toStdString() + "/bus";
    if (qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS") && !std::filesystem::exists(runtimeBus))
        qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
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

} // namespace

void HiddenVariable::showAgain() const {
    if (value_.isNull())
        qunsetenv(name_);
    else
        qputenv(name_, value_);
}

LinuxLaunch::LinuxLaunch()
    : busAddress_("DBUS_SESSION_BUS_ADDRESS"), desktop_("XDG_CURRENT_DESKTOP"), inputMethod_("QT_IM_MODULE") {
    LinuxPlatform::requireSession(); // without it the toolkit would end in a crash report
    refuseBusOfOurOwn();
    // Qt's own dispatcher comes back from a wait some 10 µs sooner than the one over GLib, on every trigger.
    // Only this process is to use it, not what it starts.
    qputenv("QT_NO_GLIB", "1");
    reachFcitxAsIbus();
    // The themes of the GTK desktops bring a second toolkit and three times our memory with them; we draw
    // everything ourselves.
    if (!qgetenv("XDG_CURRENT_DESKTOP").contains("KDE")) qunsetenv("XDG_CURRENT_DESKTOP");
}

void LinuxLaunch::applicationMade() {
    // Panels and window lists take it from the windows where the program was not installed.
    QApplication::setWindowIcon(design::applicationIcon());
    // The toolkit's own connection, for its item in the panel: what it finds now it keeps.
    QDBusConnection::sessionBus();
    desktop_.showAgain();
    inputMethod_.showAgain();
    qunsetenv("QT_NO_GLIB");
    // Stopped from a terminal it would leave the keyboard standing still at the next shortcut.
    std::signal(SIGTSTP, [](int) {}); // unlike being ignored, what we start does not inherit this
}

void LinuxLaunch::finished() { busAddress_.showAgain(); }

} // namespace hopsel
