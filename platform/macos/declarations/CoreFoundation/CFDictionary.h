// Dictionaries from objects to objects, which they retain.
#pragma once

#include <CoreFoundation/CFBase.h>

extern "C" {

using CFDictionaryRef = const struct HopselCFDictionary*;
struct CFDictionaryKeyCallBacks;
struct CFDictionaryValueCallBacks;
extern const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks;
extern const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks;

CFTypeID CFDictionaryGetTypeID();
CFDictionaryRef CFDictionaryCreate(CFAllocatorRef allocator, const void** keys, const void** values,
                                   CFIndex count, const CFDictionaryKeyCallBacks* keyCallBacks,
                                   const CFDictionaryValueCallBacks* valueCallBacks);
/// Not retained for the caller; nothing when there is no such key.
const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key);
}
