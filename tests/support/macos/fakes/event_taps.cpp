#include "support/macos/fakes/event_taps.h"

#include "support/macos/fakes/objects.h"
#include "support/macos/fakes/world.h"

#include <algorithm>
#include <unistd.h>

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

constexpr CGEventMask keys = 1U << kCGEventKeyDown | 1U << kCGEventKeyUp | 1U << kCGEventFlagsChanged;

bool sees(const Tap& tap, CGEventType type) {
    return tap.isEnabled && tap.port->isValid && (tap.mask >> type & 1U) != 0 &&
           hopsel::macos_fakes::isOnMainLoop(tap.port->source);
}

} // namespace

CFMachPortRef CGEventTapCreate(CGEventTapLocation location, CGEventTapPlacement placement,
                               CGEventTapOptions options, CGEventMask mask, CGEventTapCallBack callback,
                               void* userInfo) {
    const bool mayHearKeys =
        eventStream().isTrusted || (options == kCGEventTapOptionListenOnly && eventStream().mayListen);
    if (!mayHearKeys) mask &= ~keys;
    if (eventStream().refusesTaps || mask == 0) return nullptr;
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

CGError CGGetEventTapList(std::uint32_t room, CGEventTapInformation* list, std::uint32_t* count) {
    if (eventStream().refusesList) return kCGErrorFailure;
    // Others have taps that look like a deaf one of ours, and the toolkit may have some in this process.
    std::vector<CGEventTapInformation> all(2);
    all[0].options = all[1].options = kCGEventTapOptionListenOnly;
    all[0].enabled = all[1].enabled = true;
    all[0].eventsOfInterest = 0x0200'000A;
    all[0].tappingProcess = getpid() + 1;
    all[1].eventsOfInterest = 1U << kCGEventLeftMouseDown;
    all[1].tappingProcess = getpid();
    for (const Tap& tap : eventStream().taps) {
        if (!tap.port->isValid) continue;
        CGEventTapInformation& each = all.emplace_back();
        each.options = tap.options;
        each.enabled = tap.isEnabled;
        each.eventsOfInterest = tap.mask;
        each.tappingProcess = getpid();
    }
    if (list == nullptr) room = static_cast<std::uint32_t>(all.size());
    *count = std::min(room, static_cast<std::uint32_t>(all.size()));
    if (list != nullptr) std::copy_n(all.begin(), *count, list);
    return kCGErrorSuccess;
}

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

bool CGPreflightListenEventAccess() { return eventStream().staleListening.value_or(eventStream().mayListen); }
bool CGRequestListenEventAccess() {
    ++eventStream().listenPrompts;
    return eventStream().mayListen;
}

const CFStringRef kAXTrustedCheckOptionPrompt = CFSTR("AXTrustedCheckOptionPrompt");
Boolean AXIsProcessTrusted() { return eventStream().staleTrust.value_or(eventStream().isTrusted) ? 1 : 0; }
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

void invalidateTap(std::size_t index) { eventStream().taps.at(index).port->isValid = false; }
void deafenTap(std::size_t index) { eventStream().taps.at(index).mask &= ~keys; }

} // namespace hopsel::macos_fakes
