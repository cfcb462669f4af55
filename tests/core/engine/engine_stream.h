// Turns any bytes into a stream of what can happen to the engine, and checks what comes of it. Driven by the
// seeded random test and by the fuzz target.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace hopsel {

enum class StreamKind {
    /// Keys, clicks, lost events, secure entry and resets. Each outcome is compared with a model.
    honest,
    /// The same, with keys in the middle of a switch. Only what must hold always is checked.
    wild,
};

/// Throws std::logic_error that says what broke. Returns how many switches there were, so that a test can see
/// some.
std::size_t runEngineStream(std::span<const std::uint8_t> bytes, StreamKind kind);

} // namespace hopsel
