// Values of one GSettings schema, as they are stored now.
//
// A member of whoever reads them. The values are read from the storage itself and not through a GSettings
// object, which would open a connection to the session bus and start threads, only to be told of changes; and
// GLib ends a process whose session bus goes away. A question takes some microseconds.
#pragma once

#include <gio/gio.h>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace hopsel {

class StoredSettings {
  public:
    struct Unref {
        void operator()(GSettingsSchema* schema) const { g_settings_schema_unref(schema); }
        void operator()(GSettingsSchemaKey* key) const { g_settings_schema_key_unref(key); }
        void operator()(GSettingsBackend* backend) const { g_object_unref(backend); }
        void operator()(GVariant* value) const { g_variant_unref(value); }
    };
    template <class T>
    using Owned = std::unique_ptr<T, Unref>;

    /// Where settings come from; nothing means the user's own.
    struct Storage {
        GSettingsSchemaSource* schemas = nullptr;
        GSettingsBackend* values = nullptr;
    };

    /// The storage is opened at the first question. A schema must have been installed before the first
    /// question of the process to any.
    StoredSettings(const char* schema, Storage storage) : schemaName_(schema), storage_(storage) {}
    explicit StoredSettings(const char* schema) : StoredSettings(schema, Storage()) {}

    /// Whether there is such a schema, and so a value for each of its keys.
    bool open();
    /// The stored value or the schema's default; nothing if there is no such setting of this type.
    Owned<GVariant> value(const char* key, const GVariantType* type);
    /// A list of texts. Absent if there is no such setting.
    std::optional<std::vector<std::string>> texts(const char* key);
    /// A value of any type, as GVariant prints it: "'hangul'", "3". Absent if there is no such setting.
    std::optional<std::string> printed(const char* key);
    /// Where the storage keeps it. Absent if there is no such setting.
    std::optional<std::string> path(const char* key);
    /// False if there is no such setting.
    bool flag(const char* key);

  private:
    const char* schemaName_;
    Storage storage_;
    Owned<GSettingsSchema> schema_;
    Owned<GSettingsBackend> backend_;
};

} // namespace hopsel
