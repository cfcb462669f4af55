// Times of the X server on the program's clock: what its milliseconds do, and what another clock does.
#include "platform/linux/x11/x11_server_clock.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

namespace hopsel {
namespace {

TEST(X11ServerClock, KeysLastAsLongAsTheServerSays) {
    struct Read {
        std::uint32_t serverTime;
        double now;
        double expected;
    };
    const struct {
        std::string name;
        std::vector<Read> reads;
    } cases[]{
        // The server's clock is at 1000 when ours is at 50.
        {"read at once", {{1500, 50.5, 50.5}, {1560, 50.56, 50.56}}},
        {"read late, both at once", {{1500, 60, 50.5}, {2300, 60, 51.3}}},
        {"the second read late", {{1500, 50.5, 50.5}, {1560, 51.3, 50.56}}},
        {"what was posted overtakes", {{1500, 51, 50.5}, {1490, 51, 50.5}, {1560, 51, 50.56}}},
        {"set ahead", {{1500, 50.5, 50.5}, {900'000, 50.6, 50.6}, {900'060, 50.7, 50.66}}},
        {"set back",
         {{1500, 50.5, 50.5}, {1'000'001, 1050, 1049.001}, {10'000, 1051, 1051}, {10'100, 1052, 1051.1}}},
        {"silent for fifty days", {{3'000'000'000, 5e6, 5e6}, {3'000'000'060, 5e6 + 1, 5e6 + 0.06}}},
    };
    for (const auto& each : cases) {
        X11ServerClock clock(1000, 50);
        for (const Read& read : each.reads)
            EXPECT_NEAR(clock.timeOf(read.serverTime, read.now), read.expected, 1e-6) << each.name;
    }
}

TEST(X11ServerClock, ItsMillisecondsGoRound) {
    X11ServerClock clock(std::numeric_limits<std::uint32_t>::max() - 99, 50);
    EXPECT_NEAR(clock.timeOf(std::numeric_limits<std::uint32_t>::max() - 9, 60), 50.09, 1e-6);
    EXPECT_NEAR(clock.timeOf(700, 60), 50.8, 1e-6);
}

} // namespace
} // namespace hopsel
