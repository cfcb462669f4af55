// Pressing the trigger: what ends a capture, and with what; and where the parts of a row go.
#include "rules_rig.h"
#include "support/qt_waiting.h"
#include "ui/settings/rules/rule_row_layout.h"
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

TEST(RuleRowLayout, KeepsEveryPartInsideAndApartAtEveryWidth) {
    using namespace rule_row_layout;
    Parts parts;
    parts.toggle = {38, 38, 38, 22};
    parts.trigger = {60, 330, 330, 24};
    parts.sourceA = parts.sourceB = {90, 110, 250, 26};
    parts.notes = {{60, 150, 150, 16}, {60, 90, 90, 16}};
    parts.remove = {50, 50, 50, 24};
    for (int width = 150; width < 1300; ++width) {
        const Places at = arrange(parts, width, 10);
        std::vector<QRect> all{at.toggle, at.trigger, at.sourceA, at.sourceB, at.remove};
        all.insert(all.end(), at.notes.begin(), at.notes.end());
        for (std::size_t i = 0; i < all.size(); ++i) {
            ASSERT_TRUE(QRect(0, 0, width, at.height).contains(all[i])) << width << ", part " << i;
            for (std::size_t j = 0; j < i; ++j) ASSERT_FALSE(all[i].intersects(all[j])) << width;
        }
        ASSERT_LE(at.height, arrange(parts, width - 1, 10).height) << "more room never makes it higher";
    }
    EXPECT_EQ(arrange(parts, 1300, 10).height, 26) << "on one line in the end";
}

} // namespace
} // namespace hopsel::test
