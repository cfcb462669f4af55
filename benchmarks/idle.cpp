#include "benchmarks/idle.h"

#include "benchmarks/process_figures.h"

#include <poll.h>

namespace hopsel::bench {

namespace {

constexpr int quietSeconds = 20;

/// Nothing is awaited here: that nothing happens is what is measured.
void letTimePass(int seconds) { poll(nullptr, 0, seconds * 1000); }

} // namespace

void reportIdle(const std::string& title, pid_t process, Budget wakeUpsPerMinute) {
    letTimePass(1);
    const long wakeUpsBefore = wakeUps(process);
    const double timeBefore = processorTime(process);
    letTimePass(quietSeconds);
    const auto perMinute = [](double difference) { return difference * 60 / quietSeconds; };
    report(title + ", wake-ups", perMinute(static_cast<double>(wakeUps(process) - wakeUpsBefore)), "/min",
           wakeUpsPerMinute);
    report(title + ", processor", perMinute(processorTime(process) - timeBefore), "ms/min");
}

} // namespace hopsel::bench
