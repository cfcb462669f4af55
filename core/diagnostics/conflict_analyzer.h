// What a recording says about other programs that get in the way. Pure; computed when someone looks.
#pragma once

#include "core/diagnostics/diagnostics_recorder.h"

#include <optional>
#include <variant>
#include <vector>

namespace hopsel {

/// Did the trigger arrive after the user was asked to press it?
enum class ProbeResult {
    received,
    arrivedAsOtherKey, ///< other keys arrived, the trigger did not: something remaps it
    noSignal,
};

namespace conflict_warning {
struct TriggerArrivesAsOtherKey {
    ModifierKey expected;
    friend bool operator==(const TriggerArrivesAsOtherKey&, const TriggerArrivesAsOtherKey&) = default;
};
/// The platform took the event source away so many times within one window.
struct RepeatedTapDisabled {
    int count;
    friend bool operator==(const RepeatedTapDisabled&, const RepeatedTapDisabled&) = default;
};
/// So many switches within one window failed or could not be verified.
struct RepeatedSwitchFailures {
    int count;
    friend bool operator==(const RepeatedSwitchFailures&, const RepeatedSwitchFailures&) = default;
};
} // namespace conflict_warning

using ConflictWarning =
    std::variant<conflict_warning::TriggerArrivesAsOtherKey, conflict_warning::RepeatedTapDisabled,
                 conflict_warning::RepeatedSwitchFailures>;

namespace conflict_analyzer {

/// Length of the sliding window, closed at both ends, in seconds of the engine's clock.
inline constexpr double windowSeconds = 60;
/// Fewer events than this in a window are no warning.
inline constexpr int threshold = 3;

/// A probe that was run and judged.
struct Probe {
    ModifierKey trigger;
    ProbeResult result;
};

/// In the order of the variant, each at most once.
std::vector<ConflictWarning> warnings(const DiagnosticEntries& entries, std::optional<Probe> probe);

/// `entries`: what was recorded since the probe started. The first press of exactly the trigger decides.
ProbeResult probe(const DiagnosticEntries& entries, ModifierKey trigger);

/// The most of the times that fit into one window. A time that is no finite number fits into none.
int maxInWindow(std::vector<double> times);

} // namespace conflict_analyzer
} // namespace hopsel
