// Pressing the trigger: what ends a capture, and with what.
#include "rules_rig.h"
#include "support/qt_waiting.h"
#include "ui/settings/rules/trigger_capture.h"

#include <QTimer>
#include <gmock/gmock.h>

namespace hopsel::test {
namespace {

using State = TriggerCapture::State;
using testing::Eq;
using testing::Optional;

class Capture : public testing::Test, protected RulesRig {
  protected:
    static constexpr std::uint16_t escape = 53, space = 49, a = 0;

    void start() {
        capture->start();
        ASSERT_TRUE(engine->isCapturing() && keys->isStarted());
    }

    std::unique_ptr<TriggerCapture> capture =
        std::make_unique<TriggerCapture>(*model, keys, std::optional<Trigger>());
};

TEST_F(Capture, TakesWhateverComesFirstAndEndsTheOther) {
    start();
    EXPECT_EQ(capture->state(), State::capturing);
    std::exchange(engine->capture, nullptr)(ModifierKey::rightCommand); // ends its own before it tells
    EXPECT_THAT(capture->trigger(), Optional(Eq(rightCommand)));
    EXPECT_EQ(capture->state(), State::idle);
    EXPECT_FALSE(isCapturing());

    start();
    keys->press(space, {ModifierKey::leftShift}, true);
    EXPECT_EQ(capture->state(), State::capturing) << "a key that was held before repeats";
    keys->press(space, {ModifierKey::leftShift});
    EXPECT_THAT(capture->trigger(), Optional(Eq(leftShiftSpace)));
    EXPECT_EQ(capture->state(), State::idle);
    EXPECT_FALSE(isCapturing());

    start();
    keys->press(escape, {ModifierKey::leftShift});
    const Trigger shiftEscape = trigger::Shortcut{{escape, {ModifierKey::leftShift}}};
    EXPECT_THAT(capture->trigger(), Optional(Eq(shiftEscape)));
    start();
    keys->press(escape);
    EXPECT_THAT(capture->trigger(), Optional(Eq(shiftEscape))) << "Escape alone leaves it as it was";
    EXPECT_EQ(capture->state(), State::idle);
    EXPECT_FALSE(isCapturing());
}

TEST_F(Capture, NeedsARunningEngineAndSaysSoUntilTheNextTry) {
    engine->current = engine_state::Degraded{DegradedReason::tapDisabled};
    capture->start();
    EXPECT_EQ(capture->state(), State::unavailable);
    EXPECT_FALSE(isCapturing());
    engine->current = engine_state::Running{};
    start();
    EXPECT_EQ(capture->state(), State::capturing);
    engine->current = engine_state::Stopped{};
    capture->start();
    EXPECT_FALSE(isCapturing()) << "nothing is left of the capture that this press replaced";
}

TEST_F(Capture, TimesOutButNeverByTheTimerOfAnEarlierOne) {
    capture->setTimeout(std::chrono::milliseconds(0));
    start();
    capture->setTimeout(std::chrono::hours(1));
    start();
    bool isLater = false;
    QTimer::singleShot(std::chrono::milliseconds(1), [&] { isLater = true; });
    ASSERT_TRUE(runLoopUntil([&] { return isLater; }));
    EXPECT_EQ(capture->state(), State::capturing);

    int changes = 0;
    capture->onChange = [&] { ++changes; };
    capture->setTimeout(std::chrono::milliseconds(0));
    start();
    ASSERT_TRUE(runLoopUntil([&] { return capture->state() == State::timedOut; }));
    EXPECT_EQ(changes, 2);
    EXPECT_FALSE(isCapturing());
    EXPECT_FALSE(capture->trigger());
}

TEST_F(Capture, LeavesNothingBehindWhenItGoes) {
    start();
    const auto lateTap = engine->capture;
    const auto lateKey = keys->onKeyDown;
    capture.reset();
    EXPECT_FALSE(isCapturing());
    lateTap(ModifierKey::leftOption);
    lateKey({a, flagsOf({ModifierKey::leftControl}), false});
}

} // namespace
} // namespace hopsel::test
