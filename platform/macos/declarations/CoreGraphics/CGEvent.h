// Taps, posting, and the permission to listen.
#pragma once

#include <CoreFoundation/CFMachPort.h>
#include <CoreGraphics/CGEventSource.h>

extern "C" {

CFMachPortRef CGEventTapCreate(CGEventTapLocation location, CGEventTapPlacement placement,
                               CGEventTapOptions options, CGEventMask mask, CGEventTapCallBack callback,
                               void* userInfo);
void CGEventTapEnable(CFMachPortRef port, bool isEnabled);
bool CGEventTapIsEnabled(CFMachPortRef port);
/// All taps of the session. Without a list it only counts them.
CGError CGGetEventTapList(std::uint32_t room, CGEventTapInformation* list, std::uint32_t* count);

CGEventRef CGEventCreateKeyboardEvent(CGEventSourceRef source, CGKeyCode key, bool isDown);
CGEventFlags CGEventGetFlags(CGEventRef event);
void CGEventSetFlags(CGEventRef event, CGEventFlags flags);
std::int64_t CGEventGetIntegerValueField(CGEventRef event, CGEventField field);
void CGEventSetIntegerValueField(CGEventRef event, CGEventField field, std::int64_t value);
void CGEventPost(CGEventTapLocation location, CGEventRef event);

/// Never prompts.
bool CGPreflightListenEventAccess();
/// May prompt.
bool CGRequestListenEventAccess();
}
