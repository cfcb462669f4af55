#include "core/rules/rule_validator.h"

#include "core/base/overloaded.h"
#include "core/keys/shortcut_policy.h"

#include <algorithm>
#include <optional>

namespace hopsel::rule_validator {
namespace {

std::optional<RuleIssue> triggerIssue(const Trigger& trigger) {
    using Issue = std::optional<RuleIssue>;
    return std::visit(Overloaded{[](const trigger::ModifierTap& tap) -> Issue {
                                     if (!disallowedKeys.contains(tap.key)) return std::nullopt;
                                     return rule_issue::DisallowedTrigger{tap.key};
                                 },
                                 [](const trigger::Shortcut& shortcut) -> Issue {
                                     if (shortcut_policy::isAllowed(shortcut.key)) return std::nullopt;
                                     return rule_issue::DisallowedShortcut{shortcut.key};
                                 }},
                      trigger);
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
