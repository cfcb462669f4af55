// The parts of AppKit that this program uses, for Objective-C++.
#pragma once

#include <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

extern "C" {

extern NSNotificationName NSWorkspaceWillSleepNotification;
extern NSNotificationName NSWorkspaceDidWakeNotification;
extern NSNotificationName NSWorkspaceSessionDidResignActiveNotification;
extern NSNotificationName NSWorkspaceSessionDidBecomeActiveNotification;
extern NSNotificationName NSWorkspaceDidActivateApplicationNotification;
extern NSString* const NSWorkspaceApplicationKey;
extern NSNotificationName NSApplicationDidFinishLaunchingNotification;
}

using NSApplicationActivationOptions = NSUInteger;

@interface NSRunningApplication : NSObject
+ (nullable NSRunningApplication*)runningApplicationWithProcessIdentifier:(pid_t)process;
+ (NSArray<NSRunningApplication*>*)runningApplicationsWithBundleIdentifier:(NSString*)identifier;
@property(class, readonly, strong) NSRunningApplication* currentApplication;
@property(nullable, readonly, copy) NSString* bundleIdentifier;
@property(nullable, readonly, copy) NSDate* launchDate;
@property(readonly) pid_t processIdentifier;
- (BOOL)activateWithOptions:(NSApplicationActivationOptions)options;
- (BOOL)activateFromApplication:(NSRunningApplication*)application
                        options:(NSApplicationActivationOptions)options API_AVAILABLE(macos(14.0));
@end

@interface NSWorkspace : NSObject
@property(class, readonly, strong) NSWorkspace* sharedWorkspace;
@property(readonly, strong) NSNotificationCenter* notificationCenter;
@property(readonly, copy) NSArray<NSRunningApplication*>* runningApplications;
@property(nullable, readonly, strong) NSRunningApplication* frontmostApplication;
- (BOOL)openURL:(NSURL*)url;
- (void)activateFileViewerSelectingURLs:(NSArray<NSURL*>*)urls;
@end

enum NSApplicationActivationPolicy : NSInteger {
    NSApplicationActivationPolicyRegular,
    NSApplicationActivationPolicyAccessory,
    NSApplicationActivationPolicyProhibited,
};

@interface NSApplication : NSObject
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)policy;
- (void)activateIgnoringOtherApps:(BOOL)ignoringOthers;
- (void)activate API_AVAILABLE(macos(14.0));
- (void)yieldActivationToApplication:(NSRunningApplication*)application API_AVAILABLE(macos(14.0));
@end

extern "C" {
extern NSApplication* _Null_unspecified NSApp;
}

using NSEventMask = unsigned long long;
enum : NSEventMask { NSEventMaskKeyDown = 1ULL << 10 };
using NSEventModifierFlags = NSUInteger;

@interface NSEvent : NSObject
@property(readonly) unsigned short keyCode;
@property(readonly) NSEventModifierFlags modifierFlags;
@property(getter=isARepeat, readonly) BOOL ARepeat;
+ (nullable id)addLocalMonitorForEventsMatchingMask:(NSEventMask)mask
                                            handler:(NSEvent* _Nullable (^)(NSEvent* event))handler;
+ (void)removeMonitor:(id)monitor;
@end

using NSPasteboardType = NSString*;
extern "C" {
extern NSPasteboardType const NSPasteboardTypeString;
}

@interface NSPasteboard : NSObject
@property(class, readonly, strong) NSPasteboard* generalPasteboard;
- (NSInteger)clearContents;
- (BOOL)setString:(NSString*)text forType:(NSPasteboardType)type;
@end

using NSModalResponse = NSInteger;
enum : NSModalResponse { NSModalResponseOK = 1 };

@class UTType;

@interface NSSavePanel : NSObject
+ (NSSavePanel*)savePanel;
@property(copy) NSString* nameFieldStringValue;
@property(copy) NSArray<UTType*>* allowedContentTypes;
@property BOOL canCreateDirectories;
@property(nullable, copy) NSURL* directoryURL;
@property(nullable, readonly, copy) NSURL* URL;
- (NSModalResponse)runModal;
@end

using CGFloat = double;
struct CGSize {
    CGFloat width;
    CGFloat height;
};
using NSSize = CGSize;

@interface NSImageRep : NSObject
@property NSSize size;
@end

@interface NSBitmapImageRep : NSImageRep
+ (nullable instancetype)imageRepWithData:(NSData*)data;
@end

@interface NSImage : NSObject
+ (nullable instancetype)imageWithSystemSymbolName:(NSString*)name
                          accessibilityDescription:(nullable NSString*)description;
- (instancetype)initWithSize:(NSSize)size;
- (void)addRepresentation:(NSImageRep*)representation;
- (void)setTemplate:(BOOL)isTemplate;
@end

@interface NSMenu : NSObject
@end

enum NSCellImagePosition : NSUInteger { NSNoImage, NSImageOnly };

@interface NSStatusBarButton : NSObject
@property(nullable, strong) NSImage* image;
@property NSCellImagePosition imagePosition;
@property(copy) NSString* title;
@property(nullable, copy) NSString* accessibilityLabel;
@end

static const CGFloat NSVariableStatusItemLength = -1.0;

@interface NSStatusItem : NSObject
@property(nullable, readonly, strong) NSStatusBarButton* button;
@property(nullable, strong) NSMenu* menu;
@end

@interface NSStatusBar : NSObject
@property(class, readonly, strong) NSStatusBar* systemStatusBar;
- (NSStatusItem*)statusItemWithLength:(CGFloat)length;
- (void)removeStatusItem:(NSStatusItem*)item;
@end

NS_ASSUME_NONNULL_END
