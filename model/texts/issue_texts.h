// What is wrong with a rule, in words: for every place where a rule is put together. Pure.
#pragma once

#include "core/rules/rule_validator.h"

#include <string>

namespace hopsel::l10n {

std::string issueText(const RuleIssue& issue);

} // namespace hopsel::l10n
