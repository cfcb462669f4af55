// What becomes of the rules of another document when they are to be taken in beside those that are there.
// Pure.
#pragma once

#include "core/rules/rule_validator.h"

#include <optional>
#include <vector>

namespace hopsel::rule_exchange {

struct Plan {
    std::vector<Rule> added;   ///< with identifiers of their own where theirs are taken
    std::vector<Rule> known;   ///< the same key for the same sources is here already
    std::vector<Rule> keyUsed; ///< the key does something else here, which stays
};

/// Nothing that is here is changed. Absent if any of the document's rules could not be stored by itself: then
/// it is no document of ours, whatever the rest says.
std::optional<Plan> plan(const std::vector<Rule>& offered, const std::vector<Rule>& here);

} // namespace hopsel::rule_exchange
