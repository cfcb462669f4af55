#include "core/rules/rule_exchange.h"

#include <algorithm>

namespace hopsel::rule_exchange {

namespace {

bool doesTheSame(const Rule& rule, const Rule& other) {
    const auto& a = std::get<action::Toggle>(rule.action);
    const auto& b = std::get<action::Toggle>(other.action);
    return a.sourceA.sourceId == b.sourceA.sourceId && a.sourceB.sourceId == b.sourceB.sourceId;
}

} // namespace

std::optional<Plan> plan(const std::vector<Rule>& offered, const std::vector<Rule>& here) {
    Plan plan;
    std::vector<Rule> all = here;
    for (const Rule& rule : offered) {
        if (!rule_validator::issues(rule, {}).empty()) return std::nullopt;
        const auto sameKey = std::find_if(all.begin(), all.end(),
                                          [&](const Rule& other) { return other.trigger == rule.trigger; });
        if (sameKey != all.end()) {
            (doesTheSame(rule, *sameKey) ? plan.known : plan.keyUsed).push_back(rule);
            continue;
        }
        const bool isTaken =
            std::any_of(all.begin(), all.end(), [&](const Rule& other) { return other.id == rule.id; });
        plan.added.push_back(isTaken ? Rule::make(rule.trigger, rule.action, rule.enabled) : rule);
        all.push_back(plan.added.back());
    }
    return plan;
}

} // namespace hopsel::rule_exchange
