// The clock that stands still while the machine sleeps, in ticks.
#pragma once

#include <cstdint>

extern "C" {

struct mach_timebase_info_data_t {
    std::uint32_t numer; ///< nanoseconds are ticks * numer / denom
    std::uint32_t denom;
};

std::uint64_t mach_absolute_time();
int mach_timebase_info(mach_timebase_info_data_t* info);
}
