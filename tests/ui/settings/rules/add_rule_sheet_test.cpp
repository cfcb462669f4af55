// The sheet that adds a rule: what it says, what it adds, and what ends it.
#include "ui/settings/settings_rig.h"

#include <gmock/gmock.h>

namespace hopsel::test {
namespace {

using l10n::Key;

class AddRuleSheet : public testing::Test, protected SettingsRig {
  protected:
    AddRuleSheet() {
        directory->sources.push_back({"french", "French", "layout", {"fr"}, true});
        open(SettingsPane::rules);
        activate();
        click(Key::rulesAdd);
    }

    QAbstractButton* add() const { return find(Key::addRuleAdd); }
    /// The sheet's, which come after those of the rows.
    QComboBox* source(Key key) const { return find<QComboBox>(key, static_cast<int>(model->rules().size())); }
    void capture(std::uint16_t keyCode, ModifierSet held) const {
        click(Key::addRuleKey);
        keys->press(keyCode, held);
    }
    void captureTap(ModifierKey key) const {
        click(Key::addRuleKey);
        std::exchange(engine->capture, nullptr)(key);
    }
};

TEST_F(AddRuleSheet, AddsWhatWasCapturedOrStaysAndSaysWhyItCannotBeStored) {
    EXPECT_EQ(source(Key::addRuleSourceA)->count(), 3) << "selectable sources only, and no empty entry";
    EXPECT_FALSE(add()->isEnabled());
    captureTap(ModifierKey::rightCommand);
    choose(source(Key::addRuleSourceB), "French");
    blockFile();
    click(add());
    ASSERT_TRUE(add());
    EXPECT_TRUE(says(Key::saveFailed));
    std::filesystem::remove_all(file);
    type(Qt::Key_Return);
    ASSERT_EQ(model->rules().size(), 1U);
    EXPECT_EQ(model->rules()[0].trigger, rightCommand);
    EXPECT_EQ(model->rules()[0].action, Action(action::Toggle{{"hangul", "Korean"}, {"french", "French"}}));
    EXPECT_FALSE(add());
}

TEST_F(AddRuleSheet, SaysWhatSpeaksAgainstTheRule) {
    addRule(rightCommand);
    model->setRuleEnabled(model->rules()[0].id, false); // reserves its trigger all the same
    captureTap(ModifierKey::rightCommand);
    EXPECT_TRUE(says(Key::issueDuplicate) && !add()->isEnabled());
    capture(0, {ModifierKey::leftShift});
    choose(source(Key::addRuleSourceB), "Korean");
    EXPECT_TRUE(says(Key::issueDisallowedShortcut) && says(Key::issueSameSource));
    EXPECT_FALSE(says(Key::issueDuplicate) || add()->isEnabled());
    captureTap(ModifierKey::leftOption);
    EXPECT_TRUE(says(Key::issueSameSource) && !add()->isEnabled());
    choose(source(Key::addRuleSourceB), "ABC");
    EXPECT_TRUE(add()->isEnabled());
    EXPECT_FALSE(says(Key::issueSameSource));

    directory->sources = {fakes::english};
    model->sourcesChanged();
    settle();
    EXPECT_FALSE(add()->isEnabled()) << "Korean is not offered any more";
    EXPECT_EQ(source(Key::addRuleSourceA)->currentIndex(), -1);
}

TEST_F(AddRuleSheet, AnswersAtOnceToWhatCannotBeOrHadBetterNotBeATrigger) {
    addRule(leftShiftSpace);
    click(Key::addRuleKey);
    keys->onUnusable(UnusableKey::capsLock);
    EXPECT_TRUE(says("Caps Lock cannot be a trigger key"));
    keys->onUnusable(UnusableKey::modifiersTogether);
    EXPECT_TRUE(says("Press one of these keys alone") && isCapturing());
    keys->press(8, {ModifierKey::leftControl});
    EXPECT_TRUE(says(Key::addRuleKeyHint) && says("Many programs use this combination") &&
                add()->isEnabled());
    capture(96, {ModifierKey::leftControl});
    EXPECT_FALSE(says("Many programs use this combination"));
    capture(49, {ModifierKey::leftShift});
    EXPECT_TRUE(says("This key is already used by another rule. (Left ⇧ + Space  Korean ⇄ ABC)"));
}

TEST_F(AddRuleSheet, OffersToTurnOnWhatTheCaptureNeeds) {
    EXPECT_FALSE(find(Key::addRuleTurnOn));
    model->setEngineEnabled(false);
    click(Key::addRuleKey);
    EXPECT_TRUE(says(Key::addRuleNeedsEngine) && !isCapturing());
    click(Key::addRuleTurnOn);
    EXPECT_TRUE(model->engineEnabled() && isCapturing());
    EXPECT_FALSE(find(Key::addRuleTurnOn) || says(Key::addRuleNeedsEngine));
}

TEST_F(AddRuleSheet, EndsTheCaptureWhenItsWindowGoes) {
    click(Key::addRuleKey);
    ASSERT_TRUE(isCapturing());
    window()->close();
    EXPECT_FALSE(isCapturing());
    open(SettingsPane::rules);
    click(Key::addRuleKey);
    const auto lateTap = engine->capture;
    const auto lateKey = keys->onKeyDown;
    controller.reset();
    EXPECT_FALSE(isCapturing());
    lateTap(ModifierKey::leftOption);
    lateKey({0, flagsOf({ModifierKey::leftControl}), false});
}

} // namespace
} // namespace hopsel::test
