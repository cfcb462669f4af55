// The mark on posted events, in the field that the system reserves for the poster: how our taps know our own
// events again. Stateless.
#pragma once

#include "core/platform/synthetic_events.h"

#include <CoreGraphics/CoreGraphics.h>

namespace hopsel::event_stamp {

inline void put(CGEventRef event) {
    CGEventSetIntegerValueField(event, kCGEventSourceUserData, synthetic_events::marker());
}

inline bool isOn(CGEventRef event) {
    return CGEventGetIntegerValueField(event, kCGEventSourceUserData) == synthetic_events::marker();
}

} // namespace hopsel::event_stamp
