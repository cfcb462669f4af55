#include "engine_stream.h"

#include <gtest/gtest.h>
#include <random>
#include <vector>

namespace hopsel {
namespace {

void runMany(StreamKind kind) {
    std::size_t switches = 0;
    for (unsigned seed = 1; seed <= 250; ++seed) {
        std::mt19937 random(seed);
        std::vector<std::uint8_t> bytes(1000);
        for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(random());
        ASSERT_NO_THROW(switches += runEngineStream(bytes, kind)) << "seed " << seed;
    }
    EXPECT_GT(switches, 1500U) << "the streams are too tame to tell anything";
}

TEST(RandomStream, honestKeysComeOutAsTheModelSays) { runMany(StreamKind::honest); }

TEST(RandomStream, wildEventsBreakNoInvariant) { runMany(StreamKind::wild); }

} // namespace
} // namespace hopsel
