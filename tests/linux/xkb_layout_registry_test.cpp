#include "core/platform/linux/xkb/xkb_layout_registry.h"

#include <clocale>
#include <cstdlib>
#include <gmock/gmock.h>

namespace hopsel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(XkbLayoutRegistry, KnowsNamesAndLanguagesOfLayoutsAndVariants) {
    XkbLayoutRegistry registry;
    const auto found = registry.describe({{"kr", "kr104"}, {"us", ""}, {"us", "altgr-intl"}, {"us", "chr"}});
    ASSERT_EQ(found.size(), 4U);
    EXPECT_EQ(found[0].name, "Korean (101/104-key compatible)");
    EXPECT_THAT(found[0].languages, ElementsAre("ko"));
    EXPECT_EQ(found[1].name, "English (US)");
    EXPECT_THAT(found[2].languages, ElementsAre("en", "fr", "de"));
    EXPECT_THAT(found[3].languages, ElementsAre("chr"))
        << "a language without a two-letter code keeps its own";
}

TEST(XkbLayoutRegistry, KnowsLayoutsOfTheExtraRules) {
    XkbLayoutRegistry registry;
    EXPECT_EQ(registry.describe({{"us", "drix"}}).front().name, "English (Drix)");
}

TEST(XkbLayoutRegistry, HasNothingForWhatIsNotInstalled) {
    XkbLayoutRegistry registry;
    const auto found = registry.describe({{"", ""}, {"nowhere", ""}, {"us", "nothing"}, {"us", ""}});
    EXPECT_THAT(found[0].name, IsEmpty());
    EXPECT_THAT(found[1].name, IsEmpty());
    EXPECT_THAT(found[2].name, IsEmpty());
    EXPECT_EQ(found[3].name, "English (US)");
}

} // namespace
} // namespace hopsel
