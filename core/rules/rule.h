// The user's rules: what fires a rule, what it does, and the document that holds them all. Plain values.
#pragma once

#include "core/keys/shortcut_key.h"

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace hopsel {

/// An input source as a rule remembers it.
struct InputSourceRef {
    std::string sourceId;    ///< the platform's identifier (`InputSourceInfo::id`)
    std::string displayName; ///< the name when the rule was made, shown while the source is not listed
    friend bool operator==(const InputSourceRef&, const InputSourceRef&) = default;
};

namespace trigger {
struct ModifierTap {
    ModifierKey key;
    friend bool operator==(const ModifierTap&, const ModifierTap&) = default;
};
struct Shortcut {
    ShortcutKey key;
    friend bool operator==(const Shortcut&, const Shortcut&) = default;
};
} // namespace trigger

using Trigger = std::variant<trigger::ModifierTap, trigger::Shortcut>;

/// The key that is tapped; absent for other kinds of trigger.
std::optional<ModifierKey> tappedKey(const Trigger& trigger);
/// The combination that has to be swallowed; absent for triggers that only listen.
std::optional<ShortcutKey> swallowedShortcut(const Trigger& trigger);
/// The version of the document that a rule with this trigger needs at least.
std::int64_t schemaVersion(const Trigger& trigger);

namespace action {
/// Each firing goes to the other one of the two sources.
struct Toggle {
    InputSourceRef sourceA;
    InputSourceRef sourceB;
    friend bool operator==(const Toggle&, const Toggle&) = default;
};
} // namespace action

using Action = std::variant<action::Toggle>;

struct Rule {
    std::string id; ///< opaque; unique within a document
    bool enabled = true;
    Trigger trigger;
    Action action;

    /// With a fresh random identifier: 36 characters, upper-case hexadecimal, UUID version 4.
    static Rule make(Trigger trigger, Action action, bool enabled = true);

    friend bool operator==(const Rule&, const Rule&) = default;
};

struct Config {
    /// The highest version this build understands; that of any document with a shortcut trigger.
    static constexpr std::int64_t currentSchemaVersion = 2;
    /// The version of a document whose triggers are all modifier taps.
    static constexpr std::int64_t baseSchemaVersion = 1;

    std::int64_t schemaVersion = baseSchemaVersion;
    std::vector<Rule> rules; ///< in the user's order

    static Config empty() { return {}; }

    friend bool operator==(const Config&, const Config&) = default;
};

} // namespace hopsel

template <>
struct std::hash<hopsel::InputSourceRef> {
    std::size_t operator()(const hopsel::InputSourceRef& ref) const noexcept;
};
template <>
struct std::hash<hopsel::Trigger> {
    std::size_t operator()(const hopsel::Trigger& trigger) const noexcept;
};
