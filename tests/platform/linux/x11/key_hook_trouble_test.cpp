// The key hook in company: other programs that hold the pointer or take the combination.
#include "hook_rig.h"
#include "platform/linux/base/main_loop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <utility>

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

/// Another program's grab of one key with Shift, as window managers make it.
void grabWithShift(XDisplay& other, std::uint16_t key) {
    for (const int locks : {0x00, 0x02, 0x10, 0x12})
        xcb_grab_key(other.get(), 0, other.root(), static_cast<std::uint16_t>(XCB_MOD_MASK_SHIFT | locks),
                     static_cast<xcb_keycode_t>(key + 8), XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    other.roundTrip();
}

void typeShiftF5(HookRig& rig) {
    rig.keyboard->press(key::leftShift);
    rig.keyboard->tap(key::f5);
    rig.keyboard->release(key::leftShift);
}

constexpr ShortcutKey leftShiftF5{96, {ModifierKey::leftShift}};

TEST(KeyHookInCompany, ACombinationThatAnotherProgramTakesLaterIsNoticed) {
    HookRig rig("us", false);
    rig.start();
    XDisplay other;
    grabWithShift(other, key::space);
    rig.typeShortcut();
    EXPECT_TRUE(runLoopUntil([&] { return rig.filterDisabled == 1; })) << "it was the only one";
    EXPECT_EQ(rig.disabled, 0) << "taps go on";
    EXPECT_THROW(rig.filter->start(), TapFailure);
    EXPECT_EQ(rig.filter->unavailableShortcuts(), ShortcutSet{leftShiftSpace});
}

TEST(KeyHookInCompany, ATakenCombinationIsNamedAndTheOthersWorkUntilItIsFree) {
    HookRig rig("us", false);
    int told = 0;
    rig.filter->onUnavailableChanged = [&] { ++told; };
    {
        XDisplay other;
        grabWithShift(other, key::f5);
        rig.start({leftShiftSpace, leftShiftF5});
        EXPECT_EQ(rig.filter->unavailableShortcuts(), ShortcutSet{leftShiftF5});
        EXPECT_EQ(std::exchange(told, 0), 1);
        typeShiftF5(rig);
        rig.typeShortcut();
        rig.settle();
        EXPECT_THAT(rig.fired, testing::ElementsAre(leftShiftSpace));
        EXPECT_EQ(rig.typed(), "q") << "the other program has it";
    }
    EXPECT_TRUE(runLoopUntil([&] { return rig.filter->unavailableShortcuts().empty(); })) << "it let go";
    EXPECT_EQ(std::exchange(told, 0), 1);
    typeShiftF5(rig);
    rig.settle();
    EXPECT_EQ(rig.fired.back(), leftShiftF5);

    auto third = std::make_unique<XDisplay>(); // takes it while it works: noticed when it does not arrive
    grabWithShift(*third, key::f5);
    typeShiftF5(rig);
    EXPECT_TRUE(runLoopUntil([&] { return told == 1; }));
    EXPECT_EQ(rig.filter->unavailableShortcuts(), ShortcutSet{leftShiftF5});
    rig.typeShortcut();
    rig.settle();
    EXPECT_EQ(rig.fired.back(), leftShiftSpace);
    third.reset(); // which nobody tells us
    EXPECT_TRUE(runLoopUntil([&] { return rig.filter->unavailableShortcuts().empty(); }));
    EXPECT_EQ(rig.filterDisabled, 0);
}

// XInput grabs, which newer programs make, are refused one by one.
TEST(KeyHookInCompany, ACombinationHeldThroughXInputIsNamedToo) {
    HookRig other("us", false);
    other.start({leftShiftF5});
    auto hook = std::make_shared<X11KeyHook>(uptimeSeconds);
    X11ListenSource listen(hook);
    X11ShortcutSource filter(hook, other.log);
    listen.start();
    filter.setShortcuts({leftShiftSpace, leftShiftF5});
    filter.start();
    EXPECT_EQ(filter.unavailableShortcuts(), ShortcutSet{leftShiftF5});
    other.filter->stop();
    EXPECT_TRUE(runLoopUntil([&] { return filter.unavailableShortcuts().empty(); }));
}

TEST(KeyHookInCompany, KeysOnTheirWayAreNotHeldBackWhileAllIsRefused) {
    HookRig rig("us", false);
    rig.listen->start();
    XDisplay other;
    grabWithShift(other, key::f5);
    rig.filter->setShortcuts({leftShiftF5});
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
    EXPECT_THAT(rig.log.lines.front(), testing::HasSubstr("other programs have grabbed"));
    rig.start(); // another one
    rig.typeShortcut();
    rig.settle();
    EXPECT_EQ(rig.fired.size(), 1U);
}

} // namespace
