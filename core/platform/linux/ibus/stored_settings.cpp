// To read from the storage, without the bus, one must know that it is an interface for storages.
#define G_SETTINGS_ENABLE_BACKEND

#include "core/platform/linux/ibus/stored_settings.h"

#include <gio/gsettingsbackend.h>
#include <string>

namespace hopsel {

bool StoredSettings::open() {
    if (backend_) return true;
    GSettingsSchemaSource* schemas = g_settings_schema_source_get_default();
    if (schemas == nullptr) return false; // no schema at all is installed
    schema_.reset(g_settings_schema_source_lookup(schemas, schemaName_, TRUE));
    // One without a path has no values of its own.
    if (!schema_ || g_settings_schema_get_path(schema_.get()) == nullptr) return false;
    backend_.reset(g_settings_backend_get_default());
    return true;
}

StoredSettings::Owned<GVariant> StoredSettings::value(const char* key, const GVariantType* type) {
    if (!open() || g_settings_schema_has_key(schema_.get(), key) == FALSE) return nullptr;
    const Owned<GSettingsSchemaKey> described(g_settings_schema_get_key(schema_.get(), key));
    const std::string path = std::string(g_settings_schema_get_path(schema_.get())) + key;
    Owned<GVariant> value(
        G_SETTINGS_BACKEND_GET_CLASS(backend_.get())->read(backend_.get(), path.c_str(), type, FALSE));
    if (!value || g_variant_is_of_type(value.get(), type) == FALSE)
        value.reset(g_settings_schema_key_get_default_value(described.get()));
    if (g_variant_is_of_type(value.get(), type) == FALSE) return nullptr;
    return value;
}

} // namespace hopsel
