// Notifications, and the classes that they need, for Objective-C++.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#define nil nullptr
#define NS_ASSUME_NONNULL_BEGIN _Pragma("clang assume_nonnull begin")
#define NS_ASSUME_NONNULL_END _Pragma("clang assume_nonnull end")

NS_ASSUME_NONNULL_BEGIN

@protocol NSObject
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject>
@end

@interface NSString : NSObject
@end

using NSNotificationName = NSString*;

@interface NSNotification : NSObject
@end

@interface NSOperationQueue : NSObject
@property(class, readonly, strong) NSOperationQueue* mainQueue;
@end

@interface NSNotificationCenter : NSObject
- (id<NSObject>)addObserverForName:(nullable NSNotificationName)name
                            object:(nullable id)object
                             queue:(nullable NSOperationQueue*)queue
                        usingBlock:(void (^)(NSNotification* notification))block;
- (void)removeObserver:(id)observer;
@end

NS_ASSUME_NONNULL_END
