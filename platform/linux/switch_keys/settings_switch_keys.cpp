#include "platform/linux/switch_keys/settings_switch_keys.h"

#include "platform/linux/switch_keys/key_accelerator.h"

namespace hopsel {

SettingsSwitchKeys::SettingsSwitchKeys(const char* schema, std::vector<Setting> settings,
                                       StoredSettings::Storage storage)
    : stored_(schema, storage), settings_(std::move(settings)) {}

SettingsSwitchKeys SettingsSwitchKeys::ofIBus(StoredSettings::Storage storage) {
    SettingsSwitchKeys keys("org.freedesktop.ibus.general.hotkey", {{"triggers", {"<Super>space"}}}, storage);
    keys.isReversedByShift_ = true;
    return keys;
}

SettingsSwitchKeys SettingsSwitchKeys::ofGnome(StoredSettings::Storage storage) {
    return {"org.gnome.desktop.wm.keybindings",
            {{"switch-input-source", {"<Super>space", "XF86Keyboard"}},
             {"switch-input-source-backward", {"<Shift><Super>space", "<Shift>XF86Keyboard"}}},
            storage};
}

std::vector<ShortcutKey> SettingsSwitchKeys::read() {
    std::vector<ShortcutKey> keys;
    for (const Setting& setting : settings_) {
        const std::vector<std::string> accelerators = stored_.texts(setting.key).value_or(setting.stock);
        for (const ShortcutKey& key : shortcutsFromAccelerators(accelerators)) {
            keys.push_back(key);
            if (!isReversedByShift_) continue;
            // IBus goes backward when Shift is held as well.
            keys.push_back(key);
            keys.back().modifiers.insert(ModifierKey::leftShift);
        }
    }
    return keys;
}

} // namespace hopsel
