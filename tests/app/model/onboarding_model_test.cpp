// The steps of the first run over the application model.
#include "support/fakes/model_rig.h"
#include "ui/onboarding/onboarding_model.h"
#include "ui/onboarding/source_suggester.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hopsel {
namespace {

using namespace fakes;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(SourceSuggester, pairsAnotherLanguageWithEnglish) {
    const InputSourceInfo us{"us", "U.S.", "", {"en-US"}, true};
    const InputSourceInfo plain{"plain", "Plain", "", {}, true};
    const InputSourceInfo fixed{"fixed", "Fixed", "", {"ja"}, false};
    const std::tuple<std::vector<InputSourceInfo>, std::optional<std::string>, std::optional<std::string>>
        cases[] = {{{korean, english}, "hangul", "abc"}, {{fixed, english, us, plain}, "plain", "abc"},
                   {{english, us}, "abc", "us"},         {{korean, plain}, "hangul", "plain"},
                   {{english}, "abc", std::nullopt},     {{fixed}, std::nullopt, std::nullopt}};
    for (const auto& [sources, a, b] : cases)
        EXPECT_EQ(source_suggester::suggest(sources), (source_suggester::Suggestion{a, b}));
}

class Onboarding : public testing::Test, protected ModelRig {
  protected:
    void SetUp() override {
        preferences->enabled = false;
        launch();
        onboarding = std::make_unique<OnboardingModel>(*model);
    }
    void advanceTo(OnboardingStep step) const {
        while (onboarding->step() != step) ASSERT_TRUE(onboarding->next());
    }
    std::unique_ptr<OnboardingModel> onboarding;
};

TEST_F(Onboarding, addsOneRuleSwitchesOnAndFinishesAfterASwitch) {
    EXPECT_EQ(onboarding->trigger(), ModifierKey::rightCommand);
    EXPECT_EQ(onboarding->sourceAID(), "hangul");
    engine->stateAfterStart = engine_state::Degraded{DegradedReason::permissionMissing};
    advanceTo(OnboardingStep::permission);
    EXPECT_THAT(calls, ElementsAre("engine apply 1", "engine start"));
    EXPECT_TRUE(preferences->enabled);
    EXPECT_FALSE(onboarding->next()) << "no permission yet";
    onboarding->requestPermission();
    EXPECT_EQ(calls.back(), "open input monitoring");
    emitEvent(engine_event::StateChanged{engine_state::Running{}});
    emitEvent(engine_event::Switched{"r", "abc", "hangul", true, 1});
    EXPECT_TRUE(onboarding->next());
    EXPECT_EQ(onboarding->stepNumber(), 4);
    EXPECT_FALSE(onboarding->next()) << "the switch came before this step";
    emitEvent(engine_event::Switched{"r", "hangul", "abc", false, 1});
    EXPECT_FALSE(onboarding->canAdvance()) << "not verified";
    emitEvent(engine_event::Switched{"r", "hangul", "abc", true, 1});
    EXPECT_FALSE(model->onboardingCompleted());
    EXPECT_TRUE(onboarding->next());
    EXPECT_TRUE(model->onboardingCompleted() && preferences->completed);
    EXPECT_EQ(model->rules().size(), 1U);
}

TEST_F(Onboarding, takesItsRuleBackWithTheStep) {
    onboarding->back();
    EXPECT_EQ(onboarding->step(), OnboardingStep::key);
    advanceTo(OnboardingStep::permission);
    onboarding->back();
    EXPECT_THAT(model->rules(), IsEmpty());
    onboarding->setSourceAID("abc");
    EXPECT_THAT(onboarding->issues(), ElementsAre(RuleIssue(rule_issue::SameSource{})));
    EXPECT_FALSE(onboarding->next());
    onboarding->setSourceAID("palette");
    EXPECT_FALSE(onboarding->canAdvance()) << "not selectable";
    onboarding->setSourceAID("hangul");
    onboarding->back();
    onboarding->setTrigger(std::nullopt);
    EXPECT_FALSE(onboarding->next());
    onboarding->setTrigger(ModifierKey::rightControl);
    advanceTo(OnboardingStep::test);
    ASSERT_EQ(model->rules().size(), 1U);
    EXPECT_EQ(model->rules()[0].trigger, Trigger(trigger::ModifierTap{ModifierKey::rightControl}));
    onboarding->back();
    onboarding->back();
    EXPECT_THAT(model->rules(), IsEmpty());
    onboarding->skip();
    EXPECT_TRUE(preferences->completed);
}

TEST_F(Onboarding, staysWhereTheRuleCannotBeAdded) {
    model->addRule(trigger::ModifierTap{ModifierKey::rightCommand}, english, korean);
    advanceTo(OnboardingStep::sources);
    EXPECT_EQ(onboarding->issues().size(), 1U);
    EXPECT_FALSE(onboarding->next());
    onboarding->setTrigger(ModifierKey::rightOption);
    std::filesystem::remove(file);
    std::filesystem::create_directories(file / "in the way");
    EXPECT_TRUE(onboarding->canAdvance());
    EXPECT_FALSE(onboarding->next()) << "it could not be written";
    EXPECT_EQ(onboarding->step(), OnboardingStep::sources);
    EXPECT_EQ(model->rules().size(), 1U);
}

} // namespace
} // namespace hopsel
