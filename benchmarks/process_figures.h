// What the kernel says of a running process. Throws `std::runtime_error` where it says nothing.
#pragma once

#include <map>
#include <string>
#include <sys/types.h>

namespace hopsel::bench {

struct Memory {
    long proportional = 0; ///< kB: its own and its share of what it shares
    long own = 0; ///< kB that it alone has written; other programs cannot change it by coming and going
};
Memory memoryOf(pid_t process);

struct Activity {
    std::string name;         ///< of the thread
    double processorTime = 0; ///< milliseconds that it has had a processor
    long wakeUps = 0; ///< how often it has gone to sleep by its own will, which is how often it was woken
};
/// Of each thread, by its identifier.
using Threads = std::map<std::string, Activity>;
Threads threadsOf(pid_t process);
/// What happened between two looks, thread by thread. One that has ended meanwhile does not count.
Threads between(const Threads& before, const Threads& after);

} // namespace hopsel::bench
