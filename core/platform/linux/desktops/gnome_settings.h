// GNOME's settings for input sources, as they are stored now.
//
// A member of the framework that reads them. The values are read from the storage itself and not through a
// GSettings object, which would open a connection to the session bus and start threads, only to be told of
// changes; and GLib ends a process whose session bus goes away. Main thread.
#pragma once

#include <QString>
#include <gio/gio.h>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace hopsel {

class GnomeSettings {
  public:
    /// A source's type, "xkb" or "ibus", and its name there: "kr+kr104", "hangul".
    using Source = std::pair<QString, QString>;
    struct Values {
        std::vector<Source> sources;
        std::vector<Source> recent; ///< the one used last first
        bool isPerWindow = false;   ///< each window has its own current source
        friend bool operator==(const Values&, const Values&) = default;
    };

    /// Absent if GNOME's settings are not installed. The storage is opened at the first call.
    std::optional<Values> read();

    static constexpr const char* schemaName = "org.gnome.desktop.input-sources";
    static constexpr const char* path = "/org/gnome/desktop/input-sources/";

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
    Owned<GVariant> value(const char* key, const GVariantType* type) const;
    std::vector<Source> list(const char* key) const;

    bool isOpen_ = false;
    Owned<GSettingsSchema> schema_;
    Owned<GSettingsBackend> backend_;
};

} // namespace hopsel
