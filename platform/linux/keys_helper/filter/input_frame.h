// What a keyboard device says at one moment: the events up to its next report. Plain values, with the numbers
// of <linux/input-event-codes.h>.
#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace hopsel {

struct DeviceEvent {
    std::uint16_t type = 0;
    std::uint16_t code = 0;
    std::int32_t value = 0;
    friend bool operator==(const DeviceEvent&, const DeviceEvent&) = default;
};

struct InputFrame {
    std::uint64_t microseconds = 0;  ///< of CLOCK_MONOTONIC
    std::vector<DeviceEvent> events; ///< without the report that ends them
    /// What the kernel dropped is made up for: these are the differences, not what was typed.
    bool isRecovered = false;
    friend bool operator==(const InputFrame&, const InputFrame&) = default;
};

/// More than the kernel numbers (KEY_CNT).
inline constexpr std::size_t keyNumbers = 0x300;
using KeysDown = std::bitset<keyNumbers>;

} // namespace hopsel
