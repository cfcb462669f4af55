#include "model/onboarding_model.h"

#include "model/source_suggester.h"

#include <algorithm>

namespace hopsel {

OnboardingModel::OnboardingModel(AppModel& app, OnboardingStep startAt) : app_(app), step_(startAt) {
    suggestSources();
    app_.observe(this, [this] { suggestSources(); });
}

void OnboardingModel::setSourceAID(std::optional<std::string> id) {
    isAPicked_ = true;
    publish(sourceAID_, std::move(id));
}

void OnboardingModel::setSourceBID(std::optional<std::string> id) {
    isBPicked_ = true;
    publish(sourceBID_, std::move(id));
}

void OnboardingModel::suggestSources() {
    if (step_ != OnboardingStep::key && step_ != OnboardingStep::sources) return; // the rule has been made
    const auto [a, b] = source_suggester::suggest(app_.selectableSources());
    const bool isAGone = !selectedA();
    const bool isBGone = !selectedB();
    isAPicked_ = isAPicked_ && !isAGone;
    isBPicked_ = isBPicked_ && !isBGone;
    const bool isAnew = !isAPicked_ && !isBPicked_;
    // Beside what the user picked, the one of the pair that is left.
    if (isAnew || isAGone) publish(sourceAID_, !isAnew && a == sourceBID_ ? b : a);
    if (isAnew || isBGone) publish(sourceBID_, !isAnew && b == sourceAID_ ? a : b);
}

bool OnboardingModel::permissionGranted() const {
    return std::holds_alternative<engine_state::Running>(app_.engineState());
}

std::optional<InputSourceInfo> OnboardingModel::selected(const std::optional<std::string>& id) const {
    if (!id) return std::nullopt;
    for (const InputSourceInfo& source : app_.selectableSources()) {
        if (source.id == *id) return source;
    }
    return std::nullopt;
}

std::vector<RuleIssue> OnboardingModel::issues() const {
    const auto a = selectedA();
    const auto b = selectedB();
    if (step_ != OnboardingStep::sources || !trigger_ || !a || !b) return {};
    return app_.previewIssues(trigger::ModifierTap{*trigger_}, *a, *b);
}

bool OnboardingModel::canAdvance() const {
    switch (step_) {
    case OnboardingStep::key: return trigger_.has_value();
    case OnboardingStep::sources:
        return !app_.isAskingForSources() && trigger_ && selectedA() && selectedB() && issues().empty();
    case OnboardingStep::permission: return permissionGranted();
    case OnboardingStep::test: return testPassed();
    }
    return false;
}

bool OnboardingModel::next() {
    if (!canAdvance()) return false;
    switch (step_) {
    case OnboardingStep::key: publish(step_, OnboardingStep::sources); break;
    case OnboardingStep::sources:
        if (!addRule()) return false;
        publish(step_, OnboardingStep::permission);
        break;
    case OnboardingStep::permission:
        baselineSwitchCount_ = app_.switchCount();
        publish(step_, OnboardingStep::test);
        break;
    case OnboardingStep::test: app_.markOnboardingCompleted(); break;
    }
    return true;
}

bool OnboardingModel::addRule() {
    const Trigger trigger = trigger::ModifierTap{*trigger_};
    const EditResult result = app_.addRule(trigger, *selectedA(), *selectedB());
    const auto* failed = std::get_if<edit_result::Failed>(&result);
    publish(failure_, failed != nullptr ? std::optional(failed->message) : std::nullopt);
    if (!std::holds_alternative<edit_result::Added>(result)) return false;
    const auto created = std::find_if(app_.rules().begin(), app_.rules().end(),
                                      [&](const Rule& rule) { return rule.trigger == trigger; });
    createdRuleID_ = created != app_.rules().end() ? std::optional(created->id) : std::nullopt;
    if (!app_.engineEnabled()) app_.setEngineEnabled(true);
    return true;
}

void OnboardingModel::back() {
    failure_.reset();
    switch (step_) {
    case OnboardingStep::key: break;
    case OnboardingStep::sources: publish(step_, OnboardingStep::key); break;
    case OnboardingStep::permission:
        // Going forward again adds it anew, with what is chosen then.
        if (createdRuleID_) app_.removeRule(*createdRuleID_);
        createdRuleID_.reset();
        publish(step_, OnboardingStep::sources);
        suggestSources();
        break;
    case OnboardingStep::test: publish(step_, OnboardingStep::permission); break;
    }
}

} // namespace hopsel
