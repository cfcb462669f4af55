// Core Foundation values as ours, and ours as theirs.
//
// What comes from the system may be missing or of another type than documented: that is no value, never a
// crash. Stateless.
#pragma once

#include "platform/macos/base/cf_ref.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hopsel::cf_values {

/// Nothing if the text is no UTF-8.
CfRef<CFStringRef> string(std::string_view utf8);
/// A dictionary with one entry.
CfRef<CFDictionaryRef> dictionary(CFStringRef key, CFTypeRef value);

std::optional<std::string> text(CFTypeRef value);
bool isTrue(CFTypeRef value);
/// The texts among an array's elements.
std::vector<std::string> texts(CFTypeRef value);

} // namespace hopsel::cf_values
