#include "model/texts/issue_texts.h"

#include "core/base/overloaded.h"
#include "model/texts/l10n.h"

namespace hopsel::l10n {

std::string issueText(const RuleIssue& issue) {
    return t(
        std::visit(Overloaded{
                       [](const rule_issue::DuplicateTrigger&) { return Key::issueDuplicate; },
                       [](const rule_issue::DisallowedTrigger&) { return Key::issueDisallowedTrigger; },
                       [](const rule_issue::DisallowedShortcut&) { return Key::issueDisallowedShortcut; },
                       [](const rule_issue::SameSource&) { return Key::issueSameSource; },
                       [](const rule_issue::EmptySourceId&) { return Key::issueEmptySource; },
                   },
                   issue));
}

} // namespace hopsel::l10n
