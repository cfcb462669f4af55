// Arrays of objects, which they retain.
#pragma once

#include <CoreFoundation/CFBase.h>

extern "C" {

using CFArrayRef = const struct HopselCFArray*;
struct CFArrayCallBacks;
extern const CFArrayCallBacks kCFTypeArrayCallBacks;

CFTypeID CFArrayGetTypeID();
CFArrayRef CFArrayCreate(CFAllocatorRef allocator, const void** values, CFIndex count,
                         const CFArrayCallBacks* callBacks);
CFIndex CFArrayGetCount(CFArrayRef array);
/// Not retained for the caller.
const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index);
}
