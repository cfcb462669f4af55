// The onboarding window: a new one, from the first step, each time it is asked for.
//
// Made and owned by start-up. View and model live as long as their window, which is deleted on a later turn
// of the loop: the button that closed it is still being handled.
#pragma once

#include "model/app_model.h"

#include <QPointer>
#include <QWidget>

namespace hopsel {

class OnboardingWindow;

class OnboardingWindowController {
  public:
    explicit OnboardingWindowController(AppModel& app) : app_(app) {}
    /// Not a close by the user: onboarding stays as it is.
    ~OnboardingWindowController();
    OnboardingWindowController(const OnboardingWindowController&) = delete;
    OnboardingWindowController& operator=(const OnboardingWindowController&) = delete;

    /// In front. An open one gives way, which does not count as a close; every close by the user, at whatever
    /// step, ends the first run for good.
    void show();
    /// Null while there is none.
    QWidget* window() const;

  private:
    void windowWillClose();

    AppModel& app_;
    QPointer<OnboardingWindow> window_;
};

} // namespace hopsel
