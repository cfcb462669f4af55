#include "platform/macos/sources/mac_input_source_catalog.h"

#include "platform/macos/base/cf_values.h"

#include <Carbon/Carbon.h>

namespace hopsel {

namespace {

TISInputSourceRef asSource(const void* element) {
    return static_cast<TISInputSourceRef>(const_cast<void*>(element));
}

/// The enabled sources with this property; nothing if there is no list.
CfRef<CFArrayRef> enabledSources(CFStringRef key, CFTypeRef value) {
    const auto filter = cf_values::dictionary(key, value);
    auto list = CfRef<CFArrayRef>::adopt(TISCreateInputSourceList(filter.get(), 0));
    if (list && CFGetTypeID(list.get()) != CFArrayGetTypeID()) return {};
    return list;
}

std::optional<InputSourceInfo> describe(TISInputSourceRef source) {
    const auto property = [&](CFStringRef key) { return TISGetInputSourceProperty(source, key); };
    std::optional<std::string> id = cf_values::text(property(kTISPropertyInputSourceID));
    if (!id) return std::nullopt;
    InputSourceInfo info;
    info.name = cf_values::text(property(kTISPropertyLocalizedName)).value_or(*id);
    info.type = cf_values::text(property(kTISPropertyInputSourceType)).value_or("");
    info.languages = cf_values::texts(property(kTISPropertyInputSourceLanguages));
    info.isSelectCapable = cf_values::isTrue(property(kTISPropertyInputSourceIsSelectCapable));
    info.id = std::move(*id);
    return info;
}

} // namespace

MacInputSourceCatalog::MacInputSourceCatalog()
    : tellSources_([this] {
          if (const auto call = onSourcesChanged) call();
      }),
      tellSelected_([this] {
          if (const auto call = onSelectedChanged) call();
      }),
      sourcesChanged_(kTISNotifyEnabledKeyboardInputSourcesChanged, [this] { tellSources_.request(); }),
      selectedChanged_(kTISNotifySelectedKeyboardInputSourceChanged, [this] { tellSelected_.request(); }) {}

std::vector<InputSourceInfo> MacInputSourceCatalog::enabledKeyboardSources() {
    std::vector<InputSourceInfo> sources;
    const auto list = enabledSources(kTISPropertyInputSourceCategory, kTISCategoryKeyboardInputSource);
    if (!list) return sources;
    for (CFIndex index = 0; index < CFArrayGetCount(list.get()); ++index) {
        if (auto source = describe(asSource(CFArrayGetValueAtIndex(list.get(), index))))
            sources.push_back(std::move(*source));
    }
    return sources;
}

std::optional<std::string> MacInputSourceCatalog::currentID() {
    const auto source = CfRef<TISInputSourceRef>::adopt(TISCopyCurrentKeyboardInputSource());
    if (!source) return std::nullopt;
    return cf_values::text(TISGetInputSourceProperty(source.get(), kTISPropertyInputSourceID));
}

SelectResult MacInputSourceCatalog::select(const std::string& id) {
    const auto name = cf_values::string(id);
    if (!name) return select_result::NotFound{};
    const auto list = enabledSources(kTISPropertyInputSourceID, name.get());
    if (!list || CFArrayGetCount(list.get()) == 0) return select_result::NotFound{};
    const OSStatus status = TISSelectInputSource(asSource(CFArrayGetValueAtIndex(list.get(), 0)));
    if (status != noErr) return select_result::Failed{status};
    return select_result::Selected{};
}

} // namespace hopsel
