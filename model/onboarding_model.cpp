#include "model/onboarding_model.h"

#include "model/source_suggester.h"

#include <algorithm>

namespace hopsel {

OnboardingModel::OnboardingModel(AppModel& app, OnboardingStep startAt) : app_(app), step_(startAt) {
    source_suggester::Suggestion suggestion = source_suggester::suggest(app_.selectableSources());
    sourceAID_ = std::move(suggestion.a);
    sourceBID_ = std::move(suggestion.b);
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
    case OnboardingStep::sources: return trigger_ && selectedA() && selectedB() && issues().empty();
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
        break;
    case OnboardingStep::test: publish(step_, OnboardingStep::permission); break;
    }
}

} // namespace hopsel
