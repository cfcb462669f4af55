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
        window = std::make_unique<QWidget>();
        auto* column = new QVBoxLayout(window.get());
        before = new QPushButton("before");
        pane = new RulesPane(*model, keys);
        column->addWidget(before);
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
    QPushButton* before = nullptr;
    RulesPane* pane = nullptr;
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

    systemKey = std::get<trigger::Shortcut>(leftShiftSpace).key;
    emitEvent(engine_event::ShortcutStatusChanged{ShortcutStatus::unavailable});
    settle();
    EXPECT_TRUE(says(*pane, Key::ruleNeedsAccessibility) && !says(*pane, Key::ruleSystemConflict));
    toggle(1)->click();
    settle();
    EXPECT_FALSE(model->rules()[1].enabled);
    EXPECT_TRUE(says(*pane, Key::ruleSystemConflict)) << "what is off needs no permission";
    model->setRuleEnabled(model->rules()[1].id, true);
    settle();
    EXPECT_TRUE(toggle(1)->isChecked());
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
    before->setFocus();
    std::vector<QWidget*> order{before};
    for (const int row : {0, 1, 2})
        order.insert(order.end(), {toggle(row), sourceA(row), sourceB(row), remove(row)});
    order.push_back(add());
    for (QWidget* expected : order) {
        EXPECT_EQ(window->focusWidget(), expected);
        QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
    }
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
    remove(2)->setFocus();
    QTest::keyClick(remove(2), Qt::Key_Tab);
    EXPECT_EQ(window->focusWidget(), add()) << "the new rule comes before";

    for (const int row : {1, 1, 0}) { // to the next one, the one before, none
        remove(row)->setFocus();
        remove(row)->click();
        settle();
        QWidget* const last =
            model->rules().empty() ? add() : remove(static_cast<int>(model->rules().size()) - 1);
        EXPECT_EQ(window->focusWidget(), last);
    }
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
        window.reset();
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
