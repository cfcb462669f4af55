// Decides, event by event, whether a trigger modifier was tapped on its own: down and up within the limit and
// nothing else in between.
//
// Owned by the engine (one for the rules, one for trigger capture). Never re-targeted: when the
// set of triggers changes the engine builds a new machine. There is no timer; a long hold is noticed at its
// release.
#pragma once

#include "core/keys/key_event.h"

#include <array>
#include <optional>
#include <variant>

namespace hopsel {

/// What the engine did with a key event, as diagnostics show it.
enum class KeyVerdict : std::uint8_t {
    passed,           ///< nothing to do
    switchRequested,  ///< a tap completed and its rule was queued
    suppressed,       ///< a tap completed under secure text entry
    captured,         ///< went to trigger capture
    shortcutFired,    ///< key-down that matched a shortcut and was swallowed
    shortcutConsumed, ///< repeat or key-up of a swallowed shortcut
};

namespace decision {
struct SwitchTriggered {
    ModifierKey key;
    friend bool operator==(const SwitchTriggered&, const SwitchTriggered&) = default;
};
struct SwitchSuppressed {
    ModifierKey key;
    friend bool operator==(const SwitchSuppressed&, const SwitchSuppressed&) = default;
};
struct PassThrough {
    friend bool operator==(const PassThrough&, const PassThrough&) = default;
};
} // namespace decision

using Decision = std::variant<decision::PassThrough, decision::SwitchTriggered, decision::SwitchSuppressed>;

class KeyStateMachine {
  public:
    /// `tapMax`: the longest press, in seconds, that still counts as a tap (inclusive).
    KeyStateMachine(ModifierSet triggers, double tapMax) : triggers_(triggers), tapMax_(tapMax) {}

    /// Must be called for every normalized event in order. A tap that completes while `suppressSwitch` is set
    /// is reported as suppressed.
    Decision handle(const KeyEvent& event, bool suppressSwitch);

    /// Forgets every tracked key without a decision.
    void reset() { states_.fill(std::nullopt); }

  private:
    struct Pending {
        double start; ///< the key went down alone at this time
    };
    struct Combination {}; ///< down, but used with something else
    using State = std::variant<Pending, Combination>;

    std::optional<State>& state(ModifierKey key) { return states_[static_cast<std::size_t>(key)]; }
    void reconcile(const KeyEvent& event);
    void demotePending(std::optional<ModifierKey> except);
    void press(ModifierKey key, const KeyEvent& event);
    Decision release(ModifierKey key, const KeyEvent& event, bool suppressSwitch);

    ModifierSet triggers_;
    double tapMax_;
    std::array<std::optional<State>, allModifierKeys.size()> states_{};
};

} // namespace hopsel
