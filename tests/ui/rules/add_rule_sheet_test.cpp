// The sheet that adds a rule: what it says, what it adds, and how it lies over its window.
#include "rules_rig.h"
#include "support/qt_waiting.h"
#include "ui/settings/rules/rules_pane.h"

#include <QAbstractItemView>
#include <QHBoxLayout>
#include <QPushButton>
#include <QTest>
#include <filesystem>
#include <gmock/gmock.h>

namespace hopsel::test {
namespace {

using l10n::Key;

class AddRuleSheet : public testing::Test, protected RulesRig {
  protected:
    AddRuleSheet() {
        l10n::setLanguage(L10nLanguage::en);
        directory->sources.push_back({"french", "French", "layout", {"fr"}, true});
        model->sourcesChanged();
        window.resize(780, 520);
        auto* row = new QHBoxLayout(&window);
        outside = new QPushButton("outside");
        pane = new RulesPane(*model, keys);
        row->addWidget(outside);
        row->addWidget(pane);
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        open();
    }

    void open() { find<QPushButton>(window, inEnglish(Key::rulesAdd))->click(); }
    QPushButton* captureButton() const { return find<QPushButton>(window, inEnglish(Key::addRuleKey)); }
    QPushButton* add() const { return find<QPushButton>(window, inEnglish(Key::addRuleAdd)); }
    QPushButton* cancel() const { return find<QPushButton>(window, inEnglish(Key::addRuleCancel)); }
    QComboBox* source(Key key) const { return find<QComboBox>(window, inEnglish(key)); }
    void capture(std::uint16_t keyCode, ModifierSet held) const {
        captureButton()->click();
        keys->press(keyCode, held);
    }
    void captureTap(ModifierKey key) const {
        captureButton()->click();
        std::exchange(engine->capture, nullptr)(key);
    }
    void press(Qt::Key key) { QTest::keyClick(window.focusWidget(), key); }

    QWidget window;
    QPushButton* outside = nullptr;
    RulesPane* pane = nullptr;
};

TEST_F(AddRuleSheet, AddsTheCapturedTriggerWithTheSuggestedSources) {
    EXPECT_EQ(source(Key::addRuleSourceA)->currentText(), "Korean");
    EXPECT_EQ(source(Key::addRuleSourceB)->currentText(), "ABC");
    EXPECT_EQ(source(Key::addRuleSourceA)->count(), 3) << "selectable sources only, and no empty entry";
    EXPECT_FALSE(add()->isEnabled());
    captureButton()->click();
    EXPECT_EQ(captureButton()->text(), inEnglish(Key::addRuleCapturing));
    std::exchange(engine->capture, nullptr)(ModifierKey::rightCommand);
    EXPECT_EQ(captureButton()->text(), "Right ⌘");
    choose(*source(Key::addRuleSourceB), "French");
    ASSERT_TRUE(add()->isEnabled());
    add()->click();
    ASSERT_EQ(model->rules().size(), 1U);
    EXPECT_EQ(model->rules()[0].trigger, rightCommand);
    EXPECT_EQ(model->rules()[0].action, Action(action::Toggle{{"hangul", "Korean"}, {"french", "French"}}));
    EXPECT_FALSE(pane->isShowingAddSheet());
    EXPECT_EQ(window.focusWidget(), find<QPushButton>(window, inEnglish(Key::rulesAdd)));
}

TEST_F(AddRuleSheet, SaysWhatSpeaksAgainstTheRule) {
    addRule(rightCommand);
    captureTap(ModifierKey::rightCommand);
    EXPECT_TRUE(says(window, Key::issueDuplicate) && !add()->isEnabled());
    capture(0, {ModifierKey::leftShift});
    choose(*source(Key::addRuleSourceB), "Korean");
    EXPECT_TRUE(says(window, Key::issueDisallowedShortcut) && says(window, Key::issueSameSource));
    EXPECT_FALSE(says(window, Key::issueDuplicate) || add()->isEnabled());
    captureTap(ModifierKey::leftOption);
    EXPECT_TRUE(says(window, Key::issueSameSource) && !add()->isEnabled());
    choose(*source(Key::addRuleSourceB), "ABC");
    EXPECT_TRUE(add()->isEnabled());
    EXPECT_FALSE(says(window, Key::issueSameSource));

    directory->sources = {fakes::english};
    model->sourcesChanged();
    ASSERT_TRUE(runLoopUntil([&] { return !add()->isEnabled(); })) << "Korean is not offered any more";
    EXPECT_EQ(source(Key::addRuleSourceA)->currentIndex(), -1);
}

TEST_F(AddRuleSheet, WarnsOfShortcutsWithoutRefusingThem) {
    settings->accessibility = false;
    capture(49, {ModifierKey::leftControl});
    EXPECT_TRUE(says(window, Key::addRuleAccessibilityNote) &&
                says(window, Key::issueSystemShortcutConflict));
    EXPECT_TRUE(add()->isEnabled());
    QComboBox* const picker = source(Key::addRuleSourceA);
    picker->showPopup();
    const QModelIndex choice = picker->model()->index(2, 0);
    picker->view()->setCurrentIndex(choice);
    emitEvent(engine_event::ShortcutStatusChanged{ShortcutStatus::unavailable});
    ASSERT_TRUE(runLoopUntil([&] { return !says(window, Key::issueSystemShortcutConflict); }));
    EXPECT_TRUE(says(window, Key::addRuleAccessibilityNote));
    EXPECT_EQ(picker->view()->currentIndex(), choice) << "an open list is left alone";
    picker->hidePopup();
    captureTap(ModifierKey::rightControl);
    EXPECT_FALSE(says(window, Key::addRuleAccessibilityNote));
}

TEST_F(AddRuleSheet, StaysWhenTheRuleCannotBeStoredAndSaysWhy) {
    captureTap(ModifierKey::rightCommand);
    std::filesystem::create_directories(file / "in the way");
    press(Qt::Key_Return);
    ASSERT_TRUE(pane->isShowingAddSheet());
    const auto isFailure = [](const QLabel* label) { return label->text().startsWith("writeFailed("); };
    const auto labels = window.findChildren<QLabel*>();
    EXPECT_TRUE(std::any_of(labels.begin(), labels.end(), isFailure));
    std::filesystem::remove_all(file);
    press(Qt::Key_Return);
    EXPECT_EQ(model->rules().size(), 1U);
    EXPECT_FALSE(pane->isShowingAddSheet());
}

TEST_F(AddRuleSheet, ObeysEscapeAndReturn) {
    press(Qt::Key_Return);
    EXPECT_TRUE(pane->isShowingAddSheet()) << "nothing to add yet";
    captureTap(ModifierKey::rightCommand);
    captureButton()->click();
    press(Qt::Key_Return);
    press(Qt::Key_Escape); // where no monitor takes it
    EXPECT_TRUE(pane->isShowingAddSheet() && model->rules().empty()) << "these belong to the capture";
    EXPECT_FALSE(isCapturing());
    cancel()->setFocus();
    press(Qt::Key_Return);
    EXPECT_FALSE(pane->isShowingAddSheet());
    EXPECT_TRUE(model->rules().empty());
    open();
    press(Qt::Key_Escape);
    EXPECT_FALSE(pane->isShowingAddSheet());
}

TEST_F(AddRuleSheet, KeepsFocusAndClicksFromWhatIsBeneath) {
    captureTap(ModifierKey::rightCommand);
    const std::vector<QWidget*> order{
        captureButton(), source(Key::addRuleSourceA), source(Key::addRuleSourceB), cancel(), add(),
        captureButton()};
    for (std::size_t i = 1; i < order.size(); ++i) {
        EXPECT_EQ(window.focusWidget(), order[i - 1]);
        press(Qt::Key_Tab);
        EXPECT_EQ(window.focusWidget(), order[i]);
    }
    press(Qt::Key_Backtab);
    EXPECT_EQ(window.focusWidget(), add());

    window.resize(500, 300);
    QWidget* const hit = window.childAt(outside->geometry().center());
    EXPECT_NE(hit, outside);
    for (const QPoint& corner : {QPoint(1, 1), window.rect().bottomRight() - QPoint(1, 1)}) {
        ASSERT_NE(window.childAt(corner), nullptr);
        EXPECT_FALSE(pane->isAncestorOf(window.childAt(corner)) || window.childAt(corner) == pane);
    }
    for (QWidget* control : {static_cast<QWidget*>(add()), static_cast<QWidget*>(cancel())})
        EXPECT_TRUE(window.rect().contains({control->mapTo(&window, QPoint()), control->size()}))
            << "in sight however small the window is";
}

TEST_F(AddRuleSheet, EndsTheCaptureWhenWindowOrPaneGo) {
    captureButton()->click();
    ASSERT_TRUE(isCapturing());
    window.close();
    EXPECT_FALSE(isCapturing());
    window.show();
    captureButton()->click();
    delete pane;
    EXPECT_FALSE(isCapturing());
    EXPECT_EQ(captureButton(), nullptr) << "the sheet goes with its pane";
    EXPECT_EQ(window.childAt(outside->geometry().center()), outside);
}

} // namespace
} // namespace hopsel::test
