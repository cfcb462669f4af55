#include "platform/macos/system_events/distributed_notification.h"

#include "platform/macos/base/autorelease_pool.h"

#include <set>
#include <utility>

namespace hopsel {

namespace {

std::set<const void*>& alive() {
    static std::set<const void*> registrations;
    return registrations;
}

} // namespace

DistributedNotification::DistributedNotification(CFStringRef name, std::function<void()> call)
    : call_(std::move(call)) {
    alive().insert(this);
    // Immediately: otherwise a program without a window in front waits until it has one.
    CFNotificationCenterAddObserver(CFNotificationCenterGetDistributedCenter(), this, &callback, name,
                                    nullptr, CFNotificationSuspensionBehaviorDeliverImmediately);
}

DistributedNotification::~DistributedNotification() {
    CFNotificationCenterRemoveEveryObserver(CFNotificationCenterGetDistributedCenter(), this);
    alive().erase(this);
}

void DistributedNotification::callback(CFNotificationCenterRef, void* observer, CFNotificationName,
                                       const void*, CFDictionaryRef) {
    if (!alive().contains(observer)) return;
    const AutoreleasePool pool;
    const auto call = static_cast<DistributedNotification*>(observer)->call_; // it may end the registration
    call();
}

} // namespace hopsel
