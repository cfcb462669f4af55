#include "platform/linux/desktops/gnome_settings.h"

#include "platform/linux/base/told_text.h"

#include <algorithm>

namespace hopsel {

std::vector<GnomeSettings::Source> GnomeSettings::list(const char* key) {
    std::vector<Source> sources;
    const auto stored = settings_.value(key, G_VARIANT_TYPE("a(ss)"));
    if (!stored) return sources;
    const std::size_t count = std::min(g_variant_n_children(stored.get()), told_text::maxSources);
    for (std::size_t i = 0; i < count; ++i) {
        const char* type = nullptr;
        const char* name = nullptr;
        const StoredSettings::Owned<GVariant> source(g_variant_get_child_value(stored.get(), i));
        g_variant_get(source.get(), "(&s&s)", &type, &name);
        sources.emplace_back(QString::fromUtf8(type), QString::fromUtf8(name));
    }
    return sources;
}

std::optional<GnomeSettings::Values> GnomeSettings::read() {
    if (!settings_.open()) return std::nullopt;
    return Values{list("sources"), list("mru-sources"), settings_.flag("per-window")};
}

} // namespace hopsel
