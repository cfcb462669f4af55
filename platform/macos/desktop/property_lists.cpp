#include "platform/macos/desktop/property_lists.h"

namespace hopsel::property_lists {

namespace {

bool is(CFTypeRef value, CFTypeID type) { return value != nullptr && CFGetTypeID(value) == type; }

} // namespace

CFDictionaryRef dictionary(CFTypeRef value) {
    return is(value, CFDictionaryGetTypeID()) ? static_cast<CFDictionaryRef>(value) : nullptr;
}

CFArrayRef array(CFTypeRef value) {
    return is(value, CFArrayGetTypeID()) ? static_cast<CFArrayRef>(value) : nullptr;
}

std::optional<double> number(CFTypeRef value) {
    if (is(value, CFBooleanGetTypeID()))
        return CFBooleanGetValue(static_cast<CFBooleanRef>(value)) != 0 ? 1.0 : 0.0;
    double result = 0;
    if (!is(value, CFNumberGetTypeID()) ||
        CFNumberGetValue(static_cast<CFNumberRef>(value), kCFNumberDoubleType, &result) == 0)
        return std::nullopt;
    return result;
}

CfRef<CFPropertyListRef> preference(CFStringRef key, CFStringRef domain) {
    // Another process may have written since.
    CFPreferencesAppSynchronize(domain);
    return CfRef<CFPropertyListRef>::adopt(CFPreferencesCopyAppValue(key, domain));
}

} // namespace hopsel::property_lists
