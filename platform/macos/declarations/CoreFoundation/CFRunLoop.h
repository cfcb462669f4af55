// The run loop: modes, sources that are signalled.
#pragma once

#include <CoreFoundation/CFBase.h>

extern "C" {

using CFRunLoopRef = struct HopselCFRunLoop*;
using CFRunLoopSourceRef = struct HopselCFRunLoopSource*;
using CFRunLoopMode = CFStringRef;
extern const CFRunLoopMode kCFRunLoopDefaultMode;
extern const CFRunLoopMode kCFRunLoopCommonModes;

enum CFRunLoopRunResult : SInt32 {
    kCFRunLoopRunFinished = 1,
    kCFRunLoopRunStopped = 2,
    kCFRunLoopRunTimedOut = 3,
    kCFRunLoopRunHandledSource = 4,
};

struct CFRunLoopSourceContext {
    CFIndex version;
    void* info;
    const void* (*retain)(const void* info);
    void (*release)(const void* info);
    CFStringRef (*copyDescription)(const void* info);
    Boolean (*equal)(const void* one, const void* other);
    CFHashCode (*hash)(const void* info);
    void (*schedule)(void* info, CFRunLoopRef loop, CFRunLoopMode mode);
    void (*cancel)(void* info, CFRunLoopRef loop, CFRunLoopMode mode);
    void (*perform)(void* info);
};

CFRunLoopRef CFRunLoopGetMain();
CFRunLoopRunResult CFRunLoopRunInMode(CFRunLoopMode mode, CFTimeInterval seconds,
                                      Boolean returnAfterSourceHandled);
void CFRunLoopWakeUp(CFRunLoopRef loop);

CFRunLoopSourceRef CFRunLoopSourceCreate(CFAllocatorRef allocator, CFIndex order,
                                         CFRunLoopSourceContext* context);
void CFRunLoopAddSource(CFRunLoopRef loop, CFRunLoopSourceRef source, CFRunLoopMode mode);
void CFRunLoopRemoveSource(CFRunLoopRef loop, CFRunLoopSourceRef source, CFRunLoopMode mode);
void CFRunLoopSourceSignal(CFRunLoopSourceRef source);
void CFRunLoopSourceInvalidate(CFRunLoopSourceRef source);
}
