// The engine's words to the rest of the program: its state, the status of the shortcut source, and every
// outcome as an event. Plain values without behaviour.
#pragma once

#include "core/keys/shortcut_key.h"
#include "core/platform/input_source.h"

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace hopsel {

enum class DegradedReason {
    permissionMissing, ///< the listening source could not be started
    tapDisabled,       ///< the platform took the running source away and it did not come back
};

namespace engine_state {
struct Stopped {
    friend bool operator==(const Stopped&, const Stopped&) = default;
};
struct Running {
    friend bool operator==(const Running&, const Running&) = default;
};
/// Wanted to run, but cannot.
struct Degraded {
    DegradedReason reason;
    friend bool operator==(const Degraded&, const Degraded&) = default;
};
} // namespace engine_state

using EngineState = std::variant<engine_state::Stopped, engine_state::Running, engine_state::Degraded>;

enum class ShortcutStatus {
    notNeeded,   ///< no shortcut rules, no shortcut source, or the engine is not running
    running,     ///< shortcuts are filtered
    unavailable, ///< could not be started, or the platform took it away
};

enum class SuppressReason { secureInput };

namespace skip_reason {
/// The rule's sources that cannot be selected: source A first.
struct BrokenSource {
    std::vector<std::string> missing;
    friend bool operator==(const BrokenSource&, const BrokenSource&) = default;
};
/// A remote application is in front and local switching stands aside.
struct RemoteApp {
    friend bool operator==(const RemoteApp&, const RemoteApp&) = default;
};
/// A guest system is in front, but the guest key could not be sent.
struct GuestKeyUnavailable {
    friend bool operator==(const GuestKeyUnavailable&, const GuestKeyUnavailable&) = default;
};
} // namespace skip_reason

using SkipReason =
    std::variant<skip_reason::BrokenSource, skip_reason::RemoteApp, skip_reason::GuestKeyUnavailable>;

enum class ResetReason {
    tapDisabled,
    sleep,
    wake,
    screenLocked,
    screenUnlocked,
    sessionInactive,
    sessionActive,
    configChanged,
    stopped,
};

namespace engine_event {
struct StateChanged {
    EngineState state;
    friend bool operator==(const StateChanged&, const StateChanged&) = default;
};
/// A selection was accepted.
struct Switched {
    std::string ruleId;
    std::optional<std::string> from; ///< what the platform reported before
    std::string to;
    bool verified = false;
    double latencyMs = 0;
    friend bool operator==(const Switched&, const Switched&) = default;
};
struct SwitchFailed {
    std::string ruleId;
    std::string to;
    SelectResult result;
    friend bool operator==(const SwitchFailed&, const SwitchFailed&) = default;
};
struct SwitchSuppressed {
    std::string ruleId;
    SuppressReason reason;
    friend bool operator==(const SwitchSuppressed&, const SwitchSuppressed&) = default;
};
struct RuleSkipped {
    std::string ruleId;
    SkipReason reason;
    friend bool operator==(const RuleSkipped&, const RuleSkipped&) = default;
};
/// The guest key was posted instead of switching.
struct GuestKeySent {
    std::string ruleId;
    ShortcutKey key;
    friend bool operator==(const GuestKeySent&, const GuestKeySent&) = default;
};
/// All tracked key state was thrown away.
struct Reset {
    ResetReason reason;
    friend bool operator==(const Reset&, const Reset&) = default;
};
struct ShortcutStatusChanged {
    ShortcutStatus status;
    friend bool operator==(const ShortcutStatusChanged&, const ShortcutStatusChanged&) = default;
};
} // namespace engine_event

using EngineEvent =
    std::variant<engine_event::StateChanged, engine_event::Switched, engine_event::SwitchFailed,
                 engine_event::SwitchSuppressed, engine_event::RuleSkipped, engine_event::GuestKeySent,
                 engine_event::Reset, engine_event::ShortcutStatusChanged>;

} // namespace hopsel
