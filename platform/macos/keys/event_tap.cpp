#include "platform/macos/keys/event_tap.h"

#include "platform/macos/base/autorelease_pool.h"
#include "platform/macos/keys/tap_list.h"

namespace hopsel {

EventTap::EventTap(Client& client, CGEventTapOptions options, std::initializer_list<CGEventType> types)
    : client_(client), options_(options) {
    for (const CGEventType type : types) mask_ |= CGEventMask{1} << static_cast<unsigned>(type);
}

EventTap::StartResult EventTap::start(bool isPermitted) {
    if (isStarted()) return StartResult::started;
    auto port = CfRef<CFMachPortRef>::adopt(
        CGEventTapCreate(kCGSessionEventTap, kCGHeadInsertEventTap, options_, mask_, &callback, this));
    if (!port) return StartResult::tapRefused;
    auto source =
        CfRef<CFRunLoopSourceRef>::adopt(CFMachPortCreateRunLoopSource(kCFAllocatorDefault, port.get(), 0));
    if (!source) {
        CFMachPortInvalidate(port.get());
        return StartResult::runLoopSourceRefused;
    }
    // In the common modes, so that events also arrive while a menu is open.
    CFRunLoopAddSource(CFRunLoopGetMain(), source.get(), kCFRunLoopCommonModes);
    CGEventTapEnable(port.get(), true);
    port_ = std::move(port);
    source_ = std::move(source);
    // Without the permission some versions of the system hand out a tap that cannot be enabled, others one
    // without keys; neither comes to hear them when the permission is given.
    StartResult result = StartResult::started;
    if (!CGEventTapIsEnabled(port_.get()))
        result = StartResult::tapRefused;
    else if (!tap_list::hearsKeys(options_, mask_).value_or(isPermitted))
        result = StartResult::deaf;
    if (result != StartResult::started) stop();
    return result;
}

void EventTap::stop() {
    if (!isStarted()) return;
    CFRunLoopRemoveSource(CFRunLoopGetMain(), source_.get(), kCFRunLoopCommonModes);
    CGEventTapEnable(port_.get(), false);
    // Releasing the port alone would leave the tap in the window server for as long as the loop holds the
    // port.
    CFMachPortInvalidate(port_.get());
    source_ = {};
    port_ = {};
}

bool EventTap::enableAgain() {
    if (!isStarted() || CFMachPortIsValid(port_.get()) == 0) return false;
    CGEventTapEnable(port_.get(), true);
    return works();
}

void EventTap::check() {
    if (isStarted() && !works()) client_.takenAway();
}

bool EventTap::works() const {
    return CFMachPortIsValid(port_.get()) != 0 && CGEventTapIsEnabled(port_.get()) &&
           tap_list::hearsKeys(options_, mask_).value_or(true);
}

// The client may have released the tap when it returns.
CGEventRef EventTap::callback(CGEventTapProxy, CGEventType type, CGEventRef event, void* self) {
    auto* tap = static_cast<EventTap*>(self);
    if (tap == nullptr) return event;
    const AutoreleasePool pool;
    if (type == kCGEventTapDisabledByTimeout || type == kCGEventTapDisabledByUserInput) {
        tap->client_.takenAway();
        return event;
    }
    return tap->client_.tapped(type, event) ? nullptr : event;
}

} // namespace hopsel
