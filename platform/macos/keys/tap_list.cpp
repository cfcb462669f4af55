#include "platform/macos/keys/tap_list.h"

#include <algorithm>
#include <unistd.h>
#include <vector>

namespace hopsel::tap_list {

namespace {

constexpr CGEventMask bit(CGEventType type) { return CGEventMask{1} << static_cast<unsigned>(type); }
constexpr CGEventMask allKeys = bit(kCGEventKeyDown) | bit(kCGEventKeyUp) | bit(kCGEventFlagsChanged);

std::vector<CGEventTapInformation> all() {
    std::uint32_t count = 0;
    if (CGGetEventTapList(0, nullptr, &count) != kCGErrorSuccess) return {};
    std::vector<CGEventTapInformation> taps(count + 8); // others may be made between the two calls
    const auto room = static_cast<std::uint32_t>(taps.size());
    if (CGGetEventTapList(room, taps.data(), &count) != kCGErrorSuccess) return {};
    taps.resize(std::min(count, room));
    return taps;
}

} // namespace

std::optional<bool> hearsKeys(CGEventTapOptions options, CGEventMask mask) {
    std::optional<bool> hears;
    for (const CGEventTapInformation& tap : all()) {
        const bool isIt = tap.tappingProcess == getpid() && tap.options == options && tap.enabled &&
                          ((tap.eventsOfInterest ^ mask) & ~allKeys) == 0;
        if (isIt) hears = hears.value_or(true) && (mask & allKeys & ~tap.eventsOfInterest) == 0;
    }
    return hears;
}

} // namespace hopsel::tap_list
