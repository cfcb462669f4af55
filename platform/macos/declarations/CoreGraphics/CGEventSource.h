// Where posted events say that they come from.
#pragma once

#include <CoreGraphics/CGEventTypes.h>

extern "C" {

enum CGEventSourceStateID : std::int32_t {
    kCGEventSourceStateCombinedSessionState = 0,
    kCGEventSourceStateHIDSystemState = 1,
};

CGEventSourceRef CGEventSourceCreate(CGEventSourceStateID state);
}
