#include "platform/linux/switch_keys/desktop_switch_keys.h"

#include "core/rules/system_shortcut_conflict.h"
#include "platform/linux/switch_keys/fcitx_switch_keys.h"
#include "platform/linux/switch_keys/settings_switch_keys.h"
#include "platform/linux/switch_keys/xkb_switch_keys.h"

#include <QStandardPaths>
#include <memory>
#include <nlohmann/json.hpp>

namespace hopsel {

namespace {

using Json = nlohmann::json;

template <class Source>
DesktopSwitchKeys::Reader reader(std::shared_ptr<Source> source) {
    return [source = std::move(source)] { return source->read(); };
}

Json hotKey(const std::vector<ShortcutKey>& keys, std::size_t index) {
    if (index >= keys.size()) return {{"enabled", false}};
    const ShortcutKey& key = keys[index];
    constexpr int noCharacter = 65535;
    return {{"enabled", true},
            {"value",
             {{"type", "standard"},
              {"parameters", Json::array({noCharacter, key.keyCode, flagsOf(key.modifiers)})}}}};
}

} // namespace

DesktopSwitchKeys::Readers DesktopSwitchKeys::liveReaders() {
    const auto folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return {reader(std::make_shared<FcitxSwitchKeys>(folder.toStdString() + "/fcitx5/config")),
            reader(std::make_shared<SettingsSwitchKeys>(SettingsSwitchKeys::ofIBus({}))),
            reader(std::make_shared<SettingsSwitchKeys>(SettingsSwitchKeys::ofGnome({}))),
            reader(std::make_shared<XkbSwitchKeys>())};
}

DesktopSwitchKeys::DesktopSwitchKeys(const std::shared_ptr<BusLink>& sessionBus, Readers readers)
    : fcitx_(sessionBus, "org.fcitx.Fcitx5"),
      ibus_(sessionBus, "org.freedesktop.IBus"),
      gnome_(sessionBus, "org.gnome.Shell"),
      readers_(std::move(readers)) {}

std::vector<ShortcutKey> DesktopSwitchKeys::bound() const {
    std::vector<ShortcutKey> keys = readers_.xServer();
    const auto add = [&keys](const Reader& read) {
        const auto more = read();
        keys.insert(keys.end(), more.begin(), more.end());
    };
    const bool hasGnome = gnome_.isOwned();
    if (hasGnome) add(readers_.gnome);
    if (fcitx_.isOwned()) {
        add(readers_.fcitx); // which owns the name of IBus as well
    } else if (ibus_.isOwned() && !hasGnome) {
        // It is the panel of IBus that has its keys; GNOME runs IBus without one.
        add(readers_.ibus);
    }
    return keys;
}

bool DesktopSwitchKeys::conflicts(const ShortcutKey& key) const {
    const std::vector<ShortcutKey> keys = bound();
    // Both entries are always there, or macOS's stock keys would count. Without any keys, one pair is asked.
    for (std::size_t i = 0; i == 0 || i < keys.size(); i += 2) {
        const Json hotKeys{{"60", hotKey(keys, i)}, {"61", hotKey(keys, i + 1)}};
        if (system_shortcut_conflict::conflicts(key, hotKeys)) return true;
    }
    return false;
}

} // namespace hopsel
