#include "core/rules/rule_validator.h"

#include "core/keys/shortcut_policy.h"

#include <algorithm>
#include <optional>

namespace hopsel::rule_validator {
namespace {

std::optional<RuleIssue> triggerIssue(const Trigger& trigger) {
    if (const auto* shortcut = std::get_if<trigger::Shortcut>(&trigger)) {
        if (!shortcut_policy::isAllowed(shortcut->key)) return rule_issue::DisallowedShortcut{shortcut->key};
        return std::nullopt;
    }
    const ModifierKey key = std::get<trigger::ModifierTap>(trigger).key;
    if (disallowedKeys.contains(key)) return rule_issue::DisallowedTrigger{key};
    return std::nullopt;
}

std::optional<RuleIssue> sourceIssue(const Action& action) {
    const auto& toggle = std::get<action::Toggle>(action);
    if (toggle.sourceA.sourceId.empty() || toggle.sourceB.sourceId.empty())
        return rule_issue::EmptySourceId{};
    if (toggle.sourceA.sourceId == toggle.sourceB.sourceId) return rule_issue::SameSource{};
    return std::nullopt;
}

} // namespace

std::vector<RuleIssue> issues(const Rule& rule, const std::vector<Rule>& rules) {
    std::vector<RuleIssue> found;
    if (auto issue = triggerIssue(rule.trigger)) found.push_back(std::move(*issue));
    const auto duplicate = std::find_if(rules.begin(), rules.end(), [&](const Rule& other) {
        return other.id != rule.id && other.trigger == rule.trigger;
    });
    if (duplicate != rules.end()) found.emplace_back(rule_issue::DuplicateTrigger{duplicate->id});
    if (auto issue = sourceIssue(rule.action)) found.push_back(std::move(*issue));
    return found;
}

} // namespace hopsel::rule_validator
