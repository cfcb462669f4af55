// GNOME's real settings in a folder of the test's own, and somebody who has the name of its shell.
#include "platform/linux/desktops/gnome_sources.h"

#include "session/ibus_session.h"
#include "support/bus_links.h"
#include "support/framework_watch.h"
#include "support/played_object.h"

namespace hopsel::test {
namespace {

class GnomeSourcesTest : public testing::Test {
  protected:
    GnomeSourcesTest() { shell.disappear(); }
    static void set(const std::string& key, const std::string& value) {
        session::IbusSession::set(GnomeSettings::path + key, value);
    }

    session::IbusSession session; // for its settings
    PlayedObject shell{session.busAddress(), "org.gnome.Shell", "/"};
    GnomeSources sources{linkTo(session.busAddress())};
    FrameworkWatch watch{sources};
};

TEST_F(GnomeSourcesTest, AreListedButNotSwitched) {
    set("sources", "[('xkb', 'us'), ('xkb', 'kr+kr104'), ('ibus', 'hangul'), ('xkb', 'us'), ('odd', 'x')]");
    EXPECT_FALSE(sources.isInCharge());
    shell.appear();
    ASSERT_TRUE(watch.comesInCharge());
    const std::vector<InputSourceInfo> expected{
        {"xkb:us", "English (US)", "xkb", {"en"}, false},
        {"xkb:kr+kr104", "Korean (101/104-key compatible)", "xkb", {"ko"}, false},
        {"ibus:hangul", "hangul", "ibus", {}, false}};
    EXPECT_EQ(sources.enabledKeyboardSources(), expected);
    EXPECT_EQ(sources.select("ibus:hangul"),
              SelectResult(select_result::Failed{platform_error::desktopCannotSwitch}));
    EXPECT_EQ(sources.select("odd:x"), notFound);
    GnomeSources beforehand(linkTo(session.busAddress()), GnomeSources::Rules::beforehand);
    ASSERT_TRUE(runLoopUntil([&] { return beforehand.enabledKeyboardSources().size() == 3; }));
    EXPECT_TRUE(beforehand.enabledKeyboardSources().back().isSelectCapable);
    EXPECT_EQ(beforehand.select("ibus:hangul"), sources.select("ibus:hangul"));
    shell.disappear();
    EXPECT_TRUE(watch.comesInCharge(false));
    EXPECT_EQ(watch.sources + watch.selected, 0);
}

TEST_F(GnomeSourcesTest, FollowTheSettingsAsTheShellWritesThem) {
    shell.appear();
    ASSERT_TRUE(watch.comesInCharge());
    EXPECT_EQ(sources.currentID(), std::nullopt);
    set("sources", "[('xkb', 'us'), ('ibus', 'hangul')]");
    EXPECT_TRUE(watch.becomesCurrent("xkb:us"));
    set("mru-sources", "[('xkb', 'ru'), ('ibus', 'hangul'), ('xkb', 'us')]");
    EXPECT_TRUE(watch.becomesCurrent("ibus:hangul"));
    set("xkb-options", "['caps:none']");
    set("mru-sources", "[('ibus', 'hangul')]");
    set("per-window", "true");
    EXPECT_TRUE(watch.becomesCurrent(std::nullopt));
    EXPECT_EQ(watch.sources, 1);
    EXPECT_EQ(watch.selected, 3);

    // Stored by hand, or by a program that has another idea of them.
    set("per-window", "'yes'");
    set("mru-sources", "7");
    std::string many = "[('xkb', '\\u0007')";
    for (int i = 0; i < 1000; ++i) many += ", ('ibus', 'e" + std::to_string(i) + "')";
    set("sources", many + "]");
    EXPECT_TRUE(watch.becomesCurrent("ibus:e0"));
    EXPECT_EQ(watch.ids().size(), 63U);
    set("sources", "['xkb']");
    EXPECT_TRUE(watch.lists({}));
}

} // namespace
} // namespace hopsel::test
