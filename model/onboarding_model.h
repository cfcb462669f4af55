// The four steps of the first run: choose a key, choose two input sources, grant the permission, try the key.
//
// The sources are suggested, and suggested again as others come and go, until the user has picked some.
//
// One for each showing of the onboarding window, which owns it and is outlived by the application model. The
// rule it adds at the second step is a real one and stays unless the user goes back.
#pragma once

#include "model/app_model.h"
#include "model/observable_object.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace hopsel {

enum class OnboardingStep { key, sources, permission, test };

inline constexpr std::array<OnboardingStep, 4> allOnboardingSteps{
    OnboardingStep::key, OnboardingStep::sources, OnboardingStep::permission, OnboardingStep::test};

class OnboardingModel final : public ObservableObject {
  public:
    explicit OnboardingModel(AppModel& app, OnboardingStep startAt = OnboardingStep::key);

    OnboardingStep step() const { return step_; }
    const std::optional<ModifierKey>& trigger() const { return trigger_; }
    void setTrigger(std::optional<ModifierKey> key) { publish(trigger_, key); }
    const std::optional<std::string>& sourceAID() const { return sourceAID_; }
    void setSourceAID(std::optional<std::string> id);
    const std::optional<std::string>& sourceBID() const { return sourceBID_; }
    void setSourceBID(std::optional<std::string> id);

    /// From 1.
    int stepNumber() const { return static_cast<int>(step_) + 1; }
    std::optional<InputSourceInfo> selectedA() const { return selected(sourceAID_); }
    std::optional<InputSourceInfo> selectedB() const { return selected(sourceBID_); }
    bool permissionGranted() const;
    /// A switch was verified since the last step began.
    bool testPassed() const { return app_.switchCount() > baselineSwitchCount_; }
    /// Of the rule as chosen; only at the step that chooses the sources.
    std::vector<RuleIssue> issues() const;
    /// Why the rule could not be stored at the last attempt to advance.
    const std::optional<std::string>& failure() const { return failure_; }

    bool canAdvance() const;
    /// True if the step is done: the next one is shown, or the whole is finished.
    bool next();
    void back();
    void skip() { app_.markOnboardingCompleted(); }
    void requestPermission() { app_.requestInputMonitoringAccess(); }

  private:
    std::optional<InputSourceInfo> selected(const std::optional<std::string>& id) const;
    void suggestSources();
    bool addRule();

    AppModel& app_;
    OnboardingStep step_;
    std::optional<ModifierKey> trigger_ = ModifierKey::rightCommand;
    std::optional<std::string> sourceAID_;
    std::optional<std::string> sourceBID_;
    bool isAPicked_ = false; ///< by the user, and not suggested
    bool isBPicked_ = false;
    std::optional<std::string> createdRuleID_;
    std::optional<std::string> failure_;
    int baselineSwitchCount_ = 0;
};

} // namespace hopsel
