#include "platform/macos/switch_keys/symbolic_hot_keys.h"

#include "platform/macos/base/cf_values.h"
#include "platform/macos/desktop/property_lists.h"

#include <nlohmann/json.hpp>

namespace hopsel::symbolic_hot_keys {

namespace {

using Json = nlohmann::json;

Json numberAsJson(CFTypeRef value) {
    const auto number = property_lists::number(value);
    return number ? Json(*number) : Json();
}

Json parametersAsJson(CFTypeRef value) {
    const CFArrayRef parameters = property_lists::array(value);
    if (parameters == nullptr) return {};
    Json result = Json::array();
    constexpr CFIndex known = 3;
    for (CFIndex i = 0; i < CFArrayGetCount(parameters) && i < known; ++i)
        result.push_back(numberAsJson(CFArrayGetValueAtIndex(parameters, i)));
    return result;
}

Json entryAsJson(CFTypeRef value) {
    const CFDictionaryRef entry = property_lists::dictionary(value);
    if (entry == nullptr) return {};
    Json result{{"enabled", numberAsJson(CFDictionaryGetValue(entry, CFSTR("enabled")))}};
    const CFDictionaryRef keys = property_lists::dictionary(CFDictionaryGetValue(entry, CFSTR("value")));
    if (keys != nullptr)
        result["value"] = {{"parameters", parametersAsJson(CFDictionaryGetValue(keys, CFSTR("parameters")))}};
    return result;
}

} // namespace

Json read() {
    Json hotKeys = Json::object();
    const auto value =
        property_lists::preference(CFSTR("AppleSymbolicHotKeys"), CFSTR("com.apple.symbolichotkeys"));
    const CFDictionaryRef entries = property_lists::dictionary(value.get());
    if (entries == nullptr) return hotKeys;
    for (const char* number : {"60", "61"}) {
        const auto key = cf_values::string(number);
        if (const void* entry = CFDictionaryGetValue(entries, key.get()))
            hotKeys[number] = entryAsJson(entry);
    }
    return hotKeys;
}

} // namespace hopsel::symbolic_hot_keys
