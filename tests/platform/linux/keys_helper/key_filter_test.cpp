// What the session is told of the keys, and what the desktop gets of them.
#include "platform/linux/keys_helper/filter_rig.h"

#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

namespace hopsel {
namespace {

constexpr auto controlSpace = "49|leftControl";

InputFrame recovered(std::vector<DeviceEvent> events) {
    return {.microseconds = 0, .events = std::move(events), .isRecovered = true};
}

TEST(KeyFilter, TellsNoMoreOfAKeyThanATapIsSpoiledBy) {
    FilterRig rig;
    rig.type("a+ a* b+ a- b-");
    EXPECT_EQ(rig.told(), "");
    // Once for each press of a told key, however much follows; a release spoils nothing.
    rig.type("b+ lshift+ b- a+ a- b+ b- lshift-");
    EXPECT_EQ(rig.told(), "lshift+ key lshift-");
    rig.type("lctrl+ a+ a- lalt+ a+ a- lalt- a+ a- lctrl-");
    EXPECT_EQ(rig.told(), "lctrl+ key lalt+ key lalt- lctrl-");
    rig.filter.pointerUsed();
    rig.type("lctrl+");
    rig.filter.pointerUsed();
    rig.filter.pointerUsed();
    EXPECT_EQ(rig.told(), "lctrl+ pointer");
}

TEST(KeyFilter, SwallowsACombinationWithItsRepeatsAndItsRelease) {
    FilterRig rig;
    rig.declare({controlSpace, "57|leftControl", "96|"});
    rig.type("lctrl+ space+");
    rig.answer(true);
    rig.type("space* space* lctrl- space*");
    EXPECT_EQ(rig.told(), "lctrl+ ?49|leftControl lctrl-");
    rig.type("space- space+ space-");
    EXPECT_EQ(rig.told(), "49-");
    EXPECT_EQ(rig.desktop(), "lctrl+ lctrl- space+ space-");

    // Caps Lock has a name and can be the key of a combination; F5 needs no modifier.
    rig.type("lctrl+ caps+");
    rig.answer(true);
    rig.type("caps- lctrl- f5+");
    rig.answer(false);
    EXPECT_EQ(rig.told(), "lctrl+ ?57|leftControl 57- lctrl- ?96|");
    EXPECT_EQ(rig.desktop(), "lctrl+ lctrl- f5+");
}

TEST(KeyFilter, AsksForExactlyWhatIsDeclared) {
    FilterRig rig;
    rig.declare({controlSpace});
    rig.type("rctrl+ space+ space- rctrl- lshift+ lctrl+ space+ space- lctrl- lshift- space+ space-");
    EXPECT_EQ(rig.told(), "rctrl+ key rctrl- lshift+ lctrl+ key lctrl- lshift-");
    // The modifier may be on another keyboard, and the keymap may say that another key is it.
    rig.type("lctrl+", 1);
    rig.type("space+", 2);
    rig.answer(false);
    EXPECT_EQ(rig.desktop(2), "space+");
    rig.type("lctrl-", 1);
    KeyDeclaration swapped{.meanings = told_keys::plainMeanings(),
                           .combinations = {ShortcutKey::fromStorageString(controlSpace).value()}};
    swapped.meanings.at(told_keys::indexOf(KEY_CAPSLOCK).value()) = ModifierKey::leftControl;
    rig.filter.declare(swapped);
    rig.told();
    rig.type("caps+ space+");
    EXPECT_EQ(rig.told(), "caps+ ?49|leftControl");
}

TEST(KeyFilter, WhatComesBehindAQuestionWaitsInItsPlace) {
    FilterRig rig;
    rig.declare({controlSpace});
    rig.type("lctrl+ space+ a+ a-");
    rig.type("b+", 2);
    rig.filter.pointerUsed();
    rig.type("lctrl- lctrl+ space- space+");
    EXPECT_EQ(rig.desktop(), "lctrl+");
    EXPECT_FALSE(rig.filter.isAtRest(2));
    rig.answer(false); // and the second one is asked about at once
    EXPECT_EQ(rig.told(), "lctrl+ ?49|leftControl key lctrl- lctrl+ ?49|leftControl");
    EXPECT_EQ(rig.desktop(), "space+ a+ a- lctrl- lctrl+ space-");
    EXPECT_EQ(rig.desktop(2), "b+");
    const std::uint32_t second = rig.filter.asked().value();
    rig.filter.answer(second - 1, true); // to the first, once more
    EXPECT_EQ(rig.filter.asked(), second);
    rig.answer(true);
    EXPECT_EQ(rig.desktop(), "");
}

TEST(KeyFilter, ThreeLateAnswersInARowEndIt) {
    FilterRig rig;
    rig.declare({controlSpace});
    const auto late = [&] {
        rig.type("lctrl+ space+ a+ a- space- lctrl-");
        rig.filter.answerIsLate();
        return rig.told();
    };
    EXPECT_EQ(late(), "lctrl+ ?49|leftControl late key lctrl-");
    EXPECT_EQ(rig.desktop(), "lctrl+ space+ a+ a- space- lctrl-");
    late();
    rig.type("lctrl+ space+");
    rig.answer(true); // in time: counted anew from here
    rig.type("space- lctrl-");
    rig.told();
    late();
    late();
    EXPECT_TRUE(rig.filter.isWanted());
    EXPECT_EQ(late(), "lctrl+ ?49|leftControl late key lctrl- ended");
    EXPECT_FALSE(rig.filter.isWanted());
    rig.type("lctrl+ space+ space- lctrl-");
    EXPECT_EQ(rig.told(), "lctrl+ key lctrl-");
    rig.declare({controlSpace});
    rig.type("lctrl+ space+");
    EXPECT_EQ(rig.told(), "lctrl+ ?49|leftControl");
}

TEST(KeyFilter, AKeyboardThatSaysTooMuchIsNotWaitedFor) {
    FilterRig rig;
    rig.declare({controlSpace});
    rig.type("lctrl+ space+ space-");
    for (int i = 0; i < 400; ++i) rig.type("a+ a-");
    EXPECT_FALSE(rig.filter.asked());
    EXPECT_TRUE(rig.told().ends_with("late key"));
}

TEST(KeyFilter, TwoKeyboardsHoldOneModifier) {
    FilterRig rig;
    rig.type("lctrl+", 1);
    rig.type("lctrl+", 2);
    rig.type("lctrl-", 1);
    EXPECT_EQ(rig.told(), "lctrl+");
    rig.type("lctrl-", 2);
    EXPECT_EQ(rig.told(), "lctrl-");
}

TEST(KeyFilter, AKeyboardThatIsPulledOutHoldsNothing) {
    FilterRig rig;
    rig.declare({controlSpace});
    rig.type("lctrl+ space+");
    rig.answer(true);
    rig.type("a+", 2);
    rig.filter.remove(1);
    EXPECT_EQ(rig.told(), "lctrl+ ?49|leftControl key 49- held:0");
    EXPECT_EQ(rig.desktop(1), "lctrl+ lctrl-");

    // While it is asked about: others go on, and the answer comes to nothing.
    rig.filter.add(3, {});
    rig.filter.setMirrored(3, true);
    rig.type("lctrl+ space+ b+", 3);
    rig.type("a-", 2);
    const std::uint32_t question = rig.filter.asked().value();
    rig.filter.remove(3);
    EXPECT_EQ(rig.desktop(3), "lctrl+ lctrl-");
    EXPECT_EQ(rig.desktop(2), "a+ a-");
    rig.filter.answer(question, true);
    rig.type("b+ b-", 2);
    EXPECT_EQ(rig.desktop(2), "b+ b-");
    EXPECT_TRUE(rig.filter.isAtRest(2));
}

TEST(KeyFilter, LosesNothingWhenTheKernelDoes) {
    FilterRig rig;
    rig.declare({controlSpace});
    rig.type("lctrl+ space+");
    rig.answer(true);
    rig.told();
    // Control and Space came up, Shift and A went down, nobody knows in which order.
    rig.filter.keyboardFrame(1, recovered({{EV_KEY, KEY_LEFTCTRL, 0},
                                           {EV_KEY, KEY_SPACE, 0},
                                           {EV_KEY, KEY_LEFTSHIFT, 1},
                                           {EV_KEY, KEY_A, 1}}));
    EXPECT_EQ(rig.told(), "49- held:16");
    EXPECT_EQ(rig.desktop(), "lctrl+ lctrl- lshift+ a+");
    // A combination that was pressed meanwhile is none: its time is not known.
    rig.filter.keyboardFrame(
        1, recovered({{EV_KEY, KEY_LEFTSHIFT, 0}, {EV_KEY, KEY_LEFTCTRL, 1}, {EV_KEY, KEY_SPACE, 1}}));
    EXPECT_EQ(rig.told(), "held:64");
}

TEST(KeyFilter, GivesAKeyboardBackWithNothingDown) {
    FilterRig rig;
    rig.declare({controlSpace});
    rig.type("a+ lctrl+ space+");
    rig.filter.endSession();
    EXPECT_EQ(rig.desktop(), "a+ lctrl+ space+");
    EXPECT_FALSE(rig.filter.isAtRest(1));
    rig.filter.giveBack(1);
    EXPECT_EQ(rig.desktop(), "lctrl- a- space-"); // in the order of their numbers
    rig.type("lctrl- a-");
    EXPECT_EQ(rig.desktop(), "");
}

TEST(KeyFilter, IsNotAskedAboutAKeyboardThatTypesByItself) {
    FilterRig rig;
    rig.declare({controlSpace});
    rig.filter.setMirrored(1, false);
    rig.type("lctrl+ space+ space- lctrl-");
    EXPECT_EQ(rig.told(), "lctrl+ key lctrl-");
    EXPECT_EQ(rig.desktop(), "");
}

} // namespace
} // namespace hopsel
