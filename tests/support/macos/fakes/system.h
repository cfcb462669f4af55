// The faked input sources.
#pragma once

#include <Carbon/Carbon.h>
#include <map>
#include <vector>

namespace hopsel::macos_fakes {

struct System {
    std::vector<TISInputSourceRef> sources; ///< enabled ones, in order; held
    TISInputSourceRef current = nullptr;    ///< not held
    OSStatus selectStatus = noErr;
    double selectDelay = 0; ///< virtual seconds until a selection takes effect; negative: never
    bool refusesList = false;
    std::vector<TISInputSourceRef> selections; ///< all that were accepted; not held
};

System& system();
void resetSystem();

TISInputSourceRef addSource(const std::map<CFStringRef, CFTypeRef>& properties);
/// An ordinary keyboard layout.
TISInputSourceRef addLayout(const char* id);

} // namespace hopsel::macos_fakes
