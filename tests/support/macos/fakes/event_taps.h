// The faked event stream: taps as they were asked for, events delivered through them, events posted.
#pragma once

#include <ApplicationServices/ApplicationServices.h>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

namespace hopsel::macos_fakes {

struct Tap {
    CFMachPortRef port;
    CGEventTapLocation location;
    CGEventTapPlacement placement;
    CGEventTapOptions options;
    CGEventMask mask;
    CGEventTapCallBack callback;
    void* userInfo;
    bool isEnabled;
};

struct PostedEvent {
    CGEventTapLocation location;
    CGKeyCode keyCode;
    bool isDown;
    CGEventFlags flags;
    std::int64_t userData;
    double time;
};

struct EventStream {
    std::vector<Tap> taps; ///< whose ports exist; the first sees events first
    std::vector<PostedEvent> posted;
    int tapsCreated = 0;
    int keyCodeReads = 0; ///< of the key code field, in all events
    bool refusesTaps = false;
    bool refusesEnabling = false;
    int eventsUntilRefusal = -1; ///< so many more can be created; negative: any number

    bool isTrusted = true; ///< for accessibility
    bool mayListen = true; ///< the input-monitoring permission
    // What the calls answer instead, as they did when the program started.
    std::optional<bool> staleTrust;
    std::optional<bool> staleListening;
    bool refusesList = false;
    int trustPrompts = 0;
    int listenPrompts = 0;
};

EventStream& eventStream();
void resetEventStream();

struct EventFields {
    CGEventFlags flags = 0;
    std::int64_t keyCode = 0;
    std::int64_t userData = 0;
    std::int64_t isRepeat = 0;
};
/// Hands the event to every tap that is enabled, attached and interested; false if one swallowed it.
bool deliver(CGEventType type, const EventFields& fields = {});
/// Takes the tap away, as the system does.
void disableTap(std::size_t index, CGEventType reason);
/// Invalidates its port without a word; it still says that it is enabled.
void invalidateTap(std::size_t index);
/// Clears the keys from what it hears, without a word.
void deafenTap(std::size_t index);

} // namespace hopsel::macos_fakes
