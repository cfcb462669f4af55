// The steps as the user meets them: what is shown, what can be pressed, where the keyboard is.
#include "support/fakes/model_rig.h"
#include "ui/onboarding/onboarding_view.h"

#include <QComboBox>
#include <QLabel>
#include <QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hopsel {
namespace {

using namespace fakes;

class OnboardingWidgets : public testing::Test, protected ModelRig {
  protected:
    void SetUp() override {
        l10n::setLanguage(L10nLanguage::en);
        launch();
        onboarding = std::make_unique<OnboardingModel>(*model);
        view = std::make_unique<OnboardingView>(*onboarding, *model, [this] { ++finished; });
        view->show();
        view->activateWindow();
        settle();
    }
    /// What the models announced is shown; what is made for that is on the turn after.
    static void settle() {
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
    }
    void press(const char* name) const {
        auto* pressed = button(name);
        ASSERT_NE(pressed, nullptr) << name;
        QTest::mouseClick(pressed, Qt::LeftButton);
        settle();
    }
    void type(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const {
        QWidget* target = view->focusWidget();
        QTest::keyClick(target != nullptr ? target : view.get(), key, modifiers);
        settle();
    }
    QAbstractButton* button(const QString& text) const {
        for (QAbstractButton* each : view->findChildren<QAbstractButton*>()) {
            if (each->isVisible() && each->text() == text) return each;
        }
        return nullptr;
    }
    QComboBox* picker(const char* name) const {
        for (QComboBox* each : view->findChildren<QComboBox*>()) {
            if (each->accessibleName() == name) return each;
        }
        return nullptr;
    }
    bool shows(const QString& text) const {
        for (const QLabel* each : view->findChildren<QLabel*>()) {
            if (each->isVisible() && each->text() == text) return true;
        }
        return false;
    }

    int finished = 0;
    std::unique_ptr<OnboardingModel> onboarding;
    std::unique_ptr<OnboardingView> view;
};

TEST_F(OnboardingWidgets, goWithReturnAndArrowsAlone) {
    EXPECT_EQ(view->focusWidget(), button("Right ⌘"));
    type(Qt::Key_Right);
    EXPECT_TRUE(button("Right ⌥")->isChecked());
    EXPECT_EQ(onboarding->trigger(), ModifierKey::rightOption);
    type(Qt::Key_Return);
    EXPECT_EQ(view->focusWidget(), picker("Input source A"));
    type(Qt::Key_Return);
    EXPECT_EQ(view->focusWidget(), button("Next"));
    type(Qt::Key_Tab, Qt::ShiftModifier);
    EXPECT_EQ(view->focusWidget(), button("Back"));
    type(Qt::Key_Return);
    EXPECT_TRUE(shows("2 / 4")) << "a button that has the keyboard is what Return presses";
    EXPECT_TRUE(model->rules().empty());
    type(Qt::Key_Enter);
    emitEvent(engine_event::Switched{"r", "abc", "hangul", true, 1}); // before the step that waits for it
    type(Qt::Key_Return);
    EXPECT_TRUE(shows("4 / 4"));
    emitEvent(engine_event::Switched{"r", "hangul", "abc", false, 1}); // not verified
    type(Qt::Key_Space);
    type(Qt::Key_Return);
    EXPECT_TRUE(shows("4 / 4")) << "nothing is to be pressed yet";
    emitEvent(engine_event::Switched{"r", "abc", "hangul", true, 1});
    settle();
    EXPECT_EQ(view->focusWidget(), button("Done"));
    type(Qt::Key_Return);
    EXPECT_EQ(finished, 1);
    EXPECT_TRUE(model->onboardingCompleted() && preferences->completed);
    EXPECT_EQ(model->rules().size(), 1U);
}

TEST_F(OnboardingWidgets, sayWhyTheSourcesWillNotDo) {
    press("Next");
    QComboBox* a = picker("Input source A");
    EXPECT_EQ(a->currentText(), "Korean");
    EXPECT_EQ(a->count(), 2) << "those that can be selected";
    a->setFocus();
    type(Qt::Key_Down);
    EXPECT_TRUE(shows("Both input sources are the same."));
    EXPECT_FALSE(button("Next")->isEnabled());
    type(Qt::Key_Return);
    EXPECT_TRUE(shows("2 / 4"));
    type(Qt::Key_Up);
    EXPECT_FALSE(shows("Both input sources are the same."));
    std::filesystem::remove(file);
    std::filesystem::create_directories(file / "in the way");
    press("Next");
    ASSERT_TRUE(onboarding->failure().has_value());
    EXPECT_TRUE(shows(QString::fromStdString(*onboarding->failure())));
}

TEST_F(OnboardingWidgets, waitForThePermissionAndGoOnWhenItComes) {
    emitEvent(engine_event::StateChanged{engine_state::Degraded{DegradedReason::permissionMissing}});
    engine->current = engine_state::Degraded{DegradedReason::permissionMissing};
    press("Next");
    press("Next");
    EXPECT_TRUE(shows("Waiting for permission…"));
    EXPECT_EQ(view->focusWidget(), button("Request permission"));
    EXPECT_FALSE(button("Next")->isEnabled());
    calls.clear();
    type(Qt::Key_Return);
    EXPECT_THAT(calls, testing::ElementsAre("request input monitoring", "open input monitoring"));
    emitEvent(engine_event::StateChanged{engine_state::Running{}});
    settle();
    EXPECT_TRUE(shows("✓ Permission granted") && !shows("Waiting for permission…"));
    EXPECT_EQ(view->focusWidget(), button("Next"));
    press("Skip for now");
    EXPECT_EQ(finished, 1);
    EXPECT_TRUE(preferences->completed);
    EXPECT_EQ(model->rules().size(), 1U) << "the rule stays";
}

} // namespace
} // namespace hopsel
