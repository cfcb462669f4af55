// The key hook in company: other programs that hold the pointer or take the combination.
#include "hook_rig.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace hopsel;
using namespace hopsel::test;

namespace {

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
    rig.typeShortcut();
    EXPECT_TRUE(runLoopUntil([&] { return rig.filterDisabled == 1; }));
    EXPECT_EQ(rig.disabled, 0) << "taps go on";
    EXPECT_THROW(rig.filter->start(), TapFailure);
}

TEST(KeyHookInCompany, ATakenCombinationIsRefusedAndKeysOnTheirWayAreNotHeldBack) {
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
    ASSERT_EQ(rig.log.lines.size(), 1U) << "the same reason is logged once";
    EXPECT_THAT(rig.log.lines.front(), testing::HasSubstr("another program has grabbed"));
    rig.start(); // without the one that is taken
    rig.typeShortcut();
    rig.settle();
    EXPECT_EQ(rig.fired.size(), 1U);
}

} // namespace
