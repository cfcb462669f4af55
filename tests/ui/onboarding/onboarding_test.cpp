// The window of the first run as its user meets it: what is shown, what can be pressed, where the keyboard
// is, and which closes end the first run.
#include "ui/onboarding/onboarding_window_controller.h"

#include "ui/window_rig.h"

#include <QLineEdit>
#include <gmock/gmock.h>
#include <utility>

namespace hopsel::test {
namespace {

using fakes::english;
using fakes::korean;
using l10n::Key;

class Onboarding : public testing::Test, protected WindowRig {
  protected:
    /// To the page where the key is tried.
    void goToTheEnd() {
        click(Key::onbNext);
        click(Key::onbNext);
    }
    /// What the engine tells of a key; with its other end it is a tap.
    void press(ModifierKey key, KeyVerdict verdict = KeyVerdict::passed) {
        engine->recorder->record(
            diagnostic_kind::Key{key_event_kind::ModifierDown{key}, {key}, KeyVerdict::passed}, 10);
        engine->recorder->record(diagnostic_kind::Key{key_event_kind::ModifierUp{key}, {}, verdict}, 10.1);
        settle();
    }
    void tell(const EngineEvent& event) {
        engine->recorder->record(diagnostic_kind::Engine{event}, 10.2);
        emitEvent(event);
        settle();
    }

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

TEST_F(Onboarding, GoesWithReturnAndArrowsAlone) {
    EXPECT_EQ(focused(), find("Right ⌘"));
    type(Qt::Key_Right);
    EXPECT_TRUE(find("Right ⌥")->isChecked());
    type(Qt::Key_Return);
    EXPECT_EQ(focused(), find<QComboBox>("Input source A"));
    type(Qt::Key_Return);
    EXPECT_TRUE(says("3 / 3")) << "no page about a permission that is there";
    EXPECT_EQ(focused(), find<QLineEdit>(Key::onbTestField)) << "where people type";
    while (focused() != find("Back")) type(Qt::Key_Tab);
    type(Qt::Key_Return);
    EXPECT_TRUE(says("2 / 3")) << "a button that has the keyboard is what Return presses";
    EXPECT_TRUE(model->rules().empty());
    emitEvent(engine_event::Switched{"r", "abc", "hangul", true, 1}); // before the step that waits for it
    type(Qt::Key_Enter);
    EXPECT_TRUE(says("3 / 3"));
    emitEvent(engine_event::Switched{"r", "hangul", "abc", false, 1}); // not verified
    type(Qt::Key_Space);
    type(Qt::Key_Return);
    EXPECT_TRUE(says("3 / 3")) << "nothing is to be pressed yet";
    emitEvent(engine_event::Switched{"r", "abc", "hangul", true, 1});
    settle();
    EXPECT_TRUE(says(Key::onbTestSuccess));
    type(Qt::Key_Return);
    EXPECT_EQ(window(), nullptr);
    EXPECT_TRUE(model->onboardingCompleted() && preferences->completed);
    ASSERT_EQ(model->rules().size(), 1U);
    EXPECT_EQ(model->rules()[0].trigger, Trigger(trigger::ModifierTap{ModifierKey::rightOption}));
}

TEST_F(Onboarding, SaysWhyTheSourcesWillNotDo) {
    click(Key::onbNext);
    auto* const a = find<QComboBox>("Input source A");
    EXPECT_EQ(a->currentText(), "Korean");
    EXPECT_EQ(a->count(), 2) << "those that can be selected";
    a->setFocus();
    type(Qt::Key_Down);
    EXPECT_TRUE(says("Both input sources are the same."));
    EXPECT_FALSE(find("Next")->isEnabled());
    type(Qt::Key_Return);
    EXPECT_TRUE(says("2 / 3"));
    type(Qt::Key_Up);
    EXPECT_FALSE(says("Both input sources are the same."));
    blockFile();
    click(Key::onbNext);
    EXPECT_TRUE(says(Key::saveFailed));
}

// An input framework tells its sources when the window has long been there.
TEST_F(Onboarding, SuggestsAgainAsSourcesComeAndGo) {
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
    ASSERT_EQ(model->rules().size(), 1U);
    click(Key::onbBack);
    EXPECT_TRUE(model->rules().empty()) << "it is not wanted yet";
    EXPECT_EQ(chosen(), "Hangul / English (US)") << "the rule of those that are gone is made anew";
}

TEST_F(Onboarding, WaitsForThePermissionAndGoesOnWhenItComes) {
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

TEST_F(Onboarding, SaysWhatCameOfEachPress) {
    const auto failed = [](std::int32_t code) {
        return engine_event::SwitchFailed{"r", "hangul", select_result::Failed{code}};
    };
    recorder->startRecording();
    goToTheEnd();
    press(ModifierKey::leftCommand);
    EXPECT_TRUE(says("Left ⌘ arrived. The key to press is Right ⌘."));
    EXPECT_EQ(recorder->entries().size(), 2U) << "diagnostics still hear of everything";
    type(Qt::Key_CapsLock);
    EXPECT_TRUE(says("CapsLock arrived"));
    press(ModifierKey::rightCommand, KeyVerdict::switchRequested);
    tell(failed(5));
    EXPECT_TRUE(says(Key::onbTestNoTextField));
    tell(failed(77));
    EXPECT_TRUE(says("The key arrived, but switching failed (code 77)"));
    tell(engine_event::RuleSkipped{"r", skip_reason::BrokenSource{{"hangul"}}});
    EXPECT_TRUE(says(Key::onbTestSourceGone));
    tell(engine_event::SwitchSuppressed{"r", SuppressReason::secureInput});
    EXPECT_TRUE(says(Key::onbTestPassword));
    tell(engine_event::Switched{"r", "abc", "hangul", false, 1});
    EXPECT_TRUE(says(Key::onbTestUnverified) && !says(Key::onbTestSuccess));
    tell(engine_event::Switched{"r", "abc", "hangul", true, 1});
    EXPECT_TRUE(says(Key::onbTestSuccess));
    click(Key::onbFinish);
    EXPECT_EQ(engine->recorder, recorder) << "nobody listens to the keys any more";
}

TEST_F(Onboarding, IsNoSuccessWhereThePairTypesLatin) {
    directory->sources[1].limit = SourceLimit::startsInLatin;
    model->sourcesChanged();
    click(Key::onbNext);
    const QString note = "ABC: Selecting it gives Latin letters first.";
    EXPECT_TRUE(says(note));
    click(Key::onbNext);
    EXPECT_FALSE(says(note)) << "nothing was tried yet";
    tell(engine_event::Switched{"r", "abc", "hangul", true, 1});
    EXPECT_TRUE(says(note) && !says(Key::onbTestSuccess));
    directory->sources[1].limit = SourceLimit::none;
    model->sourcesChanged();
    settle();
    EXPECT_TRUE(says(Key::onbTestSuccess));
}

TEST_F(Onboarding, OffersTheWayOutWhereThereIsOneSourceOnly) {
    directory->sources = {english};
    model->sourcesChanged();
    click(Key::onbNext);
    EXPECT_TRUE(says(Key::onbFewSources));
    calls.clear();
    click(Key::onbOpenSources);
    EXPECT_THAT(calls, testing::ElementsAre("open input sources"));
    directory->sources = {english, korean};
    model->sourcesChanged();
    settle();
    EXPECT_FALSE(says(Key::onbFewSources) || find(Key::onbOpenSources) != nullptr);
    EXPECT_TRUE(find(Key::onbNext)->isEnabled());
}

TEST_F(Onboarding, TakesTheKeyThatIsPressedAndEditsTheRuleThatHasIt) {
    model->addRule(trigger::ModifierTap{ModifierKey::leftControl}, english, korean);
    model->setRuleEnabled(model->rules()[0].id, false);
    controller->show();
    settle();
    EXPECT_TRUE(find("Your key: Left ⌃"));
    click(Key::onbNext);
    EXPECT_EQ(find<QComboBox>("Input source A")->currentText(), "ABC") << "the rule that is there";
    choose(find<QComboBox>("Input source A"), "Korean");
    choose(find<QComboBox>("Input source B"), "ABC");
    click(Key::onbNext);
    EXPECT_TRUE(says("3 / 3"));
    ASSERT_EQ(model->rules().size(), 1U);
    EXPECT_TRUE(model->rules()[0].enabled);
    EXPECT_EQ(std::get<action::Toggle>(model->rules()[0].action).sourceA.sourceId, "hangul");
    click(Key::onbBack);
    EXPECT_EQ(model->rules().size(), 1U) << "it was not made here";
    click(Key::onbBack);

    click(find("Your key: Left ⌃"));
    EXPECT_TRUE(find(Key::onbPressNow) && engine->isCapturing());
    std::exchange(engine->capture, nullptr)(ModifierKey::leftOption);
    settle();
    EXPECT_TRUE(find("Your key: Left ⌥"));
    click(find("Your key: Left ⌥"));
    click(find("Right ⌥"));
    EXPECT_FALSE(engine->isCapturing());
    click(Key::onbPressKey);
    click(Key::onbNext);
    EXPECT_FALSE(engine->isCapturing());
    click(Key::onbNext);
    ASSERT_EQ(model->rules().size(), 2U) << "the key is another, so is the rule";
    EXPECT_EQ(model->rules()[1].trigger, Trigger(trigger::ModifierTap{ModifierKey::rightOption}));
}

TEST_F(Onboarding, OffersTheStartAtLoginAndSaysWhereTheProgramIs) {
    goToTheEnd();
    EXPECT_TRUE(says(Key::onbWhereInPanel));
    model->setHasPanel(false);
    settle();
    EXPECT_TRUE(says(Key::onbWhereStartAgain));
    auto* const atLogin = find(Key::generalLaunchAtLogin);
    click(atLogin);
    EXPECT_EQ(loginItem->current, LoginItemStatus::enabled);
    loginItem->refuses = true;
    click(atLogin);
    EXPECT_TRUE(atLogin->isChecked()) << "as it is";
}

TEST_F(Onboarding, BeginsAnewWithoutCountingTheOldOneAsClosed) {
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
