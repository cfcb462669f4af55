// Keyboard and mouse events, the fields in them, and where taps stand.
#pragma once

#include <CoreFoundation/CFBase.h>
#include <sys/types.h>

extern "C" {

using CGEventRef = struct HopselCGEvent*;
using CGEventSourceRef = struct HopselCGEventSource*;
using CGEventTapProxy = struct HopselCGEventTapProxy*;
using CGKeyCode = std::uint16_t;
using CGEventMask = std::uint64_t;
using CGEventFlags = std::uint64_t;

enum CGEventType : std::uint32_t {
    kCGEventNull = 0,
    kCGEventLeftMouseDown = 1,
    kCGEventLeftMouseUp = 2,
    kCGEventRightMouseDown = 3,
    kCGEventMouseMoved = 5,
    kCGEventKeyDown = 10,
    kCGEventKeyUp = 11,
    kCGEventFlagsChanged = 12,
    kCGEventScrollWheel = 22,
    kCGEventOtherMouseDown = 25,
    kCGEventTapDisabledByTimeout = 0xFFFFFFFE,
    kCGEventTapDisabledByUserInput = 0xFFFFFFFF,
};

enum CGEventField : std::uint32_t {
    kCGKeyboardEventAutorepeat = 8,
    kCGKeyboardEventKeycode = 9,
    kCGEventSourceUserData = 42,
};

enum CGEventTapLocation : std::uint32_t {
    kCGHIDEventTap = 0,
    kCGSessionEventTap = 1,
};
enum CGEventTapPlacement : std::uint32_t {
    kCGHeadInsertEventTap = 0,
    kCGTailAppendEventTap = 1,
};
enum CGEventTapOptions : std::uint32_t {
    kCGEventTapOptionDefault = 0,
    kCGEventTapOptionListenOnly = 1,
};

enum CGError : std::int32_t {
    kCGErrorSuccess = 0,
    kCGErrorFailure = 1000,
};

/// A tap as the system lists it.
struct CGEventTapInformation {
    std::uint32_t eventTapID;
    CGEventTapLocation tapPoint;
    CGEventTapOptions options;
    CGEventMask eventsOfInterest;
    pid_t tappingProcess;
    pid_t processBeingTapped;
    bool enabled;
    float minUsecLatency;
    float avgUsecLatency;
    float maxUsecLatency;
};

/// Swallows by returning nothing, if the tap is no mere listener.
using CGEventTapCallBack = CGEventRef (*)(CGEventTapProxy proxy, CGEventType type, CGEventRef event,
                                          void* userInfo);
}
