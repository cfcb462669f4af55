// Hyprland's layouts, with Hyprland played: it is not in Debian.
#include "platform/linux/desktops/hyprland_layouts.h"

#include "platform/linux/desktops/played_hyprland.h"
#include "support/framework_watch.h"

namespace hopsel::test {
namespace {

QByteArray keyboard(const char* name, const char* layouts, const char* variants, const char* active,
                    bool isMain = false) {
    return QByteArray(R"({"address":"0x1","name":")") + name + R"(","rules":"","model":"","layout":")" +
           layouts + R"(","variant":")" + variants + R"(","options":"","active_keymap":")" + active +
           R"(","main":)" + (isMain ? "true" : "false") + "}";
}

class HyprlandTest : public testing::Test {
  protected:
    HyprlandTest() { becomes("us,ru,us", ",,dvorak", "English (US)"); }
    /// What it answers from now on.
    void becomes(const char* configured, const char* variants, const char* active) {
        hyprland.answers["j/devices"] = R"({"mice":[],"keyboards":[)" +
                                        keyboard("power-button", "us", "", "English (US)") + "," +
                                        keyboard("second", "ru,us", "", "Russian") + "," +
                                        keyboard("main-keyboard", configured, variants, active, true) + "]}";
    }
    bool lists(const Strings& ids) {
        return retryUntil(*layouts, [&] { return watch.ids() == ids; });
    }

    PlayedHyprland hyprland;
    std::shared_ptr<HyprlandLayouts> layouts = std::make_shared<HyprlandLayouts>();
    FrameworkWatch watch{*layouts};
};

TEST_F(HyprlandTest, LayoutsAreThoseOfTheMainKeyboardAndFollowIt) {
    ASSERT_TRUE(lists({"hyprland:us", "hyprland:ru", "hyprland:us(dvorak)"}));
    const InputSourceInfo dvorak{"hyprland:us(dvorak)", "English (Dvorak)", "HyprlandLayout", {"en"}, true};
    EXPECT_EQ(layouts->enabledKeyboardSources()[2], dvorak);
    EXPECT_EQ(layouts->currentID(), "hyprland:us");
    hyprland.tell(
        "activelayout>>second,English (US)\nworkspace>>2\nactivelayout>>main-keyboard,English (Dvorak)\n");
    becomes("us,ru,us", ",,dvorak", "English (Dvorak)");
    EXPECT_TRUE(watch.becomesCurrent("hyprland:us(dvorak)"));
    becomes("de,us", "", "German");
    hyprland.tell("configreloaded>>\n");
    EXPECT_TRUE(watch.lists({"hyprland:de", "hyprland:us"}));
    EXPECT_TRUE(watch.becomesCurrent("hyprland:de"));
}

TEST_F(HyprlandTest, SwitchTakesAllKeyboardsAlongAndIsVerified) {
    ASSERT_TRUE(lists({"hyprland:us", "hyprland:ru", "hyprland:us(dvorak)"}));
    EXPECT_EQ(layouts->select("hyprland:kr"), notFound);
    EXPECT_EQ(layouts->select("hyprland:ru"), accepted);
    EXPECT_TRUE(runLoopUntil([&] { return hyprland.commands.size() == 2; }));
    EXPECT_THAT(hyprland.commands,
                testing::UnorderedElementsAre("switchxkblayout main-keyboard 1", "switchxkblayout second 0"));
    hyprland.tell("activelayout>>main-keyboard,Russian\n");
    becomes("us,ru,us", ",,dvorak", "Russian");
    EXPECT_TRUE(watch.becomesCurrent("hyprland:ru"));
    EXPECT_EQ(layouts->refusal(), std::nullopt);
    // Without an event it is read back; if it has not come about, that is said.
    EXPECT_EQ(layouts->select("hyprland:us"), accepted);
    EXPECT_TRUE(watch.isRefused(refused)) << "it still tells of Russian";
    hyprland.answers["switchxkblayout main-keyboard 0"] = "device not found";
    EXPECT_EQ(layouts->select("hyprland:us"), accepted);
    EXPECT_TRUE(watch.isRefused(refused));
}

TEST_F(HyprlandTest, AnEndIsNoticedAndTheNextOneIsFound) {
    ASSERT_TRUE(lists({"hyprland:us", "hyprland:ru", "hyprland:us(dvorak)"}));
    hyprland.hangUp();
    EXPECT_TRUE(watch.comesInCharge(false));
    ASSERT_TRUE(lists({"hyprland:us", "hyprland:ru", "hyprland:us(dvorak)"}));
    for (const QByteArray& wrong :
         {QByteArray("unknown request"), QByteArray("[]"), QByteArray(2 << 20, '{')}) {
        hyprland.answers["j/devices"] = wrong;
        hyprland.tell("configreloaded>>\n");
        EXPECT_TRUE(watch.comesInCharge(false)) << wrong.left(20).toStdString();
        becomes("us,ru,us", ",,dvorak", "English (US)");
        ASSERT_TRUE(lists({"hyprland:us", "hyprland:ru", "hyprland:us(dvorak)"}));
    }
    hyprland.tell(QByteArray(100 << 10, 'x')); // a line without end
    EXPECT_TRUE(watch.comesInCharge(false));
    EXPECT_EQ(layouts->select("hyprland:us"), gone);
}

TEST(HyprlandKeyboards, SayNothingThatCouldBeAnotherCommand) {
    const auto parsed = hyprland_keyboards::parse(
        R"({"keyboards":[{"name":"a; exec x","layout":"us,ru"},{"name":"b c","layout":"us,ru"},
            {"name":"c","layout":7},3,{"name":"plain","layout":" us , ,ru","active_layout_index":2},
            {"name":"far","layout":"us,ru","active_layout_index":99,"active_keymap":"Klingon"}]})");
    ASSERT_TRUE(parsed);
    ASSERT_EQ(parsed->size(), 2U);
    EXPECT_EQ((*parsed)[0].ids, (std::vector<std::string>{"hyprland:us", "", "hyprland:ru"}));
    EXPECT_EQ((*parsed)[0].active, 2U);
    EXPECT_EQ((*parsed)[1].active, std::nullopt);
    EXPECT_FALSE(hyprland_keyboards::parse("{}") || hyprland_keyboards::parse(""));
}

} // namespace
} // namespace hopsel::test
