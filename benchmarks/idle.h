// What a program costs that has nothing to do.
#pragma once

#include "benchmarks/measurement.h"

#include <string>
#include <sys/types.h>

namespace hopsel::bench {

/// Leaves it alone for some thirty seconds, and reports how often it woke up and how long it ran.
void reportIdle(const std::string& title, pid_t process, Budget wakeUpsPerMinute = {});

} // namespace hopsel::bench
