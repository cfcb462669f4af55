// Pressing the trigger: what ends a capture, and with what.
#include "ui/settings/rules/trigger_capture.h"

#include "ui/settings/settings_rig.h"

#include <gmock/gmock.h>

namespace hopsel::test {
namespace {

using State = TriggerCapture::State;
using testing::Eq;
using testing::Optional;

class Capture : public testing::Test, protected SettingsRig {
  protected:
    static constexpr std::uint16_t escape = 53, space = 49;

    void start() {
        capture.start();
        ASSERT_TRUE(engine->isCapturing() && keys->onKeyDown);
        ASSERT_EQ(capture.state(), State::capturing);
    }
    void expectEndedWith(const Trigger& trigger) const {
        EXPECT_THAT(capture.trigger(), Optional(Eq(trigger)));
        EXPECT_EQ(capture.state(), State::idle);
        EXPECT_FALSE(isCapturing());
    }

    TriggerCapture capture{launch(), keys, std::nullopt};
};

TEST_F(Capture, TakesWhateverComesFirstAndEndsTheOther) {
    start();
    std::exchange(engine->capture, nullptr)(ModifierKey::rightCommand); // ends its own before it tells
    expectEndedWith(rightCommand);
    start();
    keys->press(space, {ModifierKey::leftShift}, true);
    EXPECT_EQ(capture.state(), State::capturing) << "a key that was held before repeats";
    keys->press(space, {ModifierKey::leftShift});
    expectEndedWith(leftShiftSpace);
    const Trigger shiftEscape = trigger::Shortcut{{escape, {ModifierKey::leftShift}}};
    start();
    keys->press(escape, {ModifierKey::leftShift});
    expectEndedWith(shiftEscape);
    start();
    keys->press(escape); // alone it leaves the trigger as it was
    expectEndedWith(shiftEscape);
}

TEST_F(Capture, NeedsARunningEngineAndSaysSoUntilTheNextTry) {
    engine->current = engine_state::Degraded{DegradedReason::tapDisabled};
    capture.start();
    EXPECT_EQ(capture.state(), State::unavailable);
    EXPECT_FALSE(isCapturing());
    engine->current = engine_state::Running{};
    start();
    engine->current = engine_state::Stopped{};
    capture.start();
    EXPECT_FALSE(isCapturing()) << "nothing is left of the capture that this press replaced";
}

TEST_F(Capture, TimesOutButNeverByTheTimerOfAnEarlierOne) {
    capture.setTimeout(std::chrono::milliseconds(0));
    start();
    capture.setTimeout(std::chrono::hours(1));
    start();
    EXPECT_TRUE(staysFalse([&] { return capture.state() != State::capturing; }));
    capture.setTimeout(std::chrono::milliseconds(0));
    start();
    ASSERT_TRUE(runLoopUntil([&] { return capture.state() == State::timedOut; }));
    EXPECT_FALSE(isCapturing() || capture.trigger());
}

} // namespace
} // namespace hopsel::test
