#include "app/linux/session/desktop_switch_keys.h"

#include "app/linux/session/accelerator.h"
#include "core/rules/system_shortcut_conflict.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <nlohmann/json.hpp>

namespace hopsel {

namespace {

constexpr const char* fcitxName = "org.fcitx.Fcitx5";
constexpr const char* ibusName = "org.freedesktop.IBus";
constexpr const char* gnomeName = "org.gnome.Shell";
constexpr const char* gnomeSchema = "org.gnome.desktop.wm.keybindings";

nlohmann::json hotKey(const ShortcutKey& key) {
    return {{"enabled", true},
            {"value", {{"type", "standard"}, {"parameters", {65535, key.keyCode, flagsOf(key.modifiers)}}}}};
}

} // namespace

DesktopSwitchKeys::DesktopSwitchKeys(const QDBusConnection& bus, const std::filesystem::path& fcitxFile)
    : bus_(bus),
      fcitx_(fcitxFile),
      ibus_("org.freedesktop.ibus.general.hotkey", "triggers"),
      gnomeForward_(gnomeSchema, "switch-input-source"),
      gnomeBackward_(gnomeSchema, "switch-input-source-backward") {
    if (!bus_.isConnected()) return;
    watcher_.setConnection(bus_);
    watcher_.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
    connect(&watcher_, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString& name, const QString&, const QString& newOwner) {
                if (newOwner.isEmpty())
                    owned_.erase(name);
                else
                    owned_.insert(name);
            });
    for (const char* name : {fcitxName, ibusName, gnomeName}) {
        watcher_.addWatchedService(name);
        askForOwner(name);
    }
}

void DesktopSwitchKeys::askForOwner(const QString& name) {
    const QDBusMessage question =
        QDBusMessage::createMethodCall("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                       "org.freedesktop.DBus", "NameHasOwner")
        << name;
    auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, name](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                const QDBusPendingReply<bool> answer = *finished;
                if (!answer.isError() && answer.value()) owned_.insert(name);
            });
}

std::vector<ShortcutKey> DesktopSwitchKeys::bindings() {
    Accelerators written = xkb_.read();
    const auto add = [&](const Accelerators& more) {
        written.insert(written.end(), more.begin(), more.end());
    };
    if (owns(fcitxName))
        add(fcitx_.read());
    else if (owns(ibusName) && !owns(gnomeName)) // under GNOME it is the shell that listens
        add(ibus_.read());
    if (owns(gnomeName)) {
        add(gnomeForward_.read());
        add(gnomeBackward_.read());
    }
    std::vector<ShortcutKey> found;
    for (const std::string& text : written) {
        if (const auto shortcut = shortcutFromAccelerator(text)) found.push_back(*shortcut);
    }
    return found;
}

// Both entries are always there: an absent one would mean what macOS binds by default.
bool DesktopSwitchKeys::conflicts(const ShortcutKey& key) {
    const std::vector<ShortcutKey> bound = bindings();
    for (std::size_t i = 0; i < bound.size(); i += 2) {
        nlohmann::json hotKeys{{"60", hotKey(bound[i])}, {"61", {{"enabled", false}}}};
        if (i + 1 < bound.size()) hotKeys["61"] = hotKey(bound[i + 1]);
        if (system_shortcut_conflict::conflicts(key, hotKeys)) return true;
    }
    return false;
}

} // namespace hopsel
