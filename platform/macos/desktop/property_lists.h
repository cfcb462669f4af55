// Reads what lies in the user's preferences, whatever it is.
//
// Stateless. It can have been written by anyone: every value is asked for its type
// before it is read, and one of another type is absent.
#pragma once

#include "platform/macos/base/cf_ref.h"

#include <optional>

namespace hopsel::property_lists {

/// Null when it is absent or of another type; lives as long as the value it was found in.
CFDictionaryRef dictionary(CFTypeRef value);
CFArrayRef array(CFTypeRef value);
/// Whole numbers and floating ones alike, and true and false as 1 and 0: both ways of writing are in use.
std::optional<double> number(CFTypeRef value);

/// What a user's preference of this name holds, in the domain or in what applies to all programs.
CfRef<CFPropertyListRef> preference(CFStringRef key, CFStringRef domain);

} // namespace hopsel::property_lists
