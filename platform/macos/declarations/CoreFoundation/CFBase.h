// Core Foundation's base types as far as this program uses them, declared for systems that have no such
// framework: with the fakes beside them the macOS layer is compiled and tested there. On macOS the system's
// own headers are found instead. As there, enumerations are real ones and options are plain integers.
#pragma once

#include <cstdint>

extern "C" {

using Boolean = unsigned char;
using UInt8 = std::uint8_t;
using UInt32 = std::uint32_t;
using SInt32 = std::int32_t;
using OSStatus = SInt32;

using CFTypeID = unsigned long;
using CFHashCode = unsigned long;
using CFIndex = long;
using CFTimeInterval = double;

struct CFRange {
    CFIndex location;
    CFIndex length;
};

using CFTypeRef = const void*;
using CFAllocatorRef = const struct HopselCFAllocator*;
using CFStringRef = const struct HopselCFString*;

extern const CFAllocatorRef kCFAllocatorDefault;

CFTypeRef CFRetain(CFTypeRef object);
void CFRelease(CFTypeRef object);
CFTypeID CFGetTypeID(CFTypeRef object);
Boolean CFEqual(CFTypeRef one, CFTypeRef other);
}

inline CFRange CFRangeMake(CFIndex location, CFIndex length) { return {location, length}; }
