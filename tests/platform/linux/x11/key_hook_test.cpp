// The key hook against a real X server: what is heard, what is swallowed, and what the application gets.
#include "hook_rig.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace hopsel;
using namespace hopsel::test;
using testing::ElementsAre;

namespace {

TEST(KeyHook, HearsModifiersClicksAndTheFirstScrollStepAndNoOtherKeysCode) {
    HookRig rig;
    rig.start({});
    rig.keyboard->scroll(XKeyboard::Scroll::down); // ends no tap
    rig.keyboard->press(key::leftControl);
    for (int step = 0; step < 3; ++step) rig.keyboard->scroll(XKeyboard::Scroll::down);
    rig.keyboard->release(key::leftControl);
    rig.keyboard->button(3);
    rig.keyboard->press(key::rightAlt);
    rig.keyboard->scroll(XKeyboard::Scroll::down);
    rig.keyboard->press(key::hangul); // the same modifier: it counts once
    rig.keyboard->release(key::rightAlt);
    rig.keyboard->release(key::hangul);
    rig.settle();
    EXPECT_EQ(rig.heard(), "+leftControl wheel -leftControl click +rightOption wheel -rightOption k+ k-");
    for (const RawEvent& event : rig.events)
        if (event.type != RawEventType::flagsChanged) {
            EXPECT_EQ(event.keyCode, 0) << "the code of an ordinary key must never be told";
        }
}

TEST(KeyHook, RepeatsFareAsTheirPress) {
    HookRig rig;
    rig.start();
    rig.keyboard->press(key::leftShift);
    rig.keyboard->press(key::space);
    const auto repeats = [&] {
        return std::count_if(rig.asked.begin(), rig.asked.end(),
                             [](const auto& input) { return input.isRepeat; });
    };
    EXPECT_TRUE(runLoopUntil([&] { return repeats() >= 3; }));
    rig.keyboard->release(key::space);
    rig.keyboard->release(key::leftShift);
    rig.settle();
    EXPECT_EQ(rig.typed(), "q");

    rig.keyboard->press(key::space);
    rig.keyboard->press(key::leftShift); // too late
    EXPECT_TRUE(rig.window->waitFor(
        [](const auto& records) { return records.back().isRepeat && records.back().code == key::space; }));
    rig.keyboard->release(key::space);
    rig.keyboard->release(key::leftShift);
    rig.settle();
    EXPECT_THAT(rig.fired, ElementsAre(leftShiftSpace));
}

TEST(KeyHook, WorksWithEveryLockOn) {
    HookRig rig;
    rig.start();
    for (const std::uint16_t lock : {key::capsLock, key::numLock, std::uint16_t{KEY_SCROLLLOCK}}) {
        rig.keyboard->tap(lock);
        rig.typeShortcut();
    }
    rig.settle();
    EXPECT_THAT(rig.fired, ElementsAre(leftShiftSpace, leftShiftSpace, leftShiftSpace));
    EXPECT_EQ(rig.typed(), "Q");
    EXPECT_NE(rig.events.back().flags & capsLockFlag, 0U);
}

TEST(KeyHook, TheWindowManagersOwnCombinationsOfTheKeyWorkAlongside) {
    HookRig rig("us", true,
                R"(<?xml version="1.0"?><openbox_config xmlns="http://openbox.org/3.4/rc"><keyboard>
<keybind key="A-space"><action name="ToggleShowDesktop"/></keybind></keyboard></openbox_config>)");
    rig.start();
    rig.typeShortcut();
    rig.settle();
    EXPECT_THAT(rig.fired, ElementsAre(leftShiftSpace));
    EXPECT_EQ(rig.typed(), "q");
    rig.keyboard->press(key::leftAlt);
    rig.keyboard->tap(key::space);
    rig.keyboard->release(key::leftAlt);
    EXPECT_TRUE(rig.window->waitFor([](const auto& records) {
        return std::any_of(records.begin(), records.end(), [](const XRecord& record) {
            return record.kind == XRecord::Kind::focusOut && record.mode == XCB_NOTIFY_MODE_NORMAL;
        });
    })) << "the desktop is shown";
}

TEST(KeyHook, AKeyThatIsSwallowedWhenTheFilterStopsStaysSwallowedUntilItIsUp) {
    HookRig rig;
    rig.start();
    rig.keyboard->press(key::leftShift);
    rig.keyboard->press(key::space);
    ASSERT_TRUE(runLoopUntil([&] { return !rig.fired.empty(); }));
    rig.filter->stop();
    rig.keyboard->tap(key::a);
    rig.keyboard->release(key::space);
    rig.keyboard->release(key::leftShift);
    rig.keyboard->tap(key::space);
    rig.settle();
    EXPECT_EQ(rig.typed(), "A q");
    EXPECT_EQ(rig.heard(), "+leftShift k+ k- k- -leftShift k+ k- k+ k-")
        << "the key-up that the application must not see is told to the listener";
}

TEST(KeyHook, AWindowThatIsClosedDuringAHoldLeavesAWorkingKeyboardAndFilter) {
    HookRig rig("us", false); // a window manager would pass the focus on in its own time
    rig.start({leftShiftSpace, {96, {ModifierKey::leftShift}}});
    for (const bool handOver : {false, true}) {
        auto closing = std::make_unique<XTestWindow>("closing");
        rig.keyboard->press(key::leftShift);
        rig.keyboard->press(key::space);
        if (handOver) { // one event handed on: the hold is with the other connection then
            rig.keyboard->press(key::a);
            ASSERT_TRUE(closing->waitForText("A"));
        }
        ASSERT_TRUE(runLoopUntil([&] { return !rig.fired.empty(); }));
        closing.reset();
        rig.window->focus();
        rig.keyboard->tap(key::f5); // one of ours comes while the hold is lost
        if (handOver) rig.keyboard->release(key::a);
        rig.keyboard->release(key::space);
        rig.keyboard->release(key::leftShift);
        rig.settle();
        rig.window->clear();
        rig.fired.clear();
        rig.typeShortcut();
        rig.settle();
        EXPECT_THAT(rig.fired, ElementsAre(leftShiftSpace)) << handOver;
        EXPECT_EQ(rig.typed(), "q") << handOver;
        rig.fired.clear();
    }
}

TEST(KeyHook, ModifiersFollowTheKeymap) {
    HookRig rig("us");
    rig.start({{49, {ModifierKey::leftCommand}}});
    setLayouts("us", "", "altwin:swap_alt_win");
    ASSERT_TRUE(runLoopUntil([&] {
        rig.events.clear();
        rig.keyboard->tap(key::leftAlt);
        rig.settle();
        return rig.heard() == "+leftCommand -leftCommand k+ k-";
    }));
    rig.window->clear();
    rig.keyboard->press(key::leftAlt);
    rig.keyboard->tap(key::space);
    rig.keyboard->release(key::leftAlt);
    rig.settle();
    EXPECT_EQ(rig.fired.size(), 1U);
    EXPECT_EQ(rig.typed(), "q");
}

TEST(KeyHook, KnowsItsOwnPosts) {
    HookRig rig;
    rig.start();
    const auto post = [&](std::uint16_t code, bool press) {
        const std::size_t heardBefore = rig.events.size();
        ASSERT_TRUE(rig.hook->post(code, press));
        ASSERT_TRUE(runLoopUntil([&] { return rig.events.size() > heardBefore; }));
    };
    post(key::a, true);
    post(key::a, false);
    rig.keyboard->tap(key::a);
    post(key::leftShift, true);
    EXPECT_TRUE(rig.hook->post(key::leftShift, true)) << "makes no event, and must not claim a later one";
    // Our own shortcut, posted by ourselves: passes, although it stops the keyboard for a moment.
    for (const bool press : {true, false}) EXPECT_TRUE(rig.hook->post(key::space, press));
    post(key::leftShift, false);
    rig.keyboard->tap(key::leftShift);
    rig.settle();
    EXPECT_EQ(rig.heard(),
              "own:k+ own:k- k+ k- own:+leftShift own:k+ own:k- own:-leftShift +leftShift -leftShift k+ k-");
    EXPECT_EQ(rig.typed(), "aa q");
    EXPECT_THAT(rig.fired, ElementsAre());
}

} // namespace
