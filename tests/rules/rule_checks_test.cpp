// What is asked about a single rule: may it be stored, can it run, does the system use its keys too?
#include "core/rules/rule_health.h"
#include "core/rules/rule_validator.h"
#include "core/rules/system_shortcut_conflict.h"
#include "rules/rule_samples.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <set>

namespace hopsel {
namespace {

using samples::shortcutRule;
using samples::tapRule;
using samples::toggle;
using testing::ElementsAre;
using Json = nlohmann::json;

constexpr ModifierKey leftShift = ModifierKey::leftShift;
constexpr ShortcutKey controlSpace{49, {ModifierKey::rightControl}};

TEST(Rule, fresh_identifiers_are_distinct_random_uuids) {
    std::set<std::string> seen;
    for (int i = 0; i < 100; ++i) seen.insert(Rule::make(tapRule("").trigger, toggle()).id);
    EXPECT_EQ(seen.size(), 100U);
    EXPECT_THAT(seen, testing::Each(testing::MatchesRegex(
                          "[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}")));
}

TEST(RuleValidator, reports_trigger_then_duplicate_then_sources) {
    Rule existing = tapRule("old", leftShift);
    existing.enabled = false; // reserves its trigger all the same
    EXPECT_THAT(rule_validator::issues(tapRule("new", leftShift, toggle("same", "same")),
                                       {existing, tapRule("older", leftShift)}),
                ElementsAre(RuleIssue(rule_issue::DisallowedTrigger{leftShift}),
                            RuleIssue(rule_issue::DuplicateTrigger{"old"}),
                            RuleIssue(rule_issue::SameSource{})));
    const Rule letter{"new", true, trigger::Shortcut{{0, {leftShift}}}, toggle("", "")};
    EXPECT_THAT(rule_validator::issues(letter, {existing}),
                ElementsAre(RuleIssue(rule_issue::DisallowedShortcut{{0, {leftShift}}}),
                            RuleIssue(rule_issue::EmptySourceId{})));
}

TEST(RuleValidator, sides_kinds_and_the_rule_itself_are_no_duplicates) {
    const std::vector<Rule> rules{tapRule("tap"), shortcutRule("keys")};
    for (const Rule& fine : {tapRule("tap"), tapRule("new", ModifierKey::leftCommand),
                             shortcutRule("new", {49, {ModifierKey::rightShift}}),
                             tapRule("new", ModifierKey::leftOption, toggle("a", " "))}) // not trimmed
        EXPECT_THAT(rule_validator::issues(fine, rules), testing::IsEmpty());
    EXPECT_THAT(rule_validator::issues(shortcutRule("new"), rules),
                ElementsAre(RuleIssue(rule_issue::DuplicateTrigger{"keys"})));
}

TEST(RuleHealth, lists_the_missing_sources_in_order_and_twice_if_need_be) {
    using rule_health_checker::health;
    const Rule rule = tapRule("tap", leftShift, toggle("b", "a"));
    const Rule twice = tapRule("tap", leftShift, toggle("a", "a"));
    EXPECT_EQ(health(rule, {"a", "b", "c"}), RuleHealth(rule_health::Ok{}));
    EXPECT_EQ(health(rule, {}), RuleHealth(rule_health::BrokenSource{{"b", "a"}}));
    EXPECT_EQ(health(twice, {"A"}), RuleHealth(rule_health::BrokenSource{{"a", "a"}}));
}

TEST(SystemShortcutConflict, stock_settings_hold_for_absent_entries_only) {
    using system_shortcut_conflict::conflicts;
    for (const Json& nothing : {Json::object(), Json(), Json::array({1})}) {
        EXPECT_TRUE(conflicts(controlSpace, nothing));
        EXPECT_FALSE(conflicts({49, {ModifierKey::leftControl, leftShift}}, nothing));
    }
    const Json firstIsOff = {{"60", {{"enabled", 0}}}};
    EXPECT_FALSE(conflicts(controlSpace, firstIsOff));
    EXPECT_TRUE(conflicts({49, {ModifierKey::leftOption, ModifierKey::rightControl}}, firstIsOff));
}

TEST(SystemShortcutConflict, an_entry_counts_if_it_is_on_and_complete) {
    // "enabled" and "parameters": something, the key code, and 2^18 for Control beside bits of no meaning.
    const Json counts = Json::parse("[[1, [65535, 49.0, 262144.0, 0]], [true, [null, 49, 327681]]]");
    const Json doesNot = Json::parse(R"([[false, [32, 49, 262144]], ["1", [32, 49, 262144]], [true, [32, 49]],
        [true, "32,49,262144"], [true, [32, 49.5, 262144]], [true, [32, -65487, 262144]],
        [true, [32, 49, 1310720]]])");
    const auto conflicts = [](const Json& entry) {
        const Json off = {{"enabled", false}};
        const bool first = system_shortcut_conflict::conflicts(controlSpace, {{"60", entry}, {"61", off}});
        EXPECT_EQ(system_shortcut_conflict::conflicts(controlSpace, {{"60", off}, {"61", entry}}), first);
        return first;
    };
    const auto entry = [](const Json& parts) {
        return Json{{"enabled", parts[0]}, {"value", {{"parameters", parts[1]}}}};
    };
    for (const Json& parts : counts) EXPECT_TRUE(conflicts(entry(parts))) << parts;
    for (const Json& parts : doesNot) EXPECT_FALSE(conflicts(entry(parts))) << parts;
    EXPECT_FALSE(conflicts({{"enabled", true}}) || conflicts({{"enabled", true}, {"value", 3}}));
}

} // namespace
} // namespace hopsel
