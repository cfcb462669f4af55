// Can a stored rule run on this machine now? Pure.
#pragma once

#include "core/rules/rule.h"

#include <set>
#include <string>
#include <variant>
#include <vector>

namespace hopsel {

namespace rule_health {
struct Ok {
    friend bool operator==(const Ok&, const Ok&) = default;
};
/// The identifiers that are not available: source A first, not deduplicated.
struct BrokenSource {
    std::vector<std::string> missing;
    friend bool operator==(const BrokenSource&, const BrokenSource&) = default;
};
} // namespace rule_health

using RuleHealth = std::variant<rule_health::Ok, rule_health::BrokenSource>;

namespace rule_health_checker {

/// Source A's identifier and then source B's, each if it is not available.
std::vector<std::string> missingSources(const Rule& rule, const std::set<std::string>& availableSourceIDs);

RuleHealth health(const Rule& rule, const std::set<std::string>& availableSourceIDs);

} // namespace rule_health_checker
} // namespace hopsel
