#include "platform/macos/keys/active_tap.h"

#include "platform/macos/base/main_loop.h"
#include "platform/macos/keys/event_stamp.h"

#include <ApplicationServices/ApplicationServices.h>

namespace hopsel {

ActiveTap::ActiveTap(Log& log)
    : failures_(log), tap_(*this, kCGEventTapOptionDefault, {kCGEventKeyDown, kCGEventKeyUp}) {}

void ActiveTap::start() {
    if (tap_.isStarted()) return;
    if (AXIsProcessTrusted() == 0)
        fail(TapFailure::Kind::accessibilityMissing, "accessibility not trusted (AXIsProcessTrusted=false)");
    switch (tap_.start()) {
    case EventTap::StartResult::started: failures_.started(); return;
    case EventTap::StartResult::tapRefused:
        fail(TapFailure::Kind::creationFailed,
             std::string("CGEvent.tapCreate returned nil (inputMonitoring=") +
                 (CGPreflightListenEventAccess() ? "true" : "false") + ")");
    case EventTap::StartResult::runLoopSourceRefused:
        fail(TapFailure::Kind::creationFailed, "could not create run loop source");
    }
}

void ActiveTap::fail(TapFailure::Kind kind, const std::string& reason) {
    failures_.failed(reason);
    throw TapFailure(kind, reason);
}

bool ActiveTap::tapped(CGEventType type, CGEventRef event) {
    if ((type != kCGEventKeyDown && type != kCGEventKeyUp) || !onInput) return false;
    ShortcutInput input;
    input.kind = type == kCGEventKeyDown ? ShortcutInput::Kind::keyDown : ShortcutInput::Kind::keyUp;
    input.keyCode = static_cast<std::uint16_t>(CGEventGetIntegerValueField(event, kCGKeyboardEventKeycode));
    input.flags = CGEventGetFlags(event);
    input.isRepeat = CGEventGetIntegerValueField(event, kCGKeyboardEventAutorepeat) != 0;
    input.synthetic = event_stamp::isOn(event);
    return onInput(input);
}

void ActiveTap::check() {
    if (tap_.isStarted() && AXIsProcessTrusted() == 0)
        tapDisabled(false);
    else
        tap_.check();
}

bool ActiveTap::mayReenable() {
    constexpr double shortTime = 3; // seconds
    const double now = uptimeSeconds();
    const bool isAgain = takenAwayAt_ && now - *takenAwayAt_ < shortTime;
    takenAwayAt_ = now;
    return !isAgain && AXIsProcessTrusted() != 0;
}

void ActiveTap::tapDisabled(bool reenabled) {
    if (onDisabled) onDisabled(reenabled);
}

} // namespace hopsel
