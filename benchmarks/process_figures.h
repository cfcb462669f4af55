// What the kernel says of a running process. Throws `std::runtime_error` where it says nothing.
#pragma once

#include <sys/types.h>

namespace hopsel::bench {

struct Memory {
    long proportional = 0; ///< kB: its own and its share of what it shares
    long own = 0; ///< kB that it alone has written; other programs cannot change it by coming and going
};
Memory memoryOf(pid_t process);

/// Milliseconds that its threads have had a processor.
double processorTime(pid_t process);

/// How often its threads have gone to sleep by their own will, which is how often they were woken.
long wakeUps(pid_t process);

} // namespace hopsel::bench
