#include "support/macos/fakes/system.h"

#include "support/macos/fakes/objects.h"
#include "support/macos/fakes/world.h"

#include <cmath>
#include <mach/mach_time.h>

using hopsel::macos_fakes::Held;
using hopsel::macos_fakes::Kind;
using hopsel::macos_fakes::Object;
using hopsel::macos_fakes::system;

struct HopselTISInputSource final : Object {
    HopselTISInputSource() : Object(Kind::inputSource) {}
    std::vector<std::pair<std::string, Held>> properties;
};

const CFStringRef kTISPropertyInputSourceCategory = CFSTR("TISPropertyInputSourceCategory");
const CFStringRef kTISPropertyInputSourceID = CFSTR("TISPropertyInputSourceID");
const CFStringRef kTISPropertyLocalizedName = CFSTR("TSMInputSourcePropertyLocalizedName");
const CFStringRef kTISPropertyInputSourceType = CFSTR("TSMInputSourcePropertyType");
const CFStringRef kTISPropertyInputSourceLanguages = CFSTR("TSMInputSourcePropertyLanguages");
const CFStringRef kTISPropertyInputSourceIsSelectCapable = CFSTR("TISPropertyIsSelectCapable");
const CFStringRef kTISCategoryKeyboardInputSource = CFSTR("TISCategoryKeyboardInputSource");
const CFStringRef kTISNotifySelectedKeyboardInputSourceChanged = CFSTR("TISNotifySelectedChanged");
const CFStringRef kTISNotifyEnabledKeyboardInputSourcesChanged = CFSTR("TISNotifyEnabledChanged");

void* TISGetInputSourceProperty(TISInputSourceRef source, CFStringRef key) {
    for (const auto& [name, value] : source->properties) {
        if (name == hopsel::macos_fakes::text(key)) return const_cast<void*>(value.get());
    }
    return nullptr;
}

CFArrayRef TISCreateInputSourceList(CFDictionaryRef filter, Boolean includeAllInstalled) {
    if (system().refusesList || includeAllInstalled != 0) return nullptr;
    std::vector<const void*> found;
    for (TISInputSourceRef source : system().sources) {
        bool matches = true;
        for (const auto& [key, value] : filter->entries) {
            const void* property = TISGetInputSourceProperty(source, static_cast<CFStringRef>(key.get()));
            matches = matches && property != nullptr && CFEqual(property, value.get()) != 0;
        }
        if (matches) found.push_back(source);
    }
    return CFArrayCreate(nullptr, found.data(), static_cast<CFIndex>(found.size()), &kCFTypeArrayCallBacks);
}

TISInputSourceRef TISCopyCurrentKeyboardInputSource() {
    if (system().current != nullptr) CFRetain(system().current);
    return system().current;
}

OSStatus TISSelectInputSource(TISInputSourceRef source) {
    if (system().selectStatus != noErr) return system().selectStatus;
    system().selections.push_back(source);
    if (system().selectDelay == 0) system().current = source;
    if (system().selectDelay > 0)
        hopsel::macos_fakes::after(system().selectDelay, [source] { system().current = source; });
    return noErr;
}

// As on the machines of today: 24 million ticks a second.
std::uint64_t mach_absolute_time() {
    return static_cast<std::uint64_t>(std::llround(hopsel::macos_fakes::now() * 24e6));
}
int mach_timebase_info(mach_timebase_info_data_t* info) {
    *info = {125, 3};
    return 0;
}

namespace hopsel::macos_fakes {

System& system() {
    static System instance;
    return instance;
}

void resetSystem() {
    for (TISInputSourceRef source : system().sources) CFRelease(source);
    system() = {};
}

TISInputSourceRef addSource(const std::map<CFStringRef, CFTypeRef>& properties) {
    auto* source = new HopselTISInputSource;
    for (const auto& [key, value] : properties) source->properties.emplace_back(text(key), Held(value));
    system().sources.push_back(source);
    return source;
}

TISInputSourceRef addLayout(const char* id) {
    return addSource({{kTISPropertyInputSourceID, hopselConstantString(id)},
                      {kTISPropertyInputSourceCategory, kTISCategoryKeyboardInputSource},
                      {kTISPropertyInputSourceIsSelectCapable, kCFBooleanTrue}});
}

} // namespace hopsel::macos_fakes
