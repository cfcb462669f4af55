#include "platform/linux/xkb/xkb_layout_registry.h"

#include <QLocale>
#include <algorithm>
#include <libintl.h>
#include <memory>
#include <xkbcommon/xkbregistry.h>

namespace hopsel {

namespace {

constexpr const char* textDomain = "xkeyboard-config";

struct ContextUnref {
    void operator()(rxkb_context* context) const { rxkb_context_unref(context); }
};

/// The registry has ISO 639-2 and 639-3 codes; everything else on a desktop says "ko" and not "kor".
std::string shortCode(const char* code) {
    const QString name = QString::fromLatin1(code);
    const QLocale::Language language = QLocale::codeToLanguage(name);
    const bool isKnown = language != QLocale::AnyLanguage && language != QLocale::C;
    return (isKnown ? QLocale::languageToCode(language) : name).toStdString();
}

XkbLayoutDescription description(rxkb_layout* layout) {
    XkbLayoutDescription result;
    // The registry's files are UTF-8, but nothing checks that; the conversion makes sure.
    const char* localized = dgettext(textDomain, rxkb_layout_get_description(layout));
    result.name = QString::fromUtf8(localized).toStdString();
    for (auto* code = rxkb_layout_get_iso639_first(layout); code != nullptr;
         code = rxkb_iso639_code_next(code)) {
        result.languages.push_back(shortCode(rxkb_iso639_code_get_code(code)));
    }
    return result;
}

XkbLayout key(rxkb_layout* layout) {
    const char* variant = rxkb_layout_get_variant(layout);
    return {rxkb_layout_get_name(layout), variant != nullptr ? variant : ""};
}

} // namespace

std::vector<XkbLayoutDescription> XkbLayoutRegistry::describe(const std::vector<XkbLayout>& layouts) {
    const auto isKnown = [this](const XkbLayout& layout) { return known_.contains(layout); };
    if (!std::all_of(layouts.begin(), layouts.end(), isKnown)) read(layouts);
    std::vector<XkbLayoutDescription> result;
    result.reserve(layouts.size());
    for (const XkbLayout& layout : layouts) result.push_back(known_[layout]);
    return result;
}

void XkbLayoutRegistry::read(const std::vector<XkbLayout>& layouts) {
    for (const XkbLayout& layout : layouts)
        known_.try_emplace(layout); // also the unknown are asked only once
    // The extra rules hold the rarer layouts, which users do choose.
    const std::unique_ptr<rxkb_context, ContextUnref> context(
        rxkb_context_new(RXKB_CONTEXT_LOAD_EXOTIC_RULES));
    if (!context) return;
    rxkb_context_set_log_level(context.get(), RXKB_LOG_LEVEL_CRITICAL);
    if (!rxkb_context_parse_default_ruleset(context.get())) return;
    bind_textdomain_codeset(textDomain, "UTF-8");
    for (auto* layout = rxkb_layout_first(context.get()); layout != nullptr;
         layout = rxkb_layout_next(layout)) {
        const auto wanted = known_.find(key(layout));
        if (wanted != known_.end() && wanted->second.name.empty()) wanted->second = description(layout);
    }
}

} // namespace hopsel
