// To read from the storage, without the bus, one must know that it is an interface for storages.
#define G_SETTINGS_ENABLE_BACKEND

#include "app/linux/session/settings_switch_keys.h"

#include "app/linux/session/key_accelerator.h"

#include <gio/gsettingsbackend.h>

namespace hopsel {

SettingsSwitchKeys::SettingsSwitchKeys(const char* schema, std::vector<Setting> settings, Storage storage)
    : schemaName_(schema), settings_(std::move(settings)), storage_(storage) {}

SettingsSwitchKeys SettingsSwitchKeys::ofIBus(Storage storage) {
    SettingsSwitchKeys keys("org.freedesktop.ibus.general.hotkey", {{"triggers", {"<Super>space"}}}, storage);
    keys.isReversedByShift_ = true;
    return keys;
}

SettingsSwitchKeys SettingsSwitchKeys::ofGnome(Storage storage) {
    return {"org.gnome.desktop.wm.keybindings",
            {{"switch-input-source", {"<Super>space", "XF86Keyboard"}},
             {"switch-input-source-backward", {"<Shift><Super>space", "<Shift>XF86Keyboard"}}},
            storage};
}

void SettingsSwitchKeys::open() {
    if (isOpen_) return;
    isOpen_ = true;
    GSettingsSchemaSource* schemas =
        storage_.schemas != nullptr ? storage_.schemas : g_settings_schema_source_get_default();
    if (schemas == nullptr) return; // no schema at all is installed
    schema_.reset(g_settings_schema_source_lookup(schemas, schemaName_, TRUE));
    // One without a path has no values of its own.
    if (schema_ && g_settings_schema_get_path(schema_.get()) == nullptr) schema_.reset();
    if (!schema_) return;
    if (storage_.values != nullptr) g_object_ref(storage_.values);
    backend_.reset(storage_.values != nullptr ? storage_.values : g_settings_backend_get_default());
}

SettingsSwitchKeys::Owned<GVariant> SettingsSwitchKeys::value(const Setting& setting) const {
    if (!schema_ || g_settings_schema_has_key(schema_.get(), setting.key) == FALSE) return nullptr;
    const Owned<GSettingsSchemaKey> key(g_settings_schema_get_key(schema_.get(), setting.key));
    const GVariantType* type = G_VARIANT_TYPE_STRING_ARRAY;
    if (g_variant_type_equal(g_settings_schema_key_get_value_type(key.get()), type) == FALSE) return nullptr;

    const std::string path = std::string(g_settings_schema_get_path(schema_.get())) + setting.key;
    Owned<GVariant> value(
        G_SETTINGS_BACKEND_GET_CLASS(backend_.get())->read(backend_.get(), path.c_str(), type, FALSE));
    if (value && g_variant_is_of_type(value.get(), type) != FALSE) return value;
    return Owned<GVariant>(g_settings_schema_key_get_default_value(key.get()));
}

std::vector<ShortcutKey> SettingsSwitchKeys::read() {
    open();
    std::vector<ShortcutKey> keys;
    for (const Setting& setting : settings_) {
        std::vector<std::string> accelerators;
        if (const Owned<GVariant> set = value(setting)) {
            const gsize count = g_variant_n_children(set.get());
            for (gsize i = 0; i < count; ++i) {
                const Owned<GVariant> item(g_variant_get_child_value(set.get(), i));
                accelerators.emplace_back(g_variant_get_string(item.get(), nullptr));
            }
        } else {
            accelerators = setting.stock;
        }
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
