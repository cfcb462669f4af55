// The parts of Foundation that this program uses, for Objective-C++. On macOS the system's own headers are
// found instead.
#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <sys/types.h>

#ifndef nil
#define nil nullptr
#endif
#ifndef API_AVAILABLE
#define API_AVAILABLE(...)
#endif
#define NS_ASSUME_NONNULL_BEGIN _Pragma("clang assume_nonnull begin")
#define NS_ASSUME_NONNULL_END _Pragma("clang assume_nonnull end")

NS_ASSUME_NONNULL_BEGIN

using BOOL = bool; // as on arm64
#define YES true
#define NO false
using NSInteger = long;
using NSUInteger = unsigned long;
using NSStringEncoding = NSUInteger;
enum : NSStringEncoding { NSUTF8StringEncoding = 4 };

@class NSArray<ObjectType>;
@class NSString;

@protocol NSObject
- (BOOL)isKindOfClass:(Class)type;
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject>
+ (instancetype)alloc;
- (instancetype)init;
+ (Class)class;
@end

@interface NSString : NSObject
- (nullable instancetype)initWithBytes:(const void*)bytes
                                length:(NSUInteger)length
                              encoding:(NSStringEncoding)encoding;
@property(nullable, readonly) const char* UTF8String;
@end

struct NSFastEnumerationState {
    unsigned long state;
    id __unsafe_unretained _Nullable* _Nullable itemsPtr;
    unsigned long* _Nullable mutationsPtr;
    unsigned long extra[5];
};

@protocol NSFastEnumeration
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained _Nullable[_Nonnull])buffer
                                    count:(NSUInteger)count;
@end

@interface NSArray<ObjectType> : NSObject <NSFastEnumeration>
+ (instancetype)arrayWithObjects:(const ObjectType _Nonnull[_Nullable])objects count:(NSUInteger)count;
@property(nullable, readonly) ObjectType firstObject;
@end

@interface NSDictionary<KeyType, ObjectType> : NSObject
- (nullable ObjectType)objectForKeyedSubscript:(KeyType)key;
@end

@interface NSDate : NSObject
@property(readonly) double timeIntervalSinceReferenceDate;
@end

@interface NSError : NSObject
@property(readonly, copy) NSString* localizedDescription;
@end

@interface NSURL : NSObject
+ (nullable instancetype)URLWithString:(NSString*)text;
+ (NSURL*)fileURLWithPath:(NSString*)path;
@property(readonly) const char* fileSystemRepresentation;
@end

using NSDataWritingOptions = NSUInteger;
enum : NSDataWritingOptions { NSDataWritingAtomic = 1UL << 0 };

@interface NSData : NSObject
+ (instancetype)dataWithBytes:(nullable const void*)bytes length:(NSUInteger)length;
- (BOOL)writeToURL:(NSURL*)url
           options:(NSDataWritingOptions)options
             error:(NSError* _Nullable* _Nullable)error;
@end

enum NSSearchPathDirectory : NSUInteger { NSDownloadsDirectory = 15 };
using NSSearchPathDomainMask = NSUInteger;
enum : NSSearchPathDomainMask { NSUserDomainMask = 1 };

@interface NSFileManager : NSObject
@property(class, readonly, strong) NSFileManager* defaultManager;
- (NSArray<NSURL*>*)URLsForDirectory:(NSSearchPathDirectory)directory
                           inDomains:(NSSearchPathDomainMask)domains;
@end

@interface NSBundle : NSObject
@property(class, readonly, strong) NSBundle* mainBundle;
@property(nullable, readonly, copy) NSString* bundleIdentifier;
@end

struct NSOperatingSystemVersion {
    NSInteger majorVersion;
    NSInteger minorVersion;
    NSInteger patchVersion;
};

@interface NSProcessInfo : NSObject
@property(class, readonly, strong) NSProcessInfo* processInfo;
@property(readonly) int processIdentifier;
@property(readonly) NSOperatingSystemVersion operatingSystemVersion;
@end

using NSNotificationName = NSString*;

@interface NSNotification : NSObject
@property(nullable, readonly, copy) NSDictionary* userInfo;
@end

@interface NSOperationQueue : NSObject
@property(class, readonly, strong) NSOperationQueue* mainQueue;
@end

@interface NSNotificationCenter : NSObject
@property(class, readonly, strong) NSNotificationCenter* defaultCenter;
- (id<NSObject>)addObserverForName:(nullable NSNotificationName)name
                            object:(nullable id)object
                             queue:(nullable NSOperationQueue*)queue
                        usingBlock:(void (^)(NSNotification* notification))block;
- (void)removeObserver:(id)observer;
@end

using AEEventClass = UInt32;
using AEEventID = UInt32;
enum : UInt32 {
    kCoreEventClass = 0x61657674,      // 'aevt'
    kAEReopenApplication = 0x72617070, // 'rapp'
};

@interface NSAppleEventDescriptor : NSObject
@end

@interface NSAppleEventManager : NSObject
+ (NSAppleEventManager*)sharedAppleEventManager;
- (void)setEventHandler:(id)handler
            andSelector:(SEL)selector
          forEventClass:(AEEventClass)eventClass
             andEventID:(AEEventID)eventID;
- (void)removeEventHandlerForEventClass:(AEEventClass)eventClass andEventID:(AEEventID)eventID;
@end

NS_ASSUME_NONNULL_END
