#include "support/macos/fakes/objects.h"

#include <algorithm>

using hopsel::macos_fakes::Kind;

struct CFArrayCallBacks {};
struct CFDictionaryKeyCallBacks {};
struct CFDictionaryValueCallBacks {};
const CFArrayCallBacks kCFTypeArrayCallBacks{};
const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks{};
const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks{};

CFTypeID CFArrayGetTypeID() { return static_cast<CFTypeID>(Kind::array); }

CFArrayRef CFArrayCreate(CFAllocatorRef, const void** values, CFIndex count, const CFArrayCallBacks*) {
    auto* array = new HopselCFArray;
    for (CFIndex index = 0; index < count; ++index) array->values.emplace_back(values[index]);
    return array;
}

CFIndex CFArrayGetCount(CFArrayRef array) { return static_cast<CFIndex>(array->values.size()); }

const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index) {
    return array->values.at(static_cast<std::size_t>(index)).get();
}

CFTypeID CFDictionaryGetTypeID() { return static_cast<CFTypeID>(Kind::dictionary); }

CFDictionaryRef CFDictionaryCreate(CFAllocatorRef, const void** keys, const void** values, CFIndex count,
                                   const CFDictionaryKeyCallBacks*, const CFDictionaryValueCallBacks*) {
    auto* dictionary = new HopselCFDictionary;
    for (CFIndex index = 0; index < count; ++index)
        dictionary->entries.emplace_back(keys[index], values[index]);
    return dictionary;
}

const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key) {
    const auto found = std::find_if(dictionary->entries.begin(), dictionary->entries.end(),
                                    [&](const auto& entry) { return CFEqual(entry.first.get(), key) != 0; });
    return found == dictionary->entries.end() ? nullptr : found->second.get();
}
