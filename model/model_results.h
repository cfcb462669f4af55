// What can come of loading the settings file and of editing a rule. Plain values.
#pragma once

#include "core/rules/rule_store.h"

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace hopsel {

/// Why the settings file could not be used; while there is one, rules cannot be edited.
namespace store_problem {
struct Corrupt {
    std::optional<std::string> backupPath; ///< where a copy lies
    friend bool operator==(const Corrupt&, const Corrupt&) = default;
};
struct NewerVersion {
    std::int64_t version;
    friend bool operator==(const NewerVersion&, const NewerVersion&) = default;
};
struct Unreadable {
    std::string description;
    friend bool operator==(const Unreadable&, const Unreadable&) = default;
};
} // namespace store_problem

using StoreProblem =
    std::variant<store_problem::Corrupt, store_problem::NewerVersion, store_problem::Unreadable>;

namespace edit_result {
struct Invalid {
    std::vector<RuleIssue> issues;
    friend bool operator==(const Invalid&, const Invalid&) = default;
};
struct Failed {
    std::string message; ///< shown as it is
    friend bool operator==(const Failed&, const Failed&) = default;
};
/// Stored, for a change as well.
struct Added {
    friend bool operator==(const Added&, const Added&) = default;
};
} // namespace edit_result

using EditResult = std::variant<edit_result::Invalid, edit_result::Failed, edit_result::Added>;

namespace import_result {
/// How many rules are new, and which were left out as their keys are in use.
struct Taken {
    std::size_t added;
    std::size_t known; ///< were here already
    std::vector<Trigger> keysUsed;
    friend bool operator==(const Taken&, const Taken&) = default;
};
/// No settings document, or a rule in it cannot be.
struct NotRules {
    friend bool operator==(const NotRules&, const NotRules&) = default;
};
struct NewerVersion {
    friend bool operator==(const NewerVersion&, const NewerVersion&) = default;
};
} // namespace import_result

/// Nothing is changed unless rules are taken.
using ImportResult = std::variant<import_result::Taken, import_result::NotRules, import_result::NewerVersion,
                                  edit_result::Failed>;

/// A rule's trigger was pressed, and something came of it.
struct Firing {
    std::string ruleID;
    bool worked = false; ///< switched, or sent the guest key
    int number = 0;      ///< of all since launch
    friend bool operator==(const Firing&, const Firing&) = default;
};

/// To have a source begin in its own script; once that is done, to have it begin as before.
struct StartOffer {
    std::string sourceID;
    std::string sourceName;
    bool isDone = false;
    friend bool operator==(const StartOffer&, const StartOffer&) = default;
};

enum class RuleWarning {
    needsAccessibility,
    systemShortcutConflict,
    tapUnheard, ///< only combinations arrive
};

/// The error's kind and what it carries: "writeFailed(No space left on device)". Other errors in their own
/// words.
std::string textualDescription(const std::exception& error);

} // namespace hopsel
