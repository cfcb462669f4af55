// To read from the storage, without the bus, one must know that it is an interface for storages.
#define G_SETTINGS_ENABLE_BACKEND

#include "platform/linux/dconf/stored_settings.h"

#include <gio/gsettingsbackend.h>

namespace hopsel {

bool StoredSettings::open() {
    if (backend_) return true;
    GSettingsSchemaSource* schemas =
        storage_.schemas != nullptr ? storage_.schemas : g_settings_schema_source_get_default();
    if (schemas == nullptr) return false; // no schema at all is installed
    schema_.reset(g_settings_schema_source_lookup(schemas, schemaName_, TRUE));
    // One without a path has no values of its own.
    if (!schema_ || g_settings_schema_get_path(schema_.get()) == nullptr) return false;
    if (storage_.values != nullptr) g_object_ref(storage_.values);
    backend_.reset(storage_.values != nullptr ? storage_.values : g_settings_backend_get_default());
    return true;
}

StoredSettings::Owned<GVariant> StoredSettings::value(const char* key, const GVariantType* type) {
    if (!open() || g_settings_schema_has_key(schema_.get(), key) == FALSE) return nullptr;
    const Owned<GSettingsSchemaKey> described(g_settings_schema_get_key(schema_.get(), key));
    Owned<GVariant> value(
        G_SETTINGS_BACKEND_GET_CLASS(backend_.get())->read(backend_.get(), path(key)->c_str(), type, FALSE));
    if (!value || g_variant_is_of_type(value.get(), type) == FALSE)
        value.reset(g_settings_schema_key_get_default_value(described.get()));
    if (g_variant_is_of_type(value.get(), type) == FALSE) return nullptr;
    return value;
}

std::optional<std::vector<std::string>> StoredSettings::texts(const char* key) {
    const Owned<GVariant> list = value(key, G_VARIANT_TYPE_STRING_ARRAY);
    if (!list) return std::nullopt;
    std::vector<std::string> texts;
    const gsize count = g_variant_n_children(list.get());
    for (gsize i = 0; i < count; ++i) {
        const Owned<GVariant> item(g_variant_get_child_value(list.get(), i));
        texts.emplace_back(g_variant_get_string(item.get(), nullptr));
    }
    return texts;
}

std::optional<std::string> StoredSettings::printed(const char* key) {
    if (!open() || g_settings_schema_has_key(schema_.get(), key) == FALSE) return std::nullopt;
    const Owned<GSettingsSchemaKey> described(g_settings_schema_get_key(schema_.get(), key));
    const auto stored = value(key, g_settings_schema_key_get_value_type(described.get()));
    if (!stored) return std::nullopt;
    const std::unique_ptr<char, decltype(&g_free)> text(g_variant_print(stored.get(), FALSE), g_free);
    return text.get();
}

std::optional<std::string> StoredSettings::path(const char* key) {
    if (!open() || g_settings_schema_has_key(schema_.get(), key) == FALSE) return std::nullopt;
    return std::string(g_settings_schema_get_path(schema_.get())) + key;
}

bool StoredSettings::flag(const char* key) {
    const Owned<GVariant> stored = value(key, G_VARIANT_TYPE_BOOLEAN);
    return stored && g_variant_get_boolean(stored.get()) != FALSE;
}

} // namespace hopsel
