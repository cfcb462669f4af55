#include "benchmarks/idle.h"

#include "benchmarks/process_figures.h"

#include <poll.h>

namespace hopsel::bench {

namespace {

/// Until the item in the panel is made and drawn, which a program puts off until it has settled.
constexpr int settlingSeconds = 10;
constexpr int quietSeconds = 20;

/// Nothing is awaited here: that nothing happens is what is measured.
void letTimePass(int seconds) { poll(nullptr, 0, seconds * 1000); }

} // namespace

void reportIdle(const std::string& title, pid_t process, Budget wakeUpsPerMinute) {
    letTimePass(settlingSeconds);
    const Threads before = threadsOf(process);
    letTimePass(quietSeconds);
    const Activity meanwhile = between(before, threadsOf(process));
    constexpr double perMinute = 60.0 / quietSeconds;
    report(title + ", wake-ups", static_cast<double>(meanwhile.wakeUps) * perMinute, "/min",
           wakeUpsPerMinute);
    report(title + ", processor", meanwhile.processorTime * perMinute, "ms/min");
}

} // namespace hopsel::bench
