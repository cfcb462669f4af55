// The list of rules: what its rows show and change.
#include "rules_rig.h"
#include "support/qt_waiting.h"
#include "ui/settings/rules/rules_pane.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QPushButton>
#include <QTest>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>

namespace hopsel::test {
namespace {

using fakes::korean;
using l10n::Key;

class Pane : public testing::Test, protected RulesRig {
  protected:
    Pane() { l10n::setLanguage(L10nLanguage::en); }

    void show() {
        pane = std::make_unique<RulesPane>(*model, keys);
        pane->resize(600, 500);
        pane->show();
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
    void blockFile() const {
        std::filesystem::remove_all(file);
        std::filesystem::create_directories(file / "in the way");
    }

    std::unique_ptr<RulesPane> pane;
};

TEST_F(Pane, ShowsTheRulesAndFollowsThem) {
    show();
    EXPECT_TRUE(says(*pane, Key::rulesEmpty));
    const QString note = QString::fromStdString(l10n::t(Key::rulesRemoteNote, {"Left ⌃ + Space"}));
    EXPECT_FALSE(says(*pane, note));
    addRule(rightCommand);
    addRule(leftShiftSpace);
    settle();
    EXPECT_FALSE(says(*pane, Key::rulesEmpty));
    EXPECT_TRUE(says(*pane, note) && says(*pane, "Right ⌘") && says(*pane, "Left ⇧ + Space"));
    EXPECT_EQ(toggle(1)->accessibleName(), "Left ⇧ + Space");
    EXPECT_EQ(sourceA(0)->currentText() + sourceB(0)->currentText(), "KoreanABC");

    toggle(0)->click();
    EXPECT_FALSE(model->rules()[0].enabled);
    model->setRuleEnabled(model->rules()[0].id, true);
    settle();
    EXPECT_TRUE(toggle(0)->isChecked());
}

TEST_F(Pane, GoesBackToWhatIsStoredWhenAChangeIsRefused) {
    addRule(rightCommand);
    show();
    choose(*sourceA(0), "ABC");
    EXPECT_EQ(sourceA(0)->currentText(), "Korean") << "both sides would be the same";
    blockFile();
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

TEST_F(Pane, WarnsOfShortcutsThatCannotWork) {
    addRule(trigger::Shortcut{systemKey});
    show();
    EXPECT_TRUE(says(*pane, Key::ruleSystemConflict));
    emitEvent(engine_event::ShortcutStatusChanged{ShortcutStatus::unavailable});
    settle();
    EXPECT_TRUE(says(*pane, Key::ruleNeedsAccessibility) && !says(*pane, Key::ruleSystemConflict));
    toggle(0)->click();
    settle();
    EXPECT_TRUE(says(*pane, Key::ruleSystemConflict)) << "what is off needs no permission";
}

TEST_F(Pane, KeepsTheFocusWhereTheUserIs) {
    addRule(rightCommand);
    addRule(leftShiftSpace);
    addRule(trigger::ModifierTap{ModifierKey::rightOption});
    show();
    pane->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(pane.get()));
    toggle(0)->setFocus();
    const std::vector<QWidget*> order{toggle(0),  sourceA(0), sourceB(0), remove(0), toggle(1),
                                      sourceA(1), sourceB(1), remove(1),  toggle(2), sourceA(2),
                                      sourceB(2), remove(2),  add()};
    for (QWidget* expected : order) {
        EXPECT_EQ(pane->focusWidget(), expected);
        QTest::keyClick(pane->focusWidget(), Qt::Key_Tab);
    }
    QComboBox* const picker = sourceA(2);
    picker->setFocus();
    picker->showPopup();
    emitEvent(engine_event::StateChanged{engine_state::Running{}});
    model->removeRule(model->rules()[0].id);
    addRule(trigger::ModifierTap{ModifierKey::leftControl});
    settle();
    EXPECT_TRUE(picker->isVisible() && picker->view()->isVisible() && pane->focusWidget() == picker);
    picker->hidePopup();

    remove(2)->setFocus();
    remove(2)->click();
    settle();
    EXPECT_EQ(pane->focusWidget(), remove(1)) << "the last one hands over to the one before it";
    remove(0)->setFocus();
    remove(0)->click();
    settle();
    EXPECT_EQ(pane->focusWidget(), remove(0));
    remove(0)->click();
    settle();
    EXPECT_EQ(pane->focusWidget(), add());
}

TEST_F(Pane, OnlyTellsOfAProblemWithTheFile) {
    const std::pair<std::string, Key> cases[] = {
        {"{", Key::storeCorrupt},
        {R"({"schemaVersion":7,"rules":[]})", Key::storeNewerVersion},
        {"", Key::storeCorrupt}, // cannot be read at all
    };
    for (const auto& [text, key] : cases) {
        std::filesystem::remove_all(file);
        if (text.empty())
            std::filesystem::create_directory(file);
        else
            std::ofstream(file) << text;
        pane.reset();
        launch();
        show();
        EXPECT_TRUE(says(*pane, key)) << text;
        EXPECT_FALSE(add()->isEnabled());
        add()->click();
        EXPECT_FALSE(pane->isShowingAddSheet());
    }
}

} // namespace
} // namespace hopsel::test
