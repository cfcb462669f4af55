#include "benchmarks/idle.h"

#include "benchmarks/process_figures.h"

#include <poll.h>

namespace hopsel::bench {

namespace {

/// Until the item in the panel is made and drawn, which a program puts off until it has settled, and until it
/// has stopped looking at what the last key press may have changed.
constexpr int settlingSeconds = 15;
constexpr int quietSeconds = 60;

/// Nothing is awaited here: that nothing happens is what is measured.
void letTimePass(int seconds) { poll(nullptr, 0, seconds * 1000); }

} // namespace

void reportIdle(const std::string& title, pid_t process, Budget wakeUpsPerMinute) {
    letTimePass(settlingSeconds);
    const Threads before = threadsOf(process);
    letTimePass(quietSeconds);
    const Threads meanwhile = between(before, threadsOf(process));
    constexpr double perMinute = 60.0 / quietSeconds;
    Activity total;
    for (const auto& [thread, activity] : meanwhile) {
        total.wakeUps += activity.wakeUps;
        total.processorTime += activity.processorTime;
    }
    report(title + ", wake-ups", static_cast<double>(total.wakeUps) * perMinute, "/min", wakeUpsPerMinute);
    for (const auto& [thread, activity] : meanwhile)
        report(title + ", of thread " + activity.name, static_cast<double>(activity.wakeUps) * perMinute,
               "/min");
    report(title + ", processor", total.processorTime * perMinute, "ms/min");
}

} // namespace hopsel::bench
