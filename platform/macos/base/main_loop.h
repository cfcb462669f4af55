// The main loop and the clock as the platform-free layers are given them, over the system's run loop, which
// the toolkit's loop runs as well.
//
// They need no object of their own and may be called before the loop runs.
#pragma once

#include <functional>

namespace hopsel {

/// Seconds of system uptime, sleep not counted: the one clock of all time stamps.
double uptimeSeconds();

/// Runs the function on a later turn of the loop, in the order of the calls; also on a turn that runs inside
/// another such function.
void schedule(std::function<void()> function);

/// Runs the loop until something was handled, for at most `seconds`.
void runFor(double seconds);

/// Runs the loop for as long as it says, whatever is handled meanwhile.
void waitFor(double seconds);

} // namespace hopsel
