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

std::vector<std::optional<XkbLayout>> layoutsOf(const std::vector<std::string>& names) {
    const auto lastPart = [](const std::string& name) {
        const auto separator = name.rfind(" - ");
        return separator == std::string::npos ? name : name.substr(separator + 3);
    };
    Found found;
    for (const std::string& name : names) {
        found.try_emplace(name);
        found.try_emplace(lastPart(name));
    }
    search(found);
    std::vector<std::optional<XkbLayout>> layouts;
    layouts.reserve(names.size());
    for (const std::string& name : names) {
        const auto& whole = found.at(name);
        layouts.push_back(whole ? whole : found.at(lastPart(name)));
    }
    return layouts;
}

std::vector<std::optional<XkbLayoutDescription>> describe(const std::vector<std::string>& names) {
    const auto found = layoutsOf(names);
    std::vector<XkbLayout> layouts;
    layouts.reserve(found.size());
    for (const auto& layout : found) layouts.push_back(layout.value_or(XkbLayout()));
    const std::vector<XkbLayoutDescription> descriptions = XkbLayoutRegistry().describe(layouts);
    std::vector<std::optional<XkbLayoutDescription>> result;
    result.reserve(found.size());
    for (std::size_t i = 0; i < found.size(); ++i)
        result.push_back(found[i] ? std::optional(descriptions[i]) : std::nullopt);
    return result;
}

} // namespace hopsel::layout_names
