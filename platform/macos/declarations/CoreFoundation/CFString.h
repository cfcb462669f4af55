// Strings: made from UTF-8, read as UTF-8, measured in UTF-16 units.
#pragma once

#include <CoreFoundation/CFBase.h>

extern "C" {

using CFStringEncoding = UInt32;
enum : CFStringEncoding { kCFStringEncodingUTF8 = 0x08000100 };

CFTypeID CFStringGetTypeID();
/// Nothing when the bytes are no text in the encoding.
CFStringRef CFStringCreateWithBytes(CFAllocatorRef allocator, const UInt8* bytes, CFIndex count,
                                    CFStringEncoding encoding, Boolean isExternalRepresentation);
CFIndex CFStringGetLength(CFStringRef string);
/// How many units were converted; without a buffer only counts.
CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding, UInt8 lossByte,
                         Boolean isExternalRepresentation, UInt8* buffer, CFIndex size, CFIndex* used);

/// Interned and never released.
CFStringRef hopselConstantString(const char* text);
}

#define CFSTR(text) hopselConstantString("" text "")
