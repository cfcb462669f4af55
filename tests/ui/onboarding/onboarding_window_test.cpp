// The window: which closes end the first run, and that nothing outlives it.
#include "support/fakes/model_rig.h"
#include "support/qt_waiting.h"
#include "ui/l10n/l10n.h"
#include "ui/onboarding/onboarding_window_controller.h"
#include "ui/settings/design/text.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
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
    void expectNothingIsCut() const {
        QCoreApplication::processEvents();
        for (const QLabel* each : controller->window()->findChildren<QLabel*>()) {
            if (!each->isVisible()) continue;
            const int needed =
                each->wordWrap() ? each->heightForWidth(each->width()) : each->sizeHint().height();
            EXPECT_GE(each->height(), needed) << each->text().toStdString();
        }
        for (const QAbstractButton* each : controller->window()->findChildren<QAbstractButton*>()) {
            if (!each->isVisible()) continue;
            EXPECT_GE(each->width(), each->sizeHint().width()) << each->text().toStdString();
            EXPECT_GE(each->height(), each->sizeHint().height()) << each->text().toStdString();
        }
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

TEST_F(OnboardingWindowShown, growsWithTheUsersTextUntilEverythingFits) {
    directory->sources[1].name = std::string(500, 'w');
    model->sourcesChanged();
    controller->show();
    const QSize usual = controller->window()->size();
    EXPECT_EQ(usual, QSize(560, 460));
    const QFont before = QApplication::font();
    QFont large = before;
    large.setPixelSize(21);
    QApplication::setFont(large);
    for (const L10nLanguage language : {L10nLanguage::ko, L10nLanguage::en}) {
        l10n::setLanguage(language);
        controller->show();
        expectNothingIsCut();
        while (button("Next") != nullptr || button("다음") != nullptr) {
            QTest::keyClick(controller->window()->focusWidget(), Qt::Key_Return);
            expectNothingIsCut();
        }
        model->removeRule(model->rules().at(0).id);
    }
    QApplication::setFont(before);
    EXPECT_GT(controller->window()->height(), usual.height());
}

} // namespace
} // namespace hopsel
