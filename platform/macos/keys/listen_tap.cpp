#include "platform/macos/keys/listen_tap.h"

#include "core/platform/tap_failure.h"
#include "platform/macos/base/main_loop.h"
#include "platform/macos/keys/event_stamp.h"

#include <ApplicationServices/ApplicationServices.h>

namespace hopsel {

namespace {

std::optional<RawEventType> rawType(CGEventType type) {
    switch (type) {
    case kCGEventFlagsChanged: return RawEventType::flagsChanged;
    case kCGEventKeyDown: return RawEventType::keyDown;
    case kCGEventKeyUp: return RawEventType::keyUp;
    case kCGEventLeftMouseDown:
    case kCGEventRightMouseDown:
    case kCGEventOtherMouseDown: return RawEventType::mouseDown;
    default: return std::nullopt;
    }
}

} // namespace

ListenTap::ListenTap()
    : tap_(*this, kCGEventTapOptionListenOnly,
           {kCGEventFlagsChanged, kCGEventKeyDown, kCGEventKeyUp, kCGEventLeftMouseDown,
            kCGEventRightMouseDown, kCGEventOtherMouseDown}) {}

void ListenTap::start() {
    // Making a tap without either permission has the system ask for it by itself, before the introduction can
    // say what for; and what is made then hears nothing.
    if (!tap_.isStarted() && !CGPreflightListenEventAccess() && AXIsProcessTrusted() == 0)
        throw TapFailure(TapFailure::Kind::creationFailed, "listening is not permitted");
    switch (tap_.start()) {
    case EventTap::StartResult::started: return;
    case EventTap::StartResult::tapRefused:
        throw TapFailure(TapFailure::Kind::creationFailed, "CGEvent.tapCreate returned nil");
    case EventTap::StartResult::runLoopSourceRefused:
        throw TapFailure(TapFailure::Kind::creationFailed, "could not create run loop source");
    }
}

bool ListenTap::tapped(CGEventType type, CGEventRef event) {
    // Not the event's own time: that is another clock.
    const double now = uptimeSeconds();
    const std::optional<RawEventType> raw = rawType(type);
    if (!raw || !onEvent) return false;
    std::uint16_t keyCode = 0;
    if (raw == RawEventType::flagsChanged)
        keyCode = static_cast<std::uint16_t>(CGEventGetIntegerValueField(event, kCGKeyboardEventKeycode));
    onEvent({*raw, keyCode, CGEventGetFlags(event), now, event_stamp::isOn(event)});
    return false;
}

void ListenTap::tapDisabled(bool reenabled) {
    if (onDisabled) onDisabled(reenabled);
}

} // namespace hopsel
