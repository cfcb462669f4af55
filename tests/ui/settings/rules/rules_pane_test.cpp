// The list of rules: what its rows show and change.
#include "ui/settings/settings_rig.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <gmock/gmock.h>

namespace hopsel::test {
namespace {

using fakes::korean;
using l10n::Key;

class Pane : public testing::Test, protected SettingsRig {
  protected:
    Pane() { launch(); }

    QCheckBox* toggle() const { return find<QCheckBox>(QString()); }
    QComboBox* sourceA(int row = 0) const { return find<QComboBox>(Key::addRuleSourceA, row); }
    QComboBox* sourceB() const { return find<QComboBox>(Key::addRuleSourceB); }
    QAbstractButton* remove(int row) const { return find(Key::ruleDelete, row); }
    const action::Toggle& stored() const { return std::get<action::Toggle>(model->rules()[0].action); }
};

TEST_F(Pane, FollowsTheRulesAndTheEngine) {
    open(SettingsPane::rules);
    EXPECT_TRUE(says(Key::rulesEmpty));
    addRule(leftShiftSpace);
    settle();
    EXPECT_TRUE(find("Left ⇧ + Space, Change") && !says(Key::rulesEmpty));
    systemKey = std::get<trigger::Shortcut>(leftShiftSpace).key;
    emitEvent(engine_event::ShortcutStatusChanged{ShortcutStatus::unavailable});
    settle();
    EXPECT_TRUE(says(Key::ruleNeedsAccessibility) && !says(Key::ruleSystemConflict));
    click(toggle());
    EXPECT_FALSE(model->rules()[0].enabled);
    EXPECT_TRUE(says(Key::ruleSystemConflict)) << "what is off needs no permission";
    systemKey = {}; // changed in the desktop's settings, which announce nothing
    EXPECT_TRUE(runLoopUntil([this] { return !says(Key::ruleSystemConflict); }));
}

TEST_F(Pane, NamesTheCombinationThatAnotherProgramHoldsAndOffersTwoWaysOut) {
    const ShortcutKey print{105, {}};
    addRule(leftShiftSpace);
    addRule(trigger::Shortcut{print});
    engine->status = ShortcutStatus::running;
    engine->taken = {print};
    engine->onTaken();
    open(SettingsPane::rules);
    EXPECT_TRUE(says("⚠ F13 is taken by another program"));
    EXPECT_FALSE(model->warning(leftShiftSpace, true)) << "the other one works";
    EXPECT_EQ(model->warning(trigger::Shortcut{print}, true), RuleWarning::needsAccessibility);
    EXPECT_EQ(model->menuState().takenCombinations, std::vector<std::string>{"F13"});
    EXPECT_EQ(model->statusLine(), StatusLine::accessibilityMissing);
    click(Key::actionOpenAccessibility);
    EXPECT_EQ(calls.back(), "open accessibility");

    click(find("Choose another key"));
    click(find(Key::addRuleKey));
    keys->press(96, {ModifierKey::leftShift});
    click(find("Change"));
    ASSERT_EQ(model->rules().size(), 2U);
    EXPECT_EQ(model->rules()[1].trigger, Trigger(trigger::Shortcut{{96, {ModifierKey::leftShift}}}));
    engine->taken.clear();
    engine->onTaken();
    settle();
    EXPECT_FALSE(says("⚠ ") || model->statusLine() != StatusLine::ok);
}

TEST_F(Pane, MarksTheRulesThatNeedMoreThanCombinations) {
    addRule(leftShiftSpace);
    addRule(rightCommand);
    open(SettingsPane::rules);
    EXPECT_FALSE(says("Needs the key helper"));
    engine->hears = false;
    emitEvent(engine_event::StateChanged{engine_state::Running{}});
    settle();
    EXPECT_TRUE(says("Needs the key helper"));
    model->setRuleEnabled(model->rules()[1].id, false);
    settle();
    EXPECT_FALSE(says("Needs the key helper"));
}

TEST_F(Pane, GoesBackToWhatIsStoredWhenAChangeIsRefused) {
    addRule(rightCommand);
    open(SettingsPane::rules);
    choose(sourceA(), "ABC");
    EXPECT_EQ(sourceA()->currentText(), "Korean") << "both sides would be the same";
    EXPECT_FALSE(find(Key::saveAgain)) << "that was a matter of the rule";
    blockFile();
    click(toggle());
    EXPECT_TRUE(toggle()->isChecked());
    EXPECT_TRUE(says(Key::saveFailed));
    click(remove(0));
    EXPECT_NE(toggle(), nullptr);
    std::filesystem::remove_all(file);
    click(Key::saveAgain);
    EXPECT_TRUE(model->rules().empty() && !says(Key::saveFailed));
}

TEST_F(Pane, SaysOnceThatTheFileWasChangedOutside) {
    open(SettingsPane::rules);
    addStoredRule();
    model->settingsFileChanged();
    settle();
    EXPECT_TRUE(says(Key::changedOutside) && toggle() && !find(Key::saveAgain));
    controller->show(SettingsPane::general);
    open(SettingsPane::rules);
    EXPECT_FALSE(says(Key::changedOutside));
}

TEST_F(Pane, ChangesOneSideAndKeepsTheOtherEvenIfItIsGone) {
    directory->sources.push_back({"french", "French", "layout", {"fr"}, true});
    model->sourcesChanged();
    model->addRule(rightCommand, korean, {"gone", "Away", "", {}, true});
    open(SettingsPane::rules);
    EXPECT_TRUE(says(Key::ruleBroken));
    EXPECT_EQ(sourceB()->currentIndex(), -1);
    EXPECT_EQ(sourceB()->placeholderText(), "Away");
    choose(sourceA(), "French");
    EXPECT_EQ(stored().sourceA.sourceId, "french");
    EXPECT_EQ(stored().sourceB, (InputSourceRef{"gone", "Away"}));
    choose(sourceB(), "ABC");
    EXPECT_EQ(stored().sourceA.sourceId + stored().sourceB.sourceId, "frenchabc");
    EXPECT_FALSE(says(Key::ruleBroken));
}

TEST_F(Pane, SaysThatASourceBeginsInLatinAndWhatToDo) {
    addRule(rightCommand);
    open(SettingsPane::rules);
    const QString words = "Types Latin letters first";
    EXPECT_FALSE(says(words));
    for (const auto& [limit, advice] : {std::pair{SourceLimit::startsInLatin, "input method's own settings"},
                                        std::pair{SourceLimit::startsInLatinByFile, "active_on_launch"}}) {
        directory->sources[1].limit = limit;
        model->sourcesChanged();
        settle();
        ASSERT_TRUE(says(words));
        for (const QLabel* label : visible<QLabel>())
            if (label->text() == words) {
                EXPECT_TRUE(label->accessibleDescription().contains(advice)) << advice;
                EXPECT_TRUE(label->accessibleDescription().startsWith("ABC: ")) << "which of the two";
            }
    }
}

TEST_F(Pane, OffersToHaveASourceBeginInItsOwnScriptAndTheWayBack) {
    addRule(rightCommand);
    const auto begins = [&](SourceLimit limit) {
        directory->sources[1].limit = limit;
        model->sourcesChanged();
        settle();
    };
    open(SettingsPane::rules);
    begins(SourceLimit::startsInLatin);
    const QString offer = "Have ABC start in its own script", back = "Have ABC start in Latin letters again";
    EXPECT_EQ(find(offer), nullptr) << "nobody can";
    begins(SourceLimit::none);
    directory->settableStart = "abc";
    begins(SourceLimit::startsInLatin);
    click(find(offer));
    EXPECT_THAT(calls, testing::Contains("own script abc"));
    begins(SourceLimit::none);
    click(find(back));
    EXPECT_THAT(calls, testing::Contains("as before abc"));
    settle();
    EXPECT_EQ(find(back), nullptr);
}

TEST_F(Pane, KeepsTheFocusWhereTheUserIs) {
    addRule(rightCommand);
    addRule(leftShiftSpace);
    addRule(trigger::ModifierTap{ModifierKey::rightOption});
    open(SettingsPane::rules);
    activate();
    QComboBox* const picker = sourceA(2);
    picker->setFocus();
    picker->showPopup();
    const QModelIndex choice = picker->model()->index(1, 0);
    picker->view()->setCurrentIndex(choice);
    emitEvent(engine_event::StateChanged{engine_state::Running{}});
    model->removeRule(model->rules()[0].id);
    addRule(trigger::ModifierTap{ModifierKey::leftControl});
    settle();
    EXPECT_TRUE(picker->isVisible() && picker->view()->isVisible() && window()->focusWidget() == picker);
    EXPECT_EQ(picker->view()->currentIndex(), choice) << "the list was not filled afresh";
    picker->hidePopup();

    for (const int row : {1, 1, 0}) { // to the next one, the one before, none
        remove(row)->setFocus();
        type(Qt::Key_Space);
        QWidget* const last = model->rules().empty() ? find(Key::rulesAdd)
                                                     : remove(static_cast<int>(model->rules().size()) - 1);
        EXPECT_EQ(window()->focusWidget(), last);
    }
}

} // namespace
} // namespace hopsel::test
