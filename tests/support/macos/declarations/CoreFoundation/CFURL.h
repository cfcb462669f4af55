// Addresses, as far as they are handed on to the system.
#pragma once

#include <CoreFoundation/CFBase.h>

extern "C" {

using CFURLRef = const struct HopselCFURL*;

CFTypeID CFURLGetTypeID();
/// Nothing when the text is no address.
CFURLRef CFURLCreateWithString(CFAllocatorRef allocator, CFStringRef text, CFURLRef base);
CFStringRef CFURLGetString(CFURLRef url);
}
