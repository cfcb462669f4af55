// The list of rules: what its rows show and change.
#include "rules_rig.h"
#include "support/qt_waiting.h"
#include "ui/settings/rules/rules_pane.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QPushButton>
#include <QTest>
#include <filesystem>
#include <gmock/gmock.h>

namespace hopsel::test {
namespace {

using fakes::korean;
using l10n::Key;

class Pane : public testing::Test, protected RulesRig {
  protected:
    Pane() { l10n::setLanguage(L10nLanguage::en); }

    void show() {
        window = std::make_unique<QWidget>();
        auto* column = new QVBoxLayout(window.get());
        pane = new RulesPane(*model, keys);
        column->addWidget(pane);
        window->resize(600, 500);
        window->show();
    }
    /// Everything that was announced so far has been shown.
    static void settle() { QCoreApplication::processEvents(); }
    QCheckBox* toggle(int row) const { return find<QCheckBox>(*pane, {}, row); }
    QComboBox* sourceA(int row) const { return find<QComboBox>(*pane, inEnglish(Key::addRuleSourceA), row); }
    QComboBox* sourceB(int row) const { return find<QComboBox>(*pane, inEnglish(Key::addRuleSourceB), row); }
    QPushButton* remove(int row) const { return find<QPushButton>(*pane, inEnglish(Key::ruleDelete), row); }
    QPushButton* add() const { return find<QPushButton>(*pane, inEnglish(Key::rulesAdd)); }
    const action::Toggle& stored(std::size_t rule) const {
        return std::get<action::Toggle>(model->rules()[rule].action);
    }

    std::unique_ptr<QWidget> window;
    RulesPane* pane = nullptr;
};

TEST_F(Pane, FollowsTheRulesAndTheEngine) {
    show();
    EXPECT_TRUE(says(*pane, Key::rulesEmpty));
    addRule(leftShiftSpace);
    settle();
    EXPECT_TRUE(says(*pane, "Left ⇧ + Space") && !says(*pane, Key::rulesEmpty));
    systemKey = std::get<trigger::Shortcut>(leftShiftSpace).key;
    emitEvent(engine_event::ShortcutStatusChanged{ShortcutStatus::unavailable});
    settle();
    EXPECT_TRUE(says(*pane, Key::ruleNeedsAccessibility) && !says(*pane, Key::ruleSystemConflict));
    toggle(0)->click();
    settle();
    EXPECT_FALSE(model->rules()[0].enabled);
    EXPECT_TRUE(says(*pane, Key::ruleSystemConflict)) << "what is off needs no permission";
}

TEST_F(Pane, GoesBackToWhatIsStoredWhenAChangeIsRefused) {
    addRule(rightCommand);
    show();
    choose(*sourceA(0), "ABC");
    EXPECT_EQ(sourceA(0)->currentText(), "Korean") << "both sides would be the same";
    std::filesystem::remove_all(file);
    std::filesystem::create_directories(file / "in the way");
    toggle(0)->click();
    EXPECT_TRUE(toggle(0)->isChecked());
    remove(0)->click();
    settle();
    EXPECT_NE(toggle(0), nullptr);
}

TEST_F(Pane, ChangesOneSideAndKeepsTheOtherEvenIfItIsGone) {
    directory->sources = {korean, fakes::english, {"french", "French", "layout", {"fr"}, true}};
    model->sourcesChanged();
    model->addRule(rightCommand, korean, {"gone", "Away", "", {}, true});
    show();
    EXPECT_TRUE(says(*pane, Key::ruleBroken));
    EXPECT_EQ(sourceB(0)->currentIndex(), -1);
    EXPECT_EQ(sourceB(0)->placeholderText(), "Away");
    choose(*sourceA(0), "French");
    EXPECT_EQ(stored(0).sourceA.sourceId, "french");
    EXPECT_EQ(stored(0).sourceB, (InputSourceRef{"gone", "Away"}));
    settle();
    choose(*sourceB(0), "ABC");
    EXPECT_EQ(stored(0).sourceA.sourceId + stored(0).sourceB.sourceId, "frenchabc");
    settle();
    EXPECT_FALSE(says(*pane, Key::ruleBroken));
}

TEST_F(Pane, KeepsTheFocusWhereTheUserIs) {
    addRule(rightCommand);
    addRule(leftShiftSpace);
    addRule(trigger::ModifierTap{ModifierKey::rightOption});
    show();
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    QComboBox* const picker = sourceA(2);
    picker->setFocus();
    picker->showPopup();
    const QModelIndex choice = picker->model()->index(1, 0);
    picker->view()->setCurrentIndex(choice);
    emitEvent(engine_event::StateChanged{engine_state::Running{}});
    model->removeRule(model->rules()[0].id);
    addRule(trigger::ModifierTap{ModifierKey::leftControl});
    settle();
    EXPECT_TRUE(picker->isVisible() && picker->view()->isVisible() && window->focusWidget() == picker);
    EXPECT_EQ(picker->view()->currentIndex(), choice) << "the list was not filled afresh";
    picker->hidePopup();

    for (const int row : {1, 1, 0}) { // to the next one, the one before, none
        remove(row)->setFocus();
        remove(row)->click();
        settle();
        QWidget* const last =
            model->rules().empty() ? add() : remove(static_cast<int>(model->rules().size()) - 1);
        EXPECT_EQ(window->focusWidget(), last);
    }
}

} // namespace
} // namespace hopsel::test
