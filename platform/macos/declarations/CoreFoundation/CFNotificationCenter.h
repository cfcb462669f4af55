// The notification center of all processes of the login session.
#pragma once

#include <CoreFoundation/CFDictionary.h>

extern "C" {

using CFNotificationCenterRef = struct HopselCFNotificationCenter*;
using CFNotificationName = CFStringRef;
using CFNotificationCallback = void (*)(CFNotificationCenterRef center, void* observer,
                                        CFNotificationName name, const void* object,
                                        CFDictionaryRef userInfo);

enum CFNotificationSuspensionBehavior : CFIndex {
    CFNotificationSuspensionBehaviorDrop = 1,
    CFNotificationSuspensionBehaviorCoalesce = 2,
    CFNotificationSuspensionBehaviorHold = 3,
    CFNotificationSuspensionBehaviorDeliverImmediately = 4,
};

CFNotificationCenterRef CFNotificationCenterGetDistributedCenter();
void CFNotificationCenterAddObserver(CFNotificationCenterRef center, const void* observer,
                                     CFNotificationCallback callback, CFNotificationName name,
                                     const void* object, CFNotificationSuspensionBehavior behavior);
void CFNotificationCenterRemoveEveryObserver(CFNotificationCenterRef center, const void* observer);
}
