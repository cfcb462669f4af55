// The keys for switching input sources that IBus and GNOME keep in GSettings.
//
// Owned by whoever asks. Each question reads the settings' storage as it is now, in less than a microsecond.
// The values are read from the storage itself and not through a GSettings object: that would open a
// connection to the session bus and start threads only to be told of changes, and GLib ends a process whose
// session bus goes away. Main thread.
#pragma once

#include "core/keys/shortcut_key.h"

#include <gio/gio.h>
#include <memory>
#include <string>
#include <vector>

namespace hopsel {

class SettingsSwitchKeys {
  public:
    /// Where settings come from; nothing means the user's own.
    struct Storage {
        GSettingsSchemaSource* schemas = nullptr;
        GSettingsBackend* values = nullptr;
    };
    struct Setting {
        const char* key;
        std::vector<std::string> stock; ///< what counts if no such setting is installed
    };

    /// The storage is opened at the first question.
    SettingsSwitchKeys(const char* schema, std::vector<Setting> settings, Storage storage);

    std::vector<ShortcutKey> read();

    static SettingsSwitchKeys ofIBus(Storage storage);
    static SettingsSwitchKeys ofGnome(Storage storage);

  private:
    struct Unref {
        void operator()(GSettingsSchema* schema) const { g_settings_schema_unref(schema); }
        void operator()(GSettingsSchemaKey* key) const { g_settings_schema_key_unref(key); }
        void operator()(GSettingsBackend* backend) const { g_object_unref(backend); }
        void operator()(GVariant* value) const { g_variant_unref(value); }
    };
    template <class T>
    using Owned = std::unique_ptr<T, Unref>;

    void open();
    Owned<GVariant> value(const Setting& setting) const;

    const char* schemaName_;
    std::vector<Setting> settings_;
    Storage storage_;
    bool isOpen_ = false;
    bool isReversedByShift_ = false;
    Owned<GSettingsSchema> schema_;
    Owned<GSettingsBackend> backend_;
};

} // namespace hopsel
