// Mach ports, which event taps are handed out as.
#pragma once

#include <CoreFoundation/CFRunLoop.h>

extern "C" {

using CFMachPortRef = struct HopselCFMachPort*;

CFRunLoopSourceRef CFMachPortCreateRunLoopSource(CFAllocatorRef allocator, CFMachPortRef port, CFIndex order);
void CFMachPortInvalidate(CFMachPortRef port);
Boolean CFMachPortIsValid(CFMachPortRef port);
}
