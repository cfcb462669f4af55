// Texts between C++ and Foundation. For Objective-C++ only.
#pragma once

#import <Foundation/Foundation.h>
#include <optional>
#include <string>

namespace hopsel {

/// Absent for nil, and for what cannot be written as UTF-8.
inline std::optional<std::string> textOf(NSString* string) {
    const char* utf8 = string.UTF8String; // null for nil
    if (utf8 == nullptr) return std::nullopt;
    return std::string(utf8);
}

/// nil for bytes that are no UTF-8.
inline NSString* foundationText(const std::string& text) {
    return [[NSString alloc] initWithBytes:text.data() length:text.size() encoding:NSUTF8StringEncoding];
}

} // namespace hopsel
