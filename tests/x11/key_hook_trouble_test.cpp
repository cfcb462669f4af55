// The key hook in company: other programs that hold the pointer or take the combination, and a second
// keyboard.
#include "core/platform/linux/x11/x11_input_devices.h"
#include "hook_rig.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <xcb/xtest.h>

using namespace hopsel;
using namespace hopsel::test;

namespace {

/// A second pair of master devices, as a second person at the same screen has, and the hands on its keyboard.
class SecondKeyboard {
  public:
    SecondKeyboard(HookRig& rig) : rig_(rig) {
        x11_input_devices::requireXInput2(connection_);
        struct {
            xcb_input_add_master_t header;
            char name[8];
        } add{};
        add.header.type = XCB_INPUT_HIERARCHY_CHANGE_TYPE_ADD_MASTER;
        add.header.len = sizeof add / 4;
        add.header.name_len = 6;
        add.header.send_core = 1;
        add.header.enable = 1;
        std::copy_n("second", 6, add.name);
        xcb_input_xi_change_hierarchy(connection_.get(), 1,
                                      reinterpret_cast<xcb_input_hierarchy_change_t*>(&add));
        const MasterKeyboard second = x11_input_devices::masterKeyboards(connection_).back();
        xcb_input_xi_set_client_pointer(connection_.get(), XCB_NONE, second.pointer);
        xcb_input_xi_set_focus(connection_.get(), rig.window->id(), XCB_CURRENT_TIME, second.keyboard);
        connection_.roundTrip();
    }

    void key(std::uint16_t code, bool isDown) {
        xcb_test_fake_input(connection_.get(), isDown ? XCB_KEY_PRESS : XCB_KEY_RELEASE,
                            static_cast<std::uint8_t>(code + 8), XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
        connection_.roundTrip();
    }
    /// Returns whether the window got the letter.
    bool types(std::uint16_t code, const std::string& text) {
        rig_.window->records();
        rig_.window->clear();
        key(code, true);
        key(code, false);
        return rig_.window->waitForText(text);
    }

  private:
    HookRig& rig_;
    X11Connection connection_;
};

TEST(KeyHookInCompany, ASecondKeyboardIsNeitherFrozenNorMixedUpWithTheFirst) {
    HookRig rig("us", false);
    SecondKeyboard second(rig);
    rig.start();
    rig.keyboard->press(key::leftShift);
    rig.keyboard->press(key::space);
    ASSERT_TRUE(runLoopUntil([&] { return rig.fired.size() == 1; }));
    second.key(key::leftShift, true);
    second.key(key::space, true);
    second.key(key::space, false);
    second.key(key::leftShift, false);
    EXPECT_TRUE(second.types(key::c, "c")) << "during the hold of the first";
    rig.keyboard->release(key::space);
    rig.keyboard->release(key::leftShift);
    EXPECT_TRUE(second.types(key::d, "d")) << "after it";
    rig.settle();
}

TEST(KeyHookInCompany, AKeyboardThatIsPluggedInIsFilteredToo) {
    HookRig rig("us", false);
    rig.start();
    SecondKeyboard second(rig);
    EXPECT_TRUE(runLoopUntil([&] {
        second.key(key::leftShift, true);
        second.key(key::space, true);
        second.key(key::space, false);
        second.key(key::leftShift, false);
        return !rig.fired.empty();
    }));
    EXPECT_TRUE(second.types(key::c, "c"));
}

TEST(KeyHookInCompany, RolloverWhileAnotherProgramHoldsThePointerLosesNoKeyAfterwards) {
    HookRig rig("us", false);
    rig.start({leftShiftSpace, {96, {ModifierKey::rightControl}}});
    XDisplay other;
    xcb_grab_pointer(other.get(), 0, other.root(), 0, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC, XCB_NONE,
                     XCB_NONE, XCB_CURRENT_TIME);
    other.roundTrip();
    const auto heardMore = [&](const std::function<void()>& act) {
        const std::size_t count = rig.events.size();
        act();
        return runLoopUntil([&] { return rig.events.size() > count; });
    };
    rig.keyboard->press(key::leftShift);
    rig.keyboard->press(key::space);
    ASSERT_TRUE(runLoopUntil([&] { return rig.fired.size() == 1; }));
    // An odd number of foreign keys, one at a time, then two at once of which the second may slip through.
    EXPECT_TRUE(heardMore([&] { rig.keyboard->release(key::leftShift); }));
    EXPECT_TRUE(heardMore([&] { rig.keyboard->press(key::leftControl); }));
    EXPECT_TRUE(heardMore([&] { rig.keyboard->press(key::b); }));
    rig.keyboard->post({{key::b, false}, {key::f5, true}});
    rig.keyboard->release(key::f5);
    rig.keyboard->release(key::leftControl);
    rig.keyboard->release(key::space);
    xcb_ungrab_pointer(other.get(), XCB_CURRENT_TIME);
    other.roundTrip();
    rig.window->records();
    rig.window->clear();
    rig.keyboard->tap(key::c);
    rig.settle();
    EXPECT_EQ(rig.typed(), "cq");
}

TEST(KeyHookInCompany, ACombinationThatAnotherProgramTakesLaterIsNoticed) {
    HookRig rig("us", false);
    rig.start();
    XDisplay other;
    for (const int locks : {0x00, 0x02, 0x10, 0x12})
        xcb_grab_key(other.get(), 0, other.root(), static_cast<std::uint16_t>(XCB_MOD_MASK_SHIFT | locks),
                     key::space + 8, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    other.roundTrip();
    rig.keyboard->press(key::leftShift);
    rig.keyboard->tap(key::space);
    rig.keyboard->release(key::leftShift);
    EXPECT_TRUE(runLoopUntil([&] { return rig.filterDisabled == 1; }));
    EXPECT_EQ(rig.disabled, 0) << "taps go on";
    EXPECT_THROW(rig.filter->start(), TapFailure);
}

TEST(KeyHookInCompany, KeysThatComeWhileAFilterIsRefusedAreNotHeldBack) {
    HookRig rig("us", false);
    rig.listen->start();
    XDisplay other; // holds one of the two combinations
    xcb_grab_key(other.get(), 0, other.root(), XCB_MOD_MASK_SHIFT, key::f5 + 8, XCB_GRAB_MODE_ASYNC,
                 XCB_GRAB_MODE_ASYNC);
    other.roundTrip();
    rig.filter->setShortcuts({leftShiftSpace, {96, {ModifierKey::leftShift}}});
    rig.keyboard->press(key::leftShift);
    for (int round = 0; round < 50; ++round) {
        const std::size_t heardBefore = rig.events.size();
        rig.keyboard->post(
            {{key::space, true}, {key::space, false}}); // on its way while the filter is refused
        EXPECT_THROW(rig.filter->start(), TapFailure);
        ASSERT_TRUE(runLoopUntil([&] { return rig.events.size() >= heardBefore + 2; })) << round;
    }
    rig.keyboard->release(key::leftShift);
    rig.settle();
}

} // namespace
