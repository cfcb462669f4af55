// To read from the storage, without the bus, one must know that it is an interface for storages.
#define G_SETTINGS_ENABLE_BACKEND

#include "core/platform/linux/desktops/gnome_settings.h"

#include "core/platform/linux/desktops/told_text.h"

#include <algorithm>
#include <gio/gsettingsbackend.h>
#include <string>

namespace hopsel {

void GnomeSettings::open() {
    if (isOpen_) return;
    isOpen_ = true;
    GSettingsSchemaSource* schemas = g_settings_schema_source_get_default();
    if (schemas == nullptr) return; // no schema at all is installed
    schema_.reset(g_settings_schema_source_lookup(schemas, schemaName, TRUE));
    if (schema_) backend_.reset(g_settings_backend_get_default());
}

GnomeSettings::Owned<GVariant> GnomeSettings::value(const char* key, const GVariantType* type) const {
    if (g_settings_schema_has_key(schema_.get(), key) == FALSE) return nullptr;
    const Owned<GSettingsSchemaKey> described(g_settings_schema_get_key(schema_.get(), key));
    Owned<GVariant> value(G_SETTINGS_BACKEND_GET_CLASS(backend_.get())
                              ->read(backend_.get(), (std::string(path) + key).c_str(), type, FALSE));
    if (!value || g_variant_is_of_type(value.get(), type) == FALSE)
        value.reset(g_settings_schema_key_get_default_value(described.get()));
    if (g_variant_is_of_type(value.get(), type) == FALSE) return nullptr;
    return value;
}

std::vector<GnomeSettings::Source> GnomeSettings::list(const char* key) const {
    std::vector<Source> sources;
    const Owned<GVariant> stored = value(key, G_VARIANT_TYPE("a(ss)"));
    if (!stored) return sources;
    const std::size_t count = std::min(g_variant_n_children(stored.get()), told_text::maxSources);
    for (std::size_t i = 0; i < count; ++i) {
        const char* type = nullptr;
        const char* name = nullptr;
        const Owned<GVariant> source(g_variant_get_child_value(stored.get(), i));
        g_variant_get(source.get(), "(&s&s)", &type, &name);
        sources.emplace_back(QString::fromUtf8(type), QString::fromUtf8(name));
    }
    return sources;
}

std::optional<GnomeSettings::Values> GnomeSettings::read() {
    open();
    if (!backend_) return std::nullopt;
    const Owned<GVariant> perWindow = value("per-window", G_VARIANT_TYPE_BOOLEAN);
    return Values{list("sources"), list("mru-sources"),
                  perWindow && g_variant_get_boolean(perWindow.get()) != FALSE};
}

} // namespace hopsel
