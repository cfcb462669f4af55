#include "core/rules/rule_health.h"

namespace hopsel::rule_health_checker {

std::vector<std::string> missingSources(const Rule& rule, const std::set<std::string>& availableSourceIDs) {
    const auto& toggle = std::get<action::Toggle>(rule.action);
    std::vector<std::string> missing;
    for (const InputSourceRef* source : {&toggle.sourceA, &toggle.sourceB}) {
        if (!availableSourceIDs.contains(source->sourceId)) missing.push_back(source->sourceId);
    }
    return missing;
}

RuleHealth health(const Rule& rule, const std::set<std::string>& availableSourceIDs) {
    auto missing = missingSources(rule, availableSourceIDs);
    if (missing.empty()) return rule_health::Ok{};
    return rule_health::BrokenSource{std::move(missing)};
}

} // namespace hopsel::rule_health_checker
