// The sheet that adds a rule: what it says, what it adds, and what ends it.
#include "rules_rig.h"
#include "support/qt_waiting.h"
#include "ui/settings/rules/rules_pane.h"

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
        auto* row = new QHBoxLayout(&window);
        pane = new RulesPane(*model, keys);
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
    RulesPane* pane = nullptr;
};

TEST_F(AddRuleSheet, AddsWhatWasCapturedOrStaysAndSaysWhyItCannotBeStored) {
    EXPECT_EQ(source(Key::addRuleSourceA)->count(), 3) << "selectable sources only, and no empty entry";
    EXPECT_FALSE(add()->isEnabled());
    captureTap(ModifierKey::rightCommand);
    choose(*source(Key::addRuleSourceB), "French");
    std::filesystem::create_directories(file / "in the way");
    add()->click();
    ASSERT_TRUE(pane->isShowingAddSheet());
    const auto isFailure = [](const QLabel* label) { return label->text().startsWith("writeFailed("); };
    const auto labels = window.findChildren<QLabel*>();
    EXPECT_TRUE(std::any_of(labels.begin(), labels.end(), isFailure));
    std::filesystem::remove_all(file);
    press(Qt::Key_Return);
    ASSERT_EQ(model->rules().size(), 1U);
    EXPECT_EQ(model->rules()[0].trigger, rightCommand);
    EXPECT_EQ(model->rules()[0].action, Action(action::Toggle{{"hangul", "Korean"}, {"french", "French"}}));
    EXPECT_FALSE(pane->isShowingAddSheet());
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
}

} // namespace
} // namespace hopsel::test
