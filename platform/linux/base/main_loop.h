// The main loop and the clock as the platform-free layers are given them: functions over the toolkit's loop.
//
// They need no object of their own and may be called before the loop runs and after it ended.
#pragma once

#include <functional>

namespace hopsel {

/// Seconds of system uptime, suspend not counted (CLOCK_MONOTONIC): the one clock of all time stamps.
double uptimeSeconds();

/// Runs the function on a later turn of the loop, ahead of painting and the like, in the order of the calls.
void schedule(std::function<void()> function);

/// As `schedule`, for a caller that sees to it that `runScheduled` is called as soon as it has returned: the
/// loop need not be woken for it.
void putOff(std::function<void()> function);

/// Runs what has been scheduled so far, if any, instead of waiting for the loop's next turn to do so. Not for
/// use inside a callback that scheduled something.
void runScheduled();

/// Runs the loop once: handles what is there, else waits for at most `seconds`. Returns as soon as anything
/// was handled. A quit that is asked for meanwhile ends the loop that called, not the wait of a later call.
void runFor(double seconds);

} // namespace hopsel
