// May this rule be stored beside the others? Pure.
#pragma once

#include "core/rules/rule.h"

#include <variant>
#include <vector>

namespace hopsel {

namespace rule_issue {
/// Another rule, enabled or not, has the same trigger.
struct DuplicateTrigger {
    std::string existingRuleId;
    friend bool operator==(const DuplicateTrigger&, const DuplicateTrigger&) = default;
};
/// This modifier may not be tapped as a trigger.
struct DisallowedTrigger {
    ModifierKey key;
    friend bool operator==(const DisallowedTrigger&, const DisallowedTrigger&) = default;
};
/// The shortcut policy refuses the combination.
struct DisallowedShortcut {
    ShortcutKey key;
    friend bool operator==(const DisallowedShortcut&, const DisallowedShortcut&) = default;
};
struct SameSource {
    friend bool operator==(const SameSource&, const SameSource&) = default;
};
struct EmptySourceId {
    friend bool operator==(const EmptySourceId&, const EmptySourceId&) = default;
};
} // namespace rule_issue

using RuleIssue =
    std::variant<rule_issue::DuplicateTrigger, rule_issue::DisallowedTrigger, rule_issue::DisallowedShortcut,
                 rule_issue::SameSource, rule_issue::EmptySourceId>;

namespace rule_validator {

/// Shift is used while typing text; a lone tap of it happens by accident all day.
inline constexpr ModifierSet disallowedKeys{ModifierKey::leftShift, ModifierKey::rightShift};

/// Empty means valid. At most one issue each of trigger, duplicate and sources, in that order. `rules` may
/// hold an older version of `rule` itself.
std::vector<RuleIssue> issues(const Rule& rule, const std::vector<Rule>& rules);

} // namespace rule_validator
} // namespace hopsel
