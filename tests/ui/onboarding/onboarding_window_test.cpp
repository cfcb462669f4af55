// The window: which closes end the first run, and that nothing outlives it.
#include "support/fakes/model_rig.h"
#include "support/qt_waiting.h"
#include "ui/l10n/l10n.h"
#include "ui/onboarding/onboarding_window_controller.h"

#include <QAbstractButton>
#include <QTest>
#include <gtest/gtest.h>

namespace hopsel {
namespace {

using namespace fakes;

class OnboardingWindowShown : public testing::Test, protected ModelRig {
  protected:
    void SetUp() override {
        l10n::setLanguage(L10nLanguage::en);
        launch();
        controller = std::make_unique<OnboardingWindowController>(*model);
        controller->show();
    }
    QAbstractButton* button(const QString& text) const {
        for (QAbstractButton* each : controller->window()->findChildren<QAbstractButton*>()) {
            if (each->text() == text) return each;
        }
        return nullptr;
    }

    std::unique_ptr<OnboardingWindowController> controller;
};

TEST_F(OnboardingWindowShown, endsTheFirstRunHoweverItIsClosed) {
    for (const char* way : {"title bar", "Skip for now"}) {
        model->resetOnboarding();
        controller->show();
        const QPointer<QWidget> window = controller->window();
        if (QAbstractButton* skip = button(way))
            QTest::mouseClick(skip, Qt::LeftButton);
        else
            window->close();
        EXPECT_TRUE(model->onboardingCompleted() && preferences->completed) << way;
        EXPECT_EQ(controller->window(), nullptr);
        EXPECT_TRUE(test::runLoopUntil([&] { return window.isNull(); })) << way;
    }
}

TEST_F(OnboardingWindowShown, beginsAnewWithoutCountingTheOldOneAsClosed) {
    const QPointer<QWidget> old = controller->window();
    QTest::mouseClick(button("Next"), Qt::LeftButton);
    model->onRequestOnboarding = [this] { controller->show(); };
    // From the loop, as always: only then are things deleted later.
    QMetaObject::invokeMethod(model.get(), [this] { model->runOnboardingAgain(); }, Qt::QueuedConnection);
    QCoreApplication::processEvents();
    EXPECT_NE(controller->window(), old);
    EXPECT_TRUE(test::runLoopUntil([&] { return old.isNull(); }));
    EXPECT_FALSE(model->onboardingCompleted() || preferences->completed);
    EXPECT_TRUE(button("Back")->isHidden()) << "from the first step";
    EXPECT_TRUE(controller->window()->isVisible());
    controller.reset();
    EXPECT_FALSE(model->onboardingCompleted()) << "the program's end is no close by the user";
}

} // namespace
} // namespace hopsel
