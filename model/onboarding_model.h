// The four steps of the first run: choose a key, choose two input sources, grant the permission, try the key.
//
// The sources are suggested, and suggested again as others come and go, until the user has picked some.
//
// Where a rule has the key already, that rule is edited and not a second one made. The permission is asked
// for only if it is missing.
//
// One for each showing of the onboarding window, which owns it and is outlived by the application model. The
// rule it adds at the second step is a real one and stays unless the user goes back.
#pragma once

#include "model/app_model.h"
#include "model/key_trial.h"
#include "model/observable_object.h"
#include "model/source_suggester.h"

#include <array>
#include <memory>
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
    ~OnboardingModel() override;

    OnboardingStep step() const { return step_; }
    const std::optional<ModifierKey>& trigger() const { return trigger_; }
    void setTrigger(std::optional<ModifierKey> key);
    /// The next modifier key that is tapped becomes the trigger. Does nothing while the engine is not
    /// running.
    void captureTrigger();
    bool isCapturing() const { return isCapturing_; }
    void cancelCapture();
    const std::optional<std::string>& sourceAID() const { return sourceAID_; }
    void setSourceAID(std::optional<std::string> id);
    const std::optional<std::string>& sourceBID() const { return sourceBID_; }
    void setSourceBID(std::optional<std::string> id);

    /// From 1, among those that are shown.
    int stepNumber() const;
    int stepCount() const;
    std::optional<InputSourceInfo> selectedA() const { return selected(sourceAID_); }
    std::optional<InputSourceInfo> selectedB() const { return selected(sourceBID_); }
    bool permissionGranted() const;
    /// A switch was verified since the last step began.
    bool testPassed() const { return app_.switchCount() > baselineSwitchCount_; }
    /// About the last press on the last step that did not switch, in words; else empty.
    std::string remark() const { return trial_ ? trial_->remark() : std::string(); }
    /// What should be known of the pair, in words: it is no success if its letters are the same as before.
    std::optional<std::string> limitNote() const;
    /// For that.
    std::optional<StartOffer> startOffer() const;
    /// A key that the engine does not name was pressed in the window on the last step.
    void noteOtherKey(const std::string& name);
    /// There are not enough sources to switch between, and it is not that they are still being asked for.
    bool lacksSources() const;
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
    void takeUpRule();
    const Rule* ruleOfTrigger() const;
    bool showsPermission() const;
    void beginTrial();
    void suggestSources();
    bool addRule();

    AppModel& app_;
    OnboardingStep step_;
    std::optional<ModifierKey> trigger_ = ModifierKey::rightCommand;
    std::optional<std::string> sourceAID_;
    std::optional<std::string> sourceBID_;
    source_suggester::Suggestion usual_; ///< the pair of the rule that is there already
    bool isAPicked_ = false;             ///< by the user, and not suggested
    bool isBPicked_ = false;
    std::optional<std::string> createdRuleID_;
    std::optional<std::string> failure_;
    int baselineSwitchCount_ = 0;
    bool wasPermissionShown_;
    bool isCapturing_ = false;
    int captures_ = 0; ///< an earlier one's end must not end the latest
    std::unique_ptr<KeyTrial> trial_;
};

} // namespace hopsel
