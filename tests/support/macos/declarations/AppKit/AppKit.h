// The workspace, for Objective-C++.
#pragma once

#include <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

extern "C" {

extern NSNotificationName NSWorkspaceWillSleepNotification;
extern NSNotificationName NSWorkspaceDidWakeNotification;
extern NSNotificationName NSWorkspaceSessionDidResignActiveNotification;
extern NSNotificationName NSWorkspaceSessionDidBecomeActiveNotification;
}

@interface NSWorkspace : NSObject
@property(class, readonly, strong) NSWorkspace* sharedWorkspace;
@property(readonly, strong) NSNotificationCenter* notificationCenter;
@end

NS_ASSUME_NONNULL_END
