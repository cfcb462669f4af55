#include "platform/macos/keys/active_tap.h"

#include "platform/macos/base/main_loop.h"
#include "platform/macos/keys/event_stamp.h"

#include <ApplicationServices/ApplicationServices.h>
#include <utility>

namespace hopsel {

namespace {

// Seconds of uptime. Time-outs of a filter that may not filter come half a minute apart.
constexpr double shortTime = 3;
constexpr double longTime = 600;
constexpr std::size_t oftenInLongTime = 3;

constexpr const char* notTrusted = "accessibility not trusted (AXIsProcessTrusted=false)";

} // namespace

ActiveTap::ActiveTap(Log& log, std::shared_ptr<const MacPermissions> permissions)
    : failures_(log),
      permissions_(std::move(permissions)),
      tap_(*this, kCGEventTapOptionDefault, {kCGEventKeyDown, kCGEventKeyUp}) {}

void ActiveTap::start() {
    if (tap_.isStarted()) return;
    if (isResting()) fail(TapFailure::Kind::creationFailed, "taken away too often");
    // The answer may be that of the program's start: once the user was asked, trying tells more.
    wasTrusted_ = AXIsProcessTrusted() != 0;
    if (!wasTrusted_ && !permissions_->wasAsked()) fail(TapFailure::Kind::accessibilityMissing, notTrusted);
    switch (tap_.start(wasTrusted_)) {
    case EventTap::StartResult::started: failures_.started(); return;
    case EventTap::StartResult::tapRefused:
        if (!wasTrusted_) fail(TapFailure::Kind::accessibilityMissing, notTrusted);
        fail(TapFailure::Kind::creationFailed,
             std::string("CGEvent.tapCreate returned nil (inputMonitoring=") +
                 (CGPreflightListenEventAccess() ? "true" : "false") + ")");
    case EventTap::StartResult::deaf:
        fail(TapFailure::Kind::accessibilityMissing, "the system made the tap without keys");
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
    if (tap_.isStarted() && hasLostTrust())
        takenAway();
    else
        tap_.check();
}

void ActiveTap::takenAway() {
    const bool mayBeMade = mayReturn();
    tap_.stop();
    const bool isBack = mayBeMade && tap_.start(AXIsProcessTrusted() != 0) == EventTap::StartResult::started;
    if (onDisabled) onDisabled(isBack);
}

bool ActiveTap::mayReturn() {
    if (hasLostTrust()) return false;
    const double now = uptimeSeconds();
    std::erase_if(takenAwayAt_, [&](double time) { return now - time >= longTime; });
    const bool isAgain = !takenAwayAt_.empty() && now - takenAwayAt_.back() < shortTime;
    takenAwayAt_.push_back(now);
    return !isAgain && takenAwayAt_.size() < oftenInLongTime;
}

bool ActiveTap::hasLostTrust() const { return wasTrusted_ && AXIsProcessTrusted() == 0; }

bool ActiveTap::isResting() const {
    return takenAwayAt_.size() >= oftenInLongTime && uptimeSeconds() - takenAwayAt_.back() < longTime;
}

} // namespace hopsel
