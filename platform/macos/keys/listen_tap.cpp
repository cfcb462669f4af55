#include "platform/macos/keys/listen_tap.h"

#include "core/platform/tap_failure.h"
#include "platform/macos/base/main_loop.h"
#include "platform/macos/keys/event_stamp.h"

#include <ApplicationServices/ApplicationServices.h>
#include <utility>

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

ListenTap::ListenTap(std::shared_ptr<const MacPermissions> permissions)
    : permissions_(std::move(permissions)),
      tap_(*this, kCGEventTapOptionListenOnly,
           {kCGEventFlagsChanged, kCGEventKeyDown, kCGEventKeyUp, kCGEventLeftMouseDown,
            kCGEventRightMouseDown, kCGEventOtherMouseDown}) {}

void ListenTap::start() {
    if (tap_.isStarted()) return;
    // Making a tap without either permission has the system ask for it by itself, before the introduction can
    // say what for. Once the user was asked, only trying tells: the answers may be those of the start.
    const bool isPermitted = CGPreflightListenEventAccess() || AXIsProcessTrusted() != 0;
    if (!isPermitted && !permissions_->wasAsked())
        throw TapFailure(TapFailure::Kind::creationFailed, "listening is not permitted");
    switch (tap_.start(isPermitted)) {
    case EventTap::StartResult::started: return;
    case EventTap::StartResult::tapRefused:
        throw TapFailure(TapFailure::Kind::creationFailed, "CGEvent.tapCreate returned nil");
    case EventTap::StartResult::deaf:
        throw TapFailure(TapFailure::Kind::creationFailed, "the system made the tap without keys");
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

// It is not made anew here: it would come before the filter, and hear what that swallows. The engine starts
// both in their order.
void ListenTap::takenAway() {
    const bool isBack = tap_.enableAgain();
    if (onDisabled) onDisabled(isBack);
}

} // namespace hopsel
