#include "core/platform/synthetic_events.h"

#include <limits>
#include <random>

namespace hopsel::synthetic_events {

std::int64_t marker() {
    static const std::int64_t value = [] {
        std::random_device random;
        return std::uniform_int_distribution<std::int64_t>(1,
                                                           std::numeric_limits<std::int64_t>::max())(random);
    }();
    return value;
}

} // namespace hopsel::synthetic_events
