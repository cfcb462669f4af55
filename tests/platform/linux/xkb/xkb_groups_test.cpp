#include "platform/linux/xkb/xkb_groups.h"

#include <gtest/gtest.h>
#include <random>
#include <set>

namespace hopsel {
namespace {

using namespace std::string_literals;

std::string property(const std::string& layouts, const std::string& variants = {}) {
    return "evdev\0pc105\0"s + layouts + '\0' + variants + "\0grp:toggle\0"s;
}

std::vector<XkbGroup> list(const std::string& property, int groups, const std::vector<std::string>& names) {
    return xkb_groups::list(xkb_groups::parseRulesNames(property), groups, names);
}

TEST(XkbGroups, HaveIdentifiersFromThePropertyAndElseFromTheKeymap) {
    const struct {
        std::string property;
        int groupCount;
        std::string expected; ///< in brackets what cannot be locked
        std::vector<std::string> groupNames;
    } cases[] = {
        {property("us,kr,de", ",kr104"), 3, "xkb:us xkb:kr+kr104 xkb:de", {}},
        {property("us(intl),ru(x)", ",y"), 2, "xkb:us+intl xkb:ru(x)+y", {}},
        {property("us,kr,,"), 1, "xkb:us (xkb:kr)", {}},
        {property("us,,ru"), 3, "xkb:us xkb:Georgian xkb:ru", {"English", "Georgian", "Russian"}},
        {"", 3, "xkb:English xkb:group2 xkb:English#2", {"English", "", "English"}},
        {property("u\xFF\x01s,\xED\x9E\x98", "a b"), 2, "xkb:u??s+a?b xkb:???", {}},
        {property(std::string(100'000, 'x')), 1, "xkb:" + std::string(64, 'x'), {}},
    };
    for (const auto& [property, groupCount, expected, groupNames] : cases) {
        std::string ids;
        for (const XkbGroup& group : list(property, groupCount, groupNames))
            ids += (ids.empty() ? "" : " ") + (group.isLockable ? group.id : "(" + group.id + ")");
        EXPECT_EQ(ids, expected);
    }
}

TEST(XkbGroups, AnyBytesGiveAShortListOfShortUniquePlainIdentifiers) {
    std::string endless = "us";
    for (int i = 0; i < 30'000; ++i) endless += ",ru";
    EXPECT_EQ(list(property(endless), 4, {}).size(), xkb_groups::maxLayouts);

    std::mt19937 random(20240229); // NOLINT: the same bytes in every run
    const std::string alphabet = "\0\0,,us(#)+\xC3\xFF "s;
    for (int round = 0; round < 20'000; ++round) {
        std::string bytes(random() % 40, '\0');
        for (char& byte : bytes) byte = alphabet[random() % alphabet.size()];
        std::set<std::string> seen;
        for (const XkbGroup& group : list(bytes, 2, {})) {
            ASSERT_TRUE(seen.insert(group.id).second) << testing::PrintToString(bytes);
            ASSERT_LT(group.id.size(), 150U);
            for (const char c : group.id) ASSERT_TRUE(c > ' ' && c <= '~') << group.id;
        }
    }
}

} // namespace
} // namespace hopsel
