#include "support/macos/fakes/event_taps.h"

#include "support/macos/fakes/objects.h"
#include "support/macos/fakes/world.h"

#include <algorithm>

using hopsel::macos_fakes::eventStream;
using hopsel::macos_fakes::Kind;
using hopsel::macos_fakes::Object;
using hopsel::macos_fakes::Tap;

struct HopselCGEventSource final : Object {
    HopselCGEventSource() : Object(Kind::eventSource) {}
};

struct HopselCGEvent final : Object {
    explicit HopselCGEvent(CGEventType ofType) : Object(Kind::event), type(ofType) {}
    const CGEventType type;
    CGEventFlags flags = 0;
    std::map<CGEventField, std::int64_t> fields;
};

namespace {

auto tapOf(CFMachPortRef port) {
    return std::find_if(eventStream().taps.begin(), eventStream().taps.end(),
                        [&](const Tap& each) { return each.port == port; });
}

bool sees(const Tap& tap, CGEventType type) {
    return tap.isEnabled && tap.port->isValid && (tap.mask >> type & 1U) != 0 &&
           hopsel::macos_fakes::isOnMainLoop(tap.port->source);
}

} // namespace

CFMachPortRef CGEventTapCreate(CGEventTapLocation location, CGEventTapPlacement placement,
                               CGEventTapOptions options, CGEventMask mask, CGEventTapCallBack callback,
                               void* userInfo) {
    if (eventStream().refusesTaps) return nullptr;
    auto* port = new HopselCFMachPort;
    port->onGone = [port] { eventStream().taps.erase(tapOf(port)); };
    const Tap tap{port, location, placement, options, mask, callback, userInfo, false};
    auto& taps = eventStream().taps;
    taps.insert(placement == kCGHeadInsertEventTap ? taps.begin() : taps.end(), tap);
    ++eventStream().tapsCreated;
    return port;
}

void CGEventTapEnable(CFMachPortRef port, bool isEnabled) {
    tapOf(port)->isEnabled = isEnabled && !eventStream().refusesEnabling;
}
bool CGEventTapIsEnabled(CFMachPortRef port) { return tapOf(port)->isEnabled; }

CGEventSourceRef CGEventSourceCreate(CGEventSourceStateID) { return new HopselCGEventSource; }

CGEventRef CGEventCreateKeyboardEvent(CGEventSourceRef, CGKeyCode key, bool isDown) {
    int& rest = eventStream().eventsUntilRefusal;
    if (rest == 0) return nullptr;
    if (rest > 0) --rest;
    auto* event = new HopselCGEvent(isDown ? kCGEventKeyDown : kCGEventKeyUp);
    event->fields[kCGKeyboardEventKeycode] = key;
    return event;
}

CGEventFlags CGEventGetFlags(CGEventRef event) { return event->flags; }
void CGEventSetFlags(CGEventRef event, CGEventFlags flags) { event->flags = flags; }
std::int64_t CGEventGetIntegerValueField(CGEventRef event, CGEventField field) {
    if (field == kCGKeyboardEventKeycode) ++eventStream().keyCodeReads;
    return event->fields[field];
}
void CGEventSetIntegerValueField(CGEventRef event, CGEventField field, std::int64_t value) {
    event->fields[field] = value;
}

void CGEventPost(CGEventTapLocation location, CGEventRef event) {
    eventStream().posted.push_back({location, static_cast<CGKeyCode>(event->fields[kCGKeyboardEventKeycode]),
                                    event->type == kCGEventKeyDown, event->flags,
                                    event->fields[kCGEventSourceUserData], hopsel::macos_fakes::now()});
}

bool CGPreflightListenEventAccess() { return eventStream().mayListen; }
bool CGRequestListenEventAccess() {
    ++eventStream().listenPrompts;
    return eventStream().mayListen;
}

const CFStringRef kAXTrustedCheckOptionPrompt = CFSTR("AXTrustedCheckOptionPrompt");
Boolean AXIsProcessTrusted() { return eventStream().isTrusted ? 1 : 0; }
Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef options) {
    if (options != nullptr && CFDictionaryGetValue(options, kAXTrustedCheckOptionPrompt) == kCFBooleanTrue)
        ++eventStream().trustPrompts;
    return AXIsProcessTrusted();
}

namespace hopsel::macos_fakes {

EventStream& eventStream() {
    static EventStream stream;
    return stream;
}

void resetEventStream() {
    auto taps = std::move(eventStream().taps); // a tap that is still there is a leak to be seen
    eventStream() = {};
    eventStream().taps = std::move(taps);
}

bool deliver(CGEventType type, const EventFields& fields) {
    HopselCGEvent event(type);
    event.flags = fields.flags;
    event.fields = {{kCGKeyboardEventKeycode, fields.keyCode},
                    {kCGEventSourceUserData, fields.userData},
                    {kCGKeyboardEventAutorepeat, fields.isRepeat}};
    for (const Tap& tap : std::vector(eventStream().taps)) {
        // An earlier one may have taken it away.
        if (tapOf(tap.port) == eventStream().taps.end() || !sees(tap, type)) continue;
        CGEventRef result = tap.callback(nullptr, type, &event, tap.userInfo);
        if (result == nullptr && tap.options == kCGEventTapOptionDefault) return false;
    }
    return true;
}

void disableTap(std::size_t index, CGEventType reason) {
    const Tap tap = eventStream().taps.at(index);
    eventStream().taps.at(index).isEnabled = false;
    tap.callback(nullptr, reason, nullptr, tap.userInfo);
}

} // namespace hopsel::macos_fakes
