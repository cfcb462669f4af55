// The key hook against a real X server: what is heard, what is swallowed, and what the application gets.
#include "hook_rig.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace hopsel;
using namespace hopsel::test;
using testing::ElementsAre;

namespace {

TEST(KeyHook, TellsSidesApartAndHearsClicksAndScrollSteps) {
    HookRig rig;
    rig.start({});
    rig.keyboard->tap(key::leftShift);
    rig.keyboard->tap(key::rightSuper);
    rig.keyboard->press(key::leftControl);
    rig.keyboard->scroll(XKeyboard::Scroll::down);
    rig.keyboard->release(key::leftControl);
    rig.keyboard->button(3);
    rig.settle();
    EXPECT_EQ(rig.heard(),
              "+leftShift -leftShift +rightCommand -rightCommand +leftControl click -leftControl "
              "click k+ k-");
    for (const RawEvent& event : rig.events)
        if (event.type != RawEventType::flagsChanged) {
            EXPECT_EQ(event.keyCode, 0) << "the code of an ordinary key must never be told";
        }
}

TEST(KeyHook, SwallowsTheShortcutAndNothingElse) {
    HookRig rig;
    rig.start();
    rig.keyboard->tap(key::a);
    rig.keyboard->press(key::leftShift);
    rig.keyboard->tap(key::space);
    rig.keyboard->release(key::leftShift);
    rig.keyboard->tap(key::b);
    rig.settle();
    EXPECT_EQ(rig.typed(), "abq");
    EXPECT_THAT(rig.fired, ElementsAre(leftShiftSpace));
    EXPECT_EQ(rig.heard(), "k+ k- +leftShift -leftShift k+ k- k+ k-");
}

TEST(KeyHook, PassesTheWrongSideAndExtraModifiersInOrder) {
    HookRig rig;
    rig.start();
    rig.keyboard->press(key::rightShift);
    rig.keyboard->tap(key::space);
    rig.keyboard->press(key::leftShift); // both: no match either
    rig.keyboard->tap(key::space);
    rig.keyboard->release(key::rightShift);
    rig.keyboard->release(key::leftShift);
    rig.keyboard->tap(key::space);
    rig.settle();
    EXPECT_THAT(rig.fired, ElementsAre());
    EXPECT_EQ(rig.typed(), "   q");
    EXPECT_EQ(rig.heard(), "+rightShift k+ k- +leftShift k+ k- -rightShift -leftShift k+ k- k+ k-");
}

TEST(KeyHook, RolloverLettersArriveInOrderWhileASwallowedKeyIsHeld) {
    HookRig rig;
    rig.start();
    rig.keyboard->press(key::leftShift);
    rig.keyboard->post({{key::space, true},
                        {key::leftShift, false},
                        {key::a, true},
                        {key::s, true},
                        {key::a, false},
                        {key::space, false},
                        {key::d, true},
                        {key::s, false},
                        {key::d, false}});
    rig.settle();
    EXPECT_EQ(rig.typed(), "asdq");
    EXPECT_EQ(rig.window->keys(), "+42 -42 +30 +31 -30 +32 -31 -32 +16 -16");
    EXPECT_EQ(rig.heard(), "+leftShift -leftShift k+ k+ k- k+ k- k- k+ k-");
    EXPECT_THAT(rig.fired, ElementsAre(leftShiftSpace));
}

TEST(KeyHook, SwallowsTheRepeatsOfAHeldShortcut) {
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
    EXPECT_THAT(rig.fired, ElementsAre(leftShiftSpace));
}

TEST(KeyHook, RepeatsOfAPassedPressPassEvenWhenTheModifierComesLater) {
    HookRig rig;
    rig.start();
    rig.keyboard->press(key::space);
    rig.keyboard->press(key::leftShift);
    EXPECT_TRUE(rig.window->waitFor([&](const auto& records) {
        return std::count_if(records.begin(), records.end(), [](const XRecord& record) {
                   return record.isRepeat && record.code == key::space;
               }) >= 3;
    }));
    rig.keyboard->release(key::space);
    rig.keyboard->release(key::leftShift);
    rig.settle();
    EXPECT_THAT(rig.fired, ElementsAre());
    EXPECT_GE(rig.typed().size(), 4U);
}

TEST(KeyHook, WorksWithEveryLockOn) {
    HookRig rig;
    rig.start();
    for (const std::uint16_t lock : {key::capsLock, key::numLock, std::uint16_t{KEY_SCROLLLOCK}}) {
        rig.keyboard->tap(lock);
        rig.keyboard->press(key::leftShift);
        rig.keyboard->tap(key::space);
        rig.keyboard->release(key::leftShift);
    }
    rig.settle();
    EXPECT_THAT(rig.fired, ElementsAre(leftShiftSpace, leftShiftSpace, leftShiftSpace));
    EXPECT_EQ(rig.typed(), "Q");
    EXPECT_NE(rig.events.back().flags & capsLockFlag, 0U);
}

TEST(KeyHook, SeveralRulesOnOneKeyAndTwoSwallowedAtOnce) {
    const ShortcutKey controlSpace{49, {ModifierKey::rightControl}};
    const ShortcutKey shiftF5{96, {ModifierKey::leftShift}};
    HookRig rig;
    rig.start({leftShiftSpace, controlSpace, shiftF5});
    rig.keyboard->press(key::rightControl);
    rig.keyboard->tap(key::space);
    rig.keyboard->release(key::rightControl);
    rig.keyboard->press(key::leftShift);
    rig.keyboard->press(key::space);
    rig.keyboard->press(key::f5);
    rig.keyboard->tap(key::a);
    rig.keyboard->release(key::space);
    rig.keyboard->tap(key::b);
    rig.keyboard->release(key::f5);
    rig.keyboard->release(key::leftShift);
    rig.settle();
    EXPECT_THAT(rig.fired, ElementsAre(controlSpace, leftShiftSpace, shiftF5));
    EXPECT_EQ(rig.typed(), "ABq");
}

/// The focus did not move, it only seemed so while someone held the keyboard.
bool isByGrab(const XRecord& record) {
    return record.mode == XCB_NOTIFY_MODE_GRAB || record.mode == XCB_NOTIFY_MODE_UNGRAB;
}

TEST(KeyHook, TheWindowManagersOwnKeysWorkAlongside) {
    const std::string config =
        R"(<?xml version="1.0"?><openbox_config xmlns="http://openbox.org/3.4/rc"><keyboard>
<keybind key="A-Tab"><action name="ToggleShowDesktop"/></keybind>
<keybind key="A-space"><action name="ToggleShowDesktop"/></keybind></keyboard></openbox_config>)";
    HookRig rig("us", true, config);
    rig.start();
    const auto focusChanges = [&](XRecord::Kind kind) {
        return rig.window->waitFor([&](const auto& records) {
            return std::any_of(records.begin(), records.end(), [&](const XRecord& record) {
                return record.kind == kind && !isByGrab(record);
            });
        });
    };
    const auto withAlt = [&](std::uint16_t code) {
        rig.window->clear();
        rig.keyboard->press(key::leftAlt);
        rig.keyboard->tap(code);
        rig.keyboard->release(key::leftAlt);
    };
    withAlt(key::space);
    EXPECT_TRUE(focusChanges(XRecord::Kind::focusOut)) << "Alt+Space shares its key with the shortcut";
    withAlt(key::tab);
    EXPECT_TRUE(focusChanges(XRecord::Kind::focusIn)) << "Alt+Tab brings the window back";
    rig.window->clear();
    rig.keyboard->press(key::leftShift);
    rig.keyboard->tap(key::space);
    rig.keyboard->release(key::leftShift);
    rig.settle();
    EXPECT_THAT(rig.fired, ElementsAre(leftShiftSpace));
    EXPECT_EQ(rig.typed(), "q");
}

TEST(KeyHook, RefusesACombinationThatTheWindowManagerHolds) {
    const std::string config =
        R"(<?xml version="1.0"?><openbox_config xmlns="http://openbox.org/3.4/rc"><keyboard>
<keybind key="S-space"><action name="ToggleMaximize"/></keybind></keyboard></openbox_config>)";
    HookRig rig("us", true, config);
    rig.listen->start();
    rig.filter->setShortcuts({leftShiftSpace});
    EXPECT_THROW(rig.filter->start(), TapFailure);
    EXPECT_THROW(rig.filter->start(), TapFailure);
    ASSERT_EQ(rig.log.lines.size(), 1U) << "the same reason is logged once";
    EXPECT_THAT(rig.log.lines.front(), testing::HasSubstr("another program has grabbed"));
    rig.filter->setShortcuts({{96, {ModifierKey::leftShift}}});
    EXPECT_NO_THROW(rig.filter->start());
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
        rig.keyboard->press(key::leftShift);
        rig.keyboard->tap(key::space);
        rig.keyboard->release(key::leftShift);
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

TEST(KeyHook, TheKoreanKeysAndAltGrCountAsModifiersOnce) {
    HookRig rig("us");
    rig.start({});
    rig.keyboard->press(key::rightAlt);
    rig.keyboard->press(key::hangul);
    rig.keyboard->release(key::rightAlt);
    rig.keyboard->release(key::hangul);
    rig.keyboard->tap(key::hanja);
    rig.settle();
    EXPECT_EQ(rig.heard(), "+rightOption -rightOption +rightControl -rightControl k+ k-");
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

TEST(KeyHook, ALostConnectionIsATakenSourceAndTheNextStartOpensANewOne) {
    auto rig = std::make_unique<HookRig>("us", false);
    rig->start();
    rig->server.kill();
    EXPECT_TRUE(runLoopUntil([&] { return rig->disabled == 1; }));
    EXPECT_FALSE(rig->hook->isOpen());
    rig->filter->stop();
    EXPECT_THROW(rig->listen->start(), TapFailure);
    XServer next;
    XTestWindow window;
    XKeyboard keyboard;
    rig->listen->start();
    keyboard.tap(key::a);
    EXPECT_TRUE(runLoopUntil([&] { return rig->events.size() == 2; }));
    rig->listen->stop();
    EXPECT_FALSE(rig->hook->isOpen());
}

} // namespace
