#include "platform/macos/base/cf_values.h"

namespace hopsel::cf_values {

CfRef<CFStringRef> string(std::string_view utf8) {
    return CfRef<CFStringRef>::adopt(
        CFStringCreateWithBytes(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(utf8.data()),
                                static_cast<CFIndex>(utf8.size()), kCFStringEncodingUTF8, 0));
}

CfRef<CFDictionaryRef> dictionary(CFStringRef key, CFTypeRef value) {
    const void* keys[] = {key};
    const void* values[] = {value};
    return CfRef<CFDictionaryRef>::adopt(CFDictionaryCreate(kCFAllocatorDefault, keys, values, 1,
                                                            &kCFTypeDictionaryKeyCallBacks,
                                                            &kCFTypeDictionaryValueCallBacks));
}

std::optional<std::string> text(CFTypeRef value) {
    if (value == nullptr || CFGetTypeID(value) != CFStringGetTypeID()) return std::nullopt;
    const auto* string = static_cast<CFStringRef>(value);
    const CFRange whole = CFRangeMake(0, CFStringGetLength(string));
    CFIndex size = 0;
    // Half a surrogate pair ends the conversion early: such a string has no UTF-8.
    if (CFStringGetBytes(string, whole, kCFStringEncodingUTF8, 0, 0, nullptr, 0, &size) != whole.length)
        return std::nullopt;
    std::string utf8(static_cast<std::size_t>(size), '\0');
    CFStringGetBytes(string, whole, kCFStringEncodingUTF8, 0, 0, reinterpret_cast<UInt8*>(utf8.data()), size,
                     nullptr);
    return utf8;
}

bool isTrue(CFTypeRef value) {
    return value != nullptr && CFGetTypeID(value) == CFBooleanGetTypeID() &&
           CFBooleanGetValue(static_cast<CFBooleanRef>(value)) != 0;
}

std::vector<std::string> texts(CFTypeRef value) {
    std::vector<std::string> found;
    if (value == nullptr || CFGetTypeID(value) != CFArrayGetTypeID()) return found;
    const auto* array = static_cast<CFArrayRef>(value);
    for (CFIndex index = 0; index < CFArrayGetCount(array); ++index) {
        if (auto each = text(CFArrayGetValueAtIndex(array, index))) found.push_back(std::move(*each));
    }
    return found;
}

} // namespace hopsel::cf_values
