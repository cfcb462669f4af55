// The faked input sources, secure input, clock and log.
#pragma once

#include <Carbon/Carbon.h>
#include <map>
#include <os/log.h>
#include <string>
#include <vector>

namespace hopsel::macos_fakes {

struct LogLine {
    std::string subsystem;
    std::string category;
    os_log_type_t type;
    std::string text;
    friend bool operator==(const LogLine&, const LogLine&) = default;
};

struct System {
    std::vector<TISInputSourceRef> sources; ///< enabled ones, in order; held
    TISInputSourceRef current = nullptr;    ///< not held
    OSStatus selectStatus = noErr;
    double selectDelay = 0; ///< virtual seconds until a selection takes effect; negative: never
    bool refusesList = false;
    bool isSecureInput = false;
    std::vector<LogLine> log;
};

System& system();
void resetSystem();

/// Values that are not objects are missing properties; the identifier is one of them.
TISInputSourceRef addSource(const std::map<CFStringRef, CFTypeRef>& properties);
/// An ordinary keyboard layout.
TISInputSourceRef addLayout(const char* id);

} // namespace hopsel::macos_fakes
