// The keys for switching input sources that IBus and GNOME keep in GSettings.
//
// Owned by whoever asks; each question reads them as they are now.
#pragma once

#include "core/keys/shortcut_key.h"
#include "platform/linux/dconf/stored_settings.h"

#include <string>
#include <vector>

namespace hopsel {

class SettingsSwitchKeys {
  public:
    struct Setting {
        const char* key;
        std::vector<std::string> stock; ///< what counts if no such setting is installed
    };

    SettingsSwitchKeys(const char* schema, std::vector<Setting> settings, StoredSettings::Storage storage);

    std::vector<ShortcutKey> read();

    static SettingsSwitchKeys ofIBus(StoredSettings::Storage storage);
    static SettingsSwitchKeys ofGnome(StoredSettings::Storage storage);

  private:
    StoredSettings stored_;
    std::vector<Setting> settings_;
    bool isReversedByShift_ = false;
};

} // namespace hopsel
