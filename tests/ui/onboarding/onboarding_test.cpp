// The window of the first run as its user meets it: what is shown, what can be pressed, where the keyboard
// is, and which closes end the first run.
#include "ui/onboarding/onboarding_window_controller.h"

#include "ui/window_rig.h"

#include <gmock/gmock.h>

namespace hopsel::test {
namespace {

using l10n::Key;

class Onboarding : public testing::Test, protected WindowRig {
  protected:
    Onboarding() {
        controller->show();
        activate();
        settle();
    }
    QWidget* window() const override { return controller->window(); }
    QWidget* focused() const { return window()->focusWidget(); }

    std::unique_ptr<OnboardingWindowController> controller =
        std::make_unique<OnboardingWindowController>(launch());
};

TEST_F(Onboarding, goesWithReturnAndArrowsAlone) {
    EXPECT_EQ(focused(), find("Right ⌘"));
    type(Qt::Key_Right);
    EXPECT_TRUE(find("Right ⌥")->isChecked());
    type(Qt::Key_Return);
    EXPECT_EQ(focused(), find<QComboBox>("Input source A"));
    type(Qt::Key_Return);
    EXPECT_EQ(focused(), find("Next"));
    type(Qt::Key_Tab, Qt::ShiftModifier);
    EXPECT_EQ(focused(), find("Back"));
    type(Qt::Key_Return);
    EXPECT_TRUE(says("2 / 4")) << "a button that has the keyboard is what Return presses";
    EXPECT_TRUE(model->rules().empty());
    type(Qt::Key_Enter);
    emitEvent(engine_event::Switched{"r", "abc", "hangul", true, 1}); // before the step that waits for it
    type(Qt::Key_Return);
    EXPECT_TRUE(says("4 / 4"));
    emitEvent(engine_event::Switched{"r", "hangul", "abc", false, 1}); // not verified
    type(Qt::Key_Space);
    type(Qt::Key_Return);
    EXPECT_TRUE(says("4 / 4")) << "nothing is to be pressed yet";
    emitEvent(engine_event::Switched{"r", "abc", "hangul", true, 1});
    settle();
    EXPECT_EQ(focused(), find("Done"));
    type(Qt::Key_Return);
    EXPECT_EQ(window(), nullptr);
    EXPECT_TRUE(model->onboardingCompleted() && preferences->completed);
    ASSERT_EQ(model->rules().size(), 1U);
    EXPECT_EQ(model->rules()[0].trigger, Trigger(trigger::ModifierTap{ModifierKey::rightOption}));
}

TEST_F(Onboarding, saysWhyTheSourcesWillNotDo) {
    click(Key::onbNext);
    auto* const a = find<QComboBox>("Input source A");
    EXPECT_EQ(a->currentText(), "Korean");
    EXPECT_EQ(a->count(), 2) << "those that can be selected";
    a->setFocus();
    type(Qt::Key_Down);
    EXPECT_TRUE(says("Both input sources are the same."));
    EXPECT_FALSE(find("Next")->isEnabled());
    type(Qt::Key_Return);
    EXPECT_TRUE(says("2 / 4"));
    type(Qt::Key_Up);
    EXPECT_FALSE(says("Both input sources are the same."));
    blockFile();
    click(Key::onbNext);
    EXPECT_TRUE(says("writeFailed("));
}

// An input framework tells its sources when the window has long been there.
TEST_F(Onboarding, suggestsAgainAsSourcesComeAndGo) {
    const InputSourceInfo hangul{"ibus:hangul", "Hangul", "", {"ko"}, true};
    const InputSourceInfo us{"ibus:us", "English (US)", "", {"en"}, true};
    const InputSourceInfo greek{"ibus:gr", "Greek", "", {"el"}, true};
    const auto offer = [this](std::vector<InputSourceInfo> sources, bool isAsked = false) {
        directory->sources = std::move(sources);
        directory->isAsked = isAsked;
        model->sourcesChanged();
        settle();
    };
    const auto chosen = [this] {
        return find<QComboBox>("Input source A")->currentText() + " / " +
               find<QComboBox>("Input source B")->currentText();
    };
    offer({korean, english}, true);
    click(Key::onbNext);
    EXPECT_TRUE(says(Key::onbAskingSources));
    EXPECT_FALSE(find(Key::onbNext)->isEnabled()) << "these may be gone in a moment";
    offer({us, hangul, greek});
    EXPECT_FALSE(says(Key::onbAskingSources));
    EXPECT_EQ(chosen(), "Hangul / English (US)");
    EXPECT_TRUE(find(Key::onbNext)->isEnabled());

    choose(find<QComboBox>("Input source A"), "Greek");
    offer({greek, hangul, us});
    EXPECT_EQ(chosen(), "Greek / English (US)") << "what the user picked stays";
    offer({greek, hangul});
    EXPECT_EQ(chosen(), "Greek / Hangul") << "and gets a partner when its own disappears";
    offer({hangul, us});
    EXPECT_EQ(chosen(), "Hangul / English (US)");
    offer({});
    EXPECT_EQ(chosen(), " / ");
    EXPECT_FALSE(find(Key::onbNext)->isEnabled());
    offer({korean, english});
    click(Key::onbNext);
    offer({hangul, us});
    EXPECT_EQ(model->rules()[0].id.empty(), false);
    click(Key::onbBack);
    EXPECT_EQ(chosen(), "Hangul / English (US)") << "the rule of those that are gone is made anew";
}

TEST_F(Onboarding, waitsForThePermissionAndGoesOnWhenItComes) {
    emitEvent(engine_event::StateChanged{engine_state::Degraded{DegradedReason::permissionMissing}});
    engine->current = engine_state::Degraded{DegradedReason::permissionMissing};
    click(Key::onbNext);
    click(Key::onbNext);
    EXPECT_TRUE(says("Waiting for permission…"));
    EXPECT_EQ(focused(), find("Request permission"));
    EXPECT_FALSE(find("Next")->isEnabled());
    calls.clear();
    type(Qt::Key_Return);
    EXPECT_THAT(calls, testing::ElementsAre("request input monitoring", "open input monitoring"));
    emitEvent(engine_event::StateChanged{engine_state::Running{}});
    settle();
    EXPECT_TRUE(says("✓ Permission granted") && !says("Waiting for permission…"));
    EXPECT_EQ(focused(), find("Next"));
    click(Key::onbSkip);
    EXPECT_EQ(window(), nullptr);
    EXPECT_TRUE(preferences->completed);
    EXPECT_EQ(model->rules().size(), 1U) << "the rule stays";
}

TEST_F(Onboarding, beginsAnewWithoutCountingTheOldOneAsClosed) {
    const QPointer<QWidget> old = window();
    click(Key::onbNext);
    model->onRequestOnboarding = [this] { controller->show(); };
    // From the loop, as always: only then are things deleted later.
    QMetaObject::invokeMethod(model.get(), [this] { model->runOnboardingAgain(); }, Qt::QueuedConnection);
    EXPECT_TRUE(runLoopUntil([&] { return old.isNull(); }));
    EXPECT_FALSE(model->onboardingCompleted() || preferences->completed);
    EXPECT_FALSE(find("Back")) << "from the first step";
    EXPECT_TRUE(window()->isVisible());
    controller.reset();
    EXPECT_FALSE(model->onboardingCompleted()) << "the program's end is no close by the user";
    controller = std::make_unique<OnboardingWindowController>(*model);
    controller->show();
    window()->close();
    EXPECT_TRUE(model->onboardingCompleted() && preferences->completed);
}

} // namespace
} // namespace hopsel::test
