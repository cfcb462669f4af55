// The contents of the onboarding window: the progress, the page of the current step, and the buttons that
// lead from one to the next.
//
// Made and owned by the onboarding window (and by previews). Both models outlive it.
#pragma once

#include "model/onboarding_model.h"
#include "ui/design/buttons.h"
#include "ui/onboarding/onboarding_page.h"
#include "ui/onboarding/onboarding_widgets.h"

#include <QStackedLayout>
#include <QWidget>
#include <functional>
#include <optional>

namespace hopsel {

class OnboardingView final : public QWidget {
  public:
    /// `onFinish` follows a skip and the last step; onboarding is marked completed by then.
    OnboardingView(OnboardingModel& model, AppModel& app, std::function<void()> onFinish,
                   QWidget* parent = nullptr);

  protected:
    /// Return is the primary button, wherever the keyboard is, but for another button that has it.
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    QLayout* header();
    QLayout* footer();
    void refresh();
    void advance();
    OnboardingPage* page() const { return pages_[static_cast<std::size_t>(model_.step())]; }
    void placeFocus();

    OnboardingModel& model_;
    std::function<void()> onFinish_;
    StepBar* steps_;
    design::Text* stepOf_;
    QStackedLayout* stack_;
    std::array<OnboardingPage*, allOnboardingSteps.size()> pages_;
    design::Button* skip_;
    design::Button* back_;
    design::Button* primary_;
    std::optional<OnboardingStep> shown_;
};

} // namespace hopsel
