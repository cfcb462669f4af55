// What is measured with the whole program on a display. Each prints its results; each needs $DISPLAY, a
// window manager and the layout groups 0 and 1, and leaves nothing running.
#pragma once

#include "benchmarks/switchers.h"

namespace hopsel::bench {

/// From the trigger key's release to the locked group, side by side with other programs.
void measureSwitchLatency(const Programs& programs);
/// From a key press to the application, for keys that the filter must look at and for keys that it must not.
void measurePassedKeys(const Programs& programs);
/// From the start of the process to the first tap that works.
void measureStart(const Programs& programs);
/// How often it wakes up when nobody types.
void measureIdle(const Programs& programs);
/// What many switches and many keys leave in memory.
void measureMemory(const Programs& programs);

} // namespace hopsel::bench
