#include "core/platform/linux/xkb/xkb_groups.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>

namespace hopsel {
namespace {

using namespace std::string_literals;

std::vector<std::string> ids(const std::vector<XkbGroup>& groups) {
    std::vector<std::string> result;
    result.reserve(groups.size());
    for (const XkbGroup& group : groups)
        result.push_back(group.id + (group.isLockable ? "" : " (listed only)"));
    return result;
}

std::string property(const std::string& layouts, const std::string& variants) {
    return "evdev\0pc105\0"s + layouts + '\0' + variants + "\0grp:toggle\0"s;
}

struct Case {
    const char* name;
    std::string property;
    int groupCount;
    std::vector<std::string> groupNames;
    std::vector<std::string> expected;
};

class XkbGroupLists : public testing::TestWithParam<Case> {};

TEST_P(XkbGroupLists, AreListed) {
    const auto& [name, property, groupCount, groupNames, expected] = GetParam();
    EXPECT_EQ(ids(xkb_groups::list(xkb_groups::parseRulesNames(property), groupCount, groupNames)), expected);
}

using Strings = std::vector<std::string>;

INSTANTIATE_TEST_SUITE_P(
    , XkbGroupLists,
    testing::Values(
        Case{"layouts_and_variants", property("us,kr", ",kr104"), 2, {}, {"xkb:us", "xkb:kr+kr104"}},
        Case{"variants_may_be_fewer",
             property("us,ru,de", "intl"),
             3,
             {},
             {"xkb:us+intl", "xkb:ru", "xkb:de"}},
        Case{"a_variant_in_brackets_is_the_same",
             property("us(intl),ru", ""),
             2,
             {},
             {"xkb:us+intl", "xkb:ru"}},
        Case{"brackets_with_a_variant_beside_stay", property("us(intl)", "mac"), 1, {}, {"xkb:us(intl)+mac"}},
        Case{"duplicates_are_numbered", property("us,us,us", ""), 3, {}, {"xkb:us", "xkb:us#2", "xkb:us#3"}},
        Case{"a_name_that_looks_numbered_stays_unique",
             property("us#2,us,us", ""),
             3,
             {},
             {"xkb:us#2", "xkb:us", "xkb:us#3"}},
        Case{"more_than_the_server_has_groups",
             property("us,kr", ""),
             1,
             {},
             {"xkb:us", "xkb:kr (listed only)"}},
        Case{"an_empty_layout_takes_the_name_in_the_keymap",
             property("us,,ru", ""),
             3,
             {"English (US)", "Georgian", "Russian"},
             {"xkb:us", "xkb:Georgian", "xkb:ru"}},
        Case{"an_empty_layout_without_group_is_left_out", property("us,,", ""), 1, {}, {"xkb:us"}},
        Case{"without_property_by_the_names_in_the_keymap",
             "",
             3,
             {"English (US)", "", "English (US)"},
             {"xkb:English (US)", "xkb:group2", "xkb:English (US)#2"}},
        Case{"without_anything_by_number", "", 2, {}, {"xkb:group1", "xkb:group2"}},
        Case{"no_separators", "evdev", 1, {"English (US)"}, {"xkb:English (US)"}},
        Case{"only_separators", std::string(5, '\0'), 1, {"English (US)"}, {"xkb:English (US)"}},
        Case{"cut_off_in_the_layouts", "evdev\0pc105\0us,r"s, 2, {}, {"xkb:us", "xkb:r"}},
        Case{"bytes_of_no_layout",
             property("u\xFF\x01s,\xED\x9E\x98", "a b"),
             2,
             {},
             {"xkb:u??s+a?b", "xkb:???"}},
        Case{
            "endless_name", property(std::string(100'000, 'x'), ""), 1, {}, {"xkb:" + std::string(64, 'x')}}),
    [](const testing::TestParamInfo<Case>& tested) { return tested.param.name; });

TEST(XkbGroups, EndlessListIsCut) {
    std::string layouts = "us";
    for (int i = 0; i < 30'000; ++i) layouts += ",ru";
    const auto groups = xkb_groups::list(xkb_groups::parseRulesNames(property(layouts, "")), 4, {});
    EXPECT_EQ(groups.size(), xkb_groups::maxLayouts);
}

TEST(XkbGroups, AnyBytesGiveShortUniquePlainIdentifiers) {
    std::mt19937 random(20240229); // NOLINT: the same bytes in every run
    const std::string alphabet = "\0\0,,us(#)+\xC3\xFF "s;
    for (int round = 0; round < 20'000; ++round) {
        std::string bytes(random() % 40, '\0');
        for (char& byte : bytes) byte = alphabet[random() % alphabet.size()];
        const auto groups = xkb_groups::list(xkb_groups::parseRulesNames(bytes), 2, {});
        std::vector<std::string> seen = ids(groups);
        for (const XkbGroup& group : groups) {
            ASSERT_LT(group.id.size(), 150U);
            for (const char c : group.id) ASSERT_TRUE(c > ' ' && c <= '~') << group.id;
        }
        std::sort(seen.begin(), seen.end());
        ASSERT_EQ(std::adjacent_find(seen.begin(), seen.end()), seen.end()) << testing::PrintToString(bytes);
    }
}

} // namespace
} // namespace hopsel
