// The guard's own process: what it shares with the program, and what it does for the rest of its life.
//
// It hears every key, as any program of an X session may, and keeps nothing of one but its time: when, and
// whether the program has dealt with it.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>

namespace hopsel {

/// Where in the stream of raw keys an event stands, the same for everyone who listens: its time of the
/// server, in milliseconds that wrap around, and how many before it had the same.
struct KeyMoment {
    std::uint32_t time = 0;
    std::uint32_t number = 0;

    KeyMoment next(std::uint32_t eventTime) const { return {eventTime, eventTime == time ? number + 1 : 0}; }
    bool isNotAfter(const KeyMoment& other) const {
        const auto ahead = static_cast<std::int32_t>(other.time - time);
        return ahead > 0 || (ahead == 0 && number <= other.number);
    }
};

/// Memory that both processes have. All zero where nothing is filtered.
struct KeyboardGuardBoard {
    std::array<std::atomic<std::uint32_t>, 2> handles; ///< of the connections to be cut
    std::atomic<KeyMoment> handled;                    ///< the last key that the program has dealt with
    std::atomic<std::uint32_t> cuts;
};
static_assert(std::atomic<std::uint32_t>::is_always_lock_free);
static_assert(std::atomic<KeyMoment>::is_always_lock_free);

namespace keyboard_guard_process {

/// The words that the program says, one byte each; the last counts.
inline constexpr char watchWord = 'w', restWord = 'r';

/// In the child of a fork. Ends when the other end of the words' socket has gone.
[[noreturn]] void run(KeyboardGuardBoard& board, int words);

} // namespace keyboard_guard_process
} // namespace hopsel
