// Against sway itself, without a screen, with keyboards that the test plugs in.
#include "platform/linux/desktops/sway_layouts.h"
#include "platform/linux/desktops/sway_rig.h"
#include "support/framework_watch.h"

namespace hopsel::test {
namespace {

TEST(SwaySession, KeyboardsComeAreSwitchedAndGoAndSoDoesSway) {
    auto sway = std::make_unique<Sway>();
    auto layouts = std::make_shared<SwayLayouts>();
    const FrameworkWatch watch(*layouts);
    const auto lists = [&](const Strings& ids) {
        return retryUntil(*layouts, [&] { return watch.ids() == ids; });
    };
    auto first = std::make_unique<Keyboard>(*sway, "us,ru,us");
    // At first it has sway's own keymap.
    ASSERT_TRUE(lists({"sway:English (US)", "sway:Russian", "sway:English (US)#2"}));
    const InputSourceInfo russian{"sway:Russian", "Russian", "SwayLayout", {"ru"}, true};
    EXPECT_EQ(layouts->enabledKeyboardSources()[1], russian);
    EXPECT_EQ(layouts->currentID(), "sway:English (US)");

    LiveInputSourceService service(layouts, uptimeSeconds, runFor);
    for (const char* target : {"sway:Russian", "sway:English (US)#2", "sway:Russian", "sway:Russian"}) {
        const SwitchOutcome outcome = service.switchTo(target);
        EXPECT_TRUE(outcome.result == accepted && outcome.verified) << target;
    }
    auto second = std::make_unique<Keyboard>(*sway, "us,ru,us,de");
    EXPECT_TRUE(lists({"sway:English (US)", "sway:Russian", "sway:English (US)#2", "sway:German"}));
    sway->message("command", "input type:keyboard xkb_switch_layout 0");
    EXPECT_TRUE(watch.becomesCurrent("sway:English (US)"));
    EXPECT_TRUE(service.switchTo("sway:Russian").verified);
    const std::string inputs = sway->message("get_inputs");
    EXPECT_THAT(inputs, testing::HasSubstr("\"xkb_active_layout_index\": 1"));
    EXPECT_EQ(inputs.find("\"xkb_active_layout_index\": 0"), std::string::npos) << "all keyboards go along";
    first.reset();
    second.reset();
    EXPECT_TRUE(watch.comesInCharge(false));
    const Keyboard third(*sway, "us,ru");
    ASSERT_TRUE(lists({"sway:English (US)", "sway:Russian"}));

    expectSwitchEndsWithDaemon(service, *sway->process, 0, "sway:Russian", "sway:English (US)");
    EXPECT_FALSE(layouts->isInCharge());
    EXPECT_EQ(layouts->select("sway:Russian"), gone);
    sway = std::make_unique<Sway>();
    const Keyboard next(*sway, "de,us");
    EXPECT_TRUE(lists({"sway:German", "sway:English (US)"}));
}

} // namespace
} // namespace hopsel::test
