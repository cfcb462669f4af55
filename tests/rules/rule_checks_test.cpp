// What is asked about a single rule: may it be stored, can it run, does the system use its keys too?
#include "core/rules/rule_health.h"
#include "core/rules/rule_validator.h"
#include "core/rules/system_shortcut_conflict.h"
#include "rules/rule_samples.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <unordered_set>

namespace hopsel {
namespace {

using samples::shortcutRule;
using samples::tapRule;
using testing::ElementsAre;
using testing::IsEmpty;
using Json = nlohmann::json;

constexpr ModifierKey leftShift = ModifierKey::leftShift;
constexpr ShortcutKey controlSpace{49, {ModifierKey::rightControl}};
constexpr ShortcutKey controlOptionSpace{49, {ModifierKey::leftOption, ModifierKey::rightControl}};

TEST(Rule, fresh_identifiers_are_distinct_random_uuids) {
    std::unordered_set<std::string> seen;
    for (int i = 0; i < 100; ++i) {
        const Rule rule = Rule::make(trigger::ModifierTap{ModifierKey::leftOption}, samples::toggle());
        EXPECT_THAT(rule.id, testing::MatchesRegex("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-"
                                                   "[0-9A-F]{12}"));
        EXPECT_TRUE(seen.insert(rule.id).second);
    }
}

TEST(Rule, equal_triggers_and_sources_have_equal_hashes) {
    const std::unordered_set<Trigger> triggers{
        trigger::ModifierTap{ModifierKey::rightCommand}, trigger::Shortcut{{49, {leftShift}}},
        trigger::Shortcut{{49, {ModifierKey::rightShift}}}, trigger::Shortcut{{49, {leftShift}}}};
    EXPECT_EQ(triggers.size(), 3U);
    const std::unordered_set<InputSourceRef> sources{{"a", "b"}, {"b", "a"}, {"a", "b"}};
    EXPECT_EQ(sources.size(), 2U);
}

TEST(RuleValidator, reports_trigger_then_duplicate_then_sources) {
    const Rule existing = tapRule("old", leftShift, false); // disabled rules reserve their trigger as well
    Rule bad = tapRule("new", leftShift);
    bad.action = samples::toggle("same", "same");
    EXPECT_THAT(rule_validator::issues(bad, {existing, tapRule("older", leftShift)}),
                ElementsAre(RuleIssue(rule_issue::DisallowedTrigger{leftShift}),
                            RuleIssue(rule_issue::DuplicateTrigger{"old"}),
                            RuleIssue(rule_issue::SameSource{})));
    bad.trigger = trigger::Shortcut{{0, {leftShift}}}; // types a letter
    bad.action = samples::toggle("", "");
    EXPECT_THAT(rule_validator::issues(bad, {existing}),
                ElementsAre(RuleIssue(rule_issue::DisallowedShortcut{{0, {leftShift}}}),
                            RuleIssue(rule_issue::EmptySourceId{})));
}

TEST(RuleValidator, sides_kinds_and_the_rule_itself_are_no_duplicates) {
    const std::vector<Rule> rules{tapRule("tap"), shortcutRule("keys"),
                                  tapRule("option", ModifierKey::leftOption)};
    EXPECT_THAT(rule_validator::issues(tapRule("tap"), rules), IsEmpty());
    EXPECT_THAT(rule_validator::issues(tapRule("new", ModifierKey::leftCommand), rules), IsEmpty());
    EXPECT_THAT(rule_validator::issues(shortcutRule("new", {49, {ModifierKey::rightShift}}), rules),
                IsEmpty());
    EXPECT_THAT(rule_validator::issues(shortcutRule("new"), rules),
                ElementsAre(RuleIssue(rule_issue::DuplicateTrigger{"keys"})));
    Rule blank = tapRule("new", ModifierKey::rightControl);
    blank.action = samples::toggle("a", " "); // not trimmed
    EXPECT_THAT(rule_validator::issues(blank, rules), IsEmpty());
}

TEST(RuleHealth, lists_the_missing_sources_in_order_and_twice_if_need_be) {
    Rule rule = tapRule("tap");
    rule.action = samples::toggle("b", "a");
    using Broken = rule_health::BrokenSource;
    using rule_health_checker::health;
    EXPECT_EQ(health(rule, {"a", "b", "c"}), RuleHealth(rule_health::Ok{}));
    EXPECT_EQ(health(rule, {"b"}), RuleHealth(Broken{{"a"}}));
    EXPECT_EQ(health(rule, {}), RuleHealth(Broken{{"b", "a"}}));
    rule.action = samples::toggle("a", "a");
    EXPECT_EQ(health(rule, {"A"}), RuleHealth(Broken{{"a", "a"}}));
}

TEST(SystemShortcutConflict, stock_settings_hold_for_absent_entries_only) {
    const auto conflicts = system_shortcut_conflict::conflicts;
    for (const Json& nothing : {Json::object(), Json(), Json::array({1})}) {
        EXPECT_TRUE(conflicts(controlSpace, nothing));
        EXPECT_TRUE(conflicts(controlOptionSpace, nothing));
        EXPECT_FALSE(conflicts({49, {}}, nothing));
        EXPECT_FALSE(conflicts({48, controlSpace.modifiers}, nothing));
        EXPECT_FALSE(conflicts({49, {ModifierKey::leftControl, leftShift}}, nothing));
    }
    Json firstIsOff = {{"60", {{"enabled", 0}}}};
    EXPECT_FALSE(conflicts(controlSpace, firstIsOff));
    EXPECT_TRUE(
        system_shortcut_conflict::conflictsWithSystem(controlOptionSpace, [&] { return firstIsOff; }));
}

TEST(SystemShortcutConflict, an_entry_counts_if_it_is_on_and_complete) {
    // Control and the bits that say nothing about the eight modifiers.
    const std::int64_t control = 0x40000 | 0x10000 | 0x1;
    const auto entry = [](const Json& enabled, const Json& parameters) {
        return Json{{"enabled", enabled}, {"value", {{"parameters", parameters}, {"type", "standard"}}}};
    };
    const std::pair<Json, bool> cases[] = {
        {entry(true, {32, 49, control}), true},
        {entry(1, {65535, 49.0, 262144.0, 0}), true},
        {entry(true, {nullptr, 49, control}), true},
        {entry(false, {32, 49, control}), false},
        {entry(0.0, {32, 49, control}), false},
        {entry("1", {32, 49, control}), false},
        {entry(true, {32, 49}), false},
        {entry(true, {32, "49", control}), false},
        {entry(true, {32, 49, nullptr}), false},
        {entry(true, {32, 49.5, control}), false},
        {entry(true, {32, 49, -1e300}), false},
        {entry(true, {32, 49 + 65536, control}), false},
        {entry(true, {32, -65487, control}), false}, // 49 in its lowest 16 bits
        {entry(true, {32, 49, 0x140000}), false},    // and Command
        {entry(true, "32,49,262144"), false},
        {Json{{"enabled", true}, {"value", 3}}, false},
        {Json{{"enabled", true}}, false},
        {Json("on"), false},
    };
    for (const auto& [value, expected] : cases) {
        const Json off = {{"enabled", false}};
        EXPECT_EQ(system_shortcut_conflict::conflicts(controlSpace, {{"60", value}, {"61", off}}), expected)
            << value;
        EXPECT_EQ(system_shortcut_conflict::conflicts(controlSpace, {{"60", off}, {"61", value}}), expected)
            << value;
    }
}

} // namespace
} // namespace hopsel
