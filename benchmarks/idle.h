// What a program costs that has nothing to do.
#pragma once

#include "benchmarks/measurement.h"

#include <string>
#include <sys/types.h>

namespace hopsel::bench {

constexpr double idleWakeUps = 2; ///< a minute, at most

/// Leaves it alone for some eighty seconds, and reports how often each of its threads woke up and how long
/// they ran.
void reportIdle(const std::string& title, pid_t process, Budget wakeUpsPerMinute);

} // namespace hopsel::bench
