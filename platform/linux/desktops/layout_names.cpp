#include "platform/linux/desktops/layout_names.h"

#include <libintl.h>
#include <map>
#include <memory>
#include <xkbcommon/xkbregistry.h>

namespace hopsel::layout_names {

namespace {

struct ContextUnref {
    void operator()(rxkb_context* context) const { rxkb_context_unref(context); }
};

using Found = std::map<std::string, std::optional<XkbLayout>>;

void note(Found& found, const char* name, rxkb_layout* layout) {
    const auto wanted = found.find(name);
    if (wanted == found.end() || wanted->second) return;
    const char* variant = rxkb_layout_get_variant(layout);
    wanted->second = XkbLayout{rxkb_layout_get_name(layout), variant != nullptr ? variant : ""};
}

void search(Found& found) {
    const std::unique_ptr<rxkb_context, ContextUnref> context(
        rxkb_context_new(RXKB_CONTEXT_LOAD_EXOTIC_RULES));
    if (!context) return;
    rxkb_context_set_log_level(context.get(), RXKB_LOG_LEVEL_CRITICAL);
    if (!rxkb_context_parse_default_ruleset(context.get())) return;
    constexpr const char* textDomain = "xkeyboard-config";
    bind_textdomain_codeset(textDomain, "UTF-8");
    for (auto* layout = rxkb_layout_first(context.get()); layout != nullptr;
         layout = rxkb_layout_next(layout)) {
        const char* name = rxkb_layout_get_description(layout);
        if (name == nullptr) continue;
        note(found, name, layout);
        note(found, dgettext(textDomain, name), layout);
    }
}

} // namespace

std::vector<std::optional<XkbLayoutDescription>> describe(const std::vector<std::string>& names) {
    Found found;
    for (const std::string& name : names) found.try_emplace(name);
    search(found);
    std::vector<XkbLayout> layouts;
    for (const auto& [name, layout] : found) layouts.push_back(layout.value_or(XkbLayout()));
    const std::vector<XkbLayoutDescription> descriptions = XkbLayoutRegistry().describe(layouts);

    std::vector<std::optional<XkbLayoutDescription>> result;
    result.reserve(names.size());
    for (const std::string& name : names) {
        const auto at = found.find(name);
        const auto index = static_cast<std::size_t>(std::distance(found.begin(), at));
        result.push_back(at->second ? std::optional(descriptions[index]) : std::nullopt);
    }
    return result;
}

} // namespace hopsel::layout_names
