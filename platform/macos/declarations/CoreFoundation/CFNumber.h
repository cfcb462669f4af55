// Numbers and booleans.
#pragma once

#include <CoreFoundation/CFBase.h>

extern "C" {

using CFBooleanRef = const struct HopselCFBoolean*;
extern const CFBooleanRef kCFBooleanTrue;
extern const CFBooleanRef kCFBooleanFalse;
CFTypeID CFBooleanGetTypeID();
Boolean CFBooleanGetValue(CFBooleanRef boolean);

using CFNumberRef = const struct HopselCFNumber*;
enum CFNumberType : CFIndex {
    kCFNumberDoubleType = 13,
};
CFTypeID CFNumberGetTypeID();
CFNumberRef CFNumberCreate(CFAllocatorRef allocator, CFNumberType type, const void* value);
/// False when the value does not fit the type.
Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value);
}
