#include "model/onboarding_model.h"

#include <QPointer>
#include <QTimer>
#include <algorithm>
#include <chrono>

namespace hopsel {

namespace {

/// As long as the engine waits for a key.
constexpr std::chrono::seconds captureTimeout(15);

} // namespace

OnboardingModel::OnboardingModel(AppModel& app, OnboardingStep startAt)
    : app_(app), step_(startAt), wasPermissionShown_(startAt >= OnboardingStep::permission) {
    takeUpRule();
    suggestSources();
    app_.observe(this, [this] { suggestSources(); });
    if (step_ == OnboardingStep::test) beginTrial();
}

OnboardingModel::~OnboardingModel() { cancelCapture(); }

// Who runs the introduction again finds what it made the last time.
void OnboardingModel::takeUpRule() {
    for (const Rule& rule : app_.rules()) {
        const auto* tap = std::get_if<trigger::ModifierTap>(&rule.trigger);
        if (tap == nullptr) continue;
        const auto& toggle = std::get<action::Toggle>(rule.action);
        trigger_ = tap->key;
        usual_ = {toggle.sourceA.sourceId, toggle.sourceB.sourceId};
        return;
    }
}

void OnboardingModel::setTrigger(std::optional<ModifierKey> key) {
    cancelCapture();
    publish(trigger_, key);
}

void OnboardingModel::captureTrigger() {
    const int capture = ++captures_;
    const bool isAsked = app_.captureTrigger([self = QPointer(this), capture](ModifierKey key) {
        if (!self || capture != self->captures_) return;
        self->publish(self->isCapturing_, false);
        self->publish(self->trigger_, std::optional(key));
    });
    publish(isCapturing_, isAsked);
    QTimer::singleShot(captureTimeout, this, [this, capture] {
        if (capture == captures_) cancelCapture();
    });
}

void OnboardingModel::cancelCapture() {
    if (!isCapturing_) return;
    ++captures_;
    app_.cancelCapture();
    publish(isCapturing_, false);
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
    const bool isUsualThere = selected(usual_.a) && selected(usual_.b);
    const auto [a, b] = isUsualThere ? usual_ : source_suggester::suggest(app_.selectableSources());
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
    std::vector<RuleIssue> issues = app_.previewIssues(trigger::ModifierTap{*trigger_}, *a, *b);
    // The rule that has the key is the one that will be edited.
    std::erase_if(issues, [](const RuleIssue& issue) {
        return std::holds_alternative<rule_issue::DuplicateTrigger>(issue);
    });
    return issues;
}

const Rule* OnboardingModel::ruleOfTrigger() const {
    const std::vector<Rule>& rules = app_.rules();
    const auto found = std::find_if(rules.begin(), rules.end(), [this](const Rule& rule) {
        return trigger_ && rule.trigger == Trigger(trigger::ModifierTap{*trigger_});
    });
    return found != rules.end() ? &*found : nullptr;
}

std::optional<StartOffer> OnboardingModel::startOffer() const {
    return app_.startOffer(sourceAID_.value_or(""), sourceBID_.value_or(""));
}

std::optional<std::string> OnboardingModel::limitNote() const {
    return app_.limitNote(sourceAID_.value_or(""), sourceBID_.value_or(""));
}

bool OnboardingModel::lacksSources() const {
    return !app_.isAskingForSources() && app_.selectableSources().size() < 2;
}

bool OnboardingModel::showsPermission() const {
    return wasPermissionShown_ ||
           app_.engineState() == EngineState(engine_state::Degraded{DegradedReason::permissionMissing});
}

int OnboardingModel::stepCount() const {
    return static_cast<int>(allOnboardingSteps.size()) - (showsPermission() ? 0 : 1);
}

int OnboardingModel::stepNumber() const { return std::min(static_cast<int>(step_) + 1, stepCount()); }

void OnboardingModel::noteOtherKey(const std::string& name) {
    if (trial_) trial_->noteOtherKey(name);
}

void OnboardingModel::beginTrial() {
    baselineSwitchCount_ = step_ == OnboardingStep::test ? 0 : app_.switchCount();
    trial_ = std::make_unique<KeyTrial>(app_, trigger::ModifierTap{*trigger_});
    connect(trial_.get(), &ObservableObject::objectWillChange, this, &ObservableObject::objectWillChange);
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
    case OnboardingStep::key:
        cancelCapture();
        publish(step_, OnboardingStep::sources);
        break;
    case OnboardingStep::sources:
        if (!addRule()) return false;
        if (permissionGranted() && !showsPermission()) {
            beginTrial();
            publish(step_, OnboardingStep::test);
        } else {
            wasPermissionShown_ = true;
            publish(step_, OnboardingStep::permission);
        }
        break;
    case OnboardingStep::permission:
        beginTrial();
        publish(step_, OnboardingStep::test);
        break;
    case OnboardingStep::test: app_.markOnboardingCompleted(); break;
    }
    return true;
}

bool OnboardingModel::addRule() {
    const Trigger trigger = trigger::ModifierTap{*trigger_};
    const Rule* old = ruleOfTrigger();
    const std::optional<std::string> oldID = old != nullptr ? std::optional(old->id) : std::nullopt;
    const EditResult result = oldID ? app_.updateSources(*oldID, *selectedA(), *selectedB())
                                    : app_.addRule(trigger, *selectedA(), *selectedB());
    const std::string failure = app_.failureText(result);
    publish(failure_, failure.empty() ? std::nullopt : std::optional(failure));
    if (!std::holds_alternative<edit_result::Added>(result)) return false;
    const Rule* made = ruleOfTrigger();
    createdRuleID_ = !oldID && made != nullptr ? std::optional(made->id) : std::nullopt;
    if (oldID && made != nullptr && !made->enabled) app_.setRuleEnabled(*oldID, true);
    if (!app_.engineEnabled()) app_.setEngineEnabled(true);
    return true;
}

void OnboardingModel::back() {
    failure_.reset();
    trial_.reset();
    if (step_ == OnboardingStep::sources) publish(step_, OnboardingStep::key);
    if (step_ == OnboardingStep::key) return;
    if (step_ == OnboardingStep::test && wasPermissionShown_) {
        publish(step_, OnboardingStep::permission);
        return;
    }
    // Going forward again adds it anew, with what is chosen then.
    if (createdRuleID_) app_.removeRule(*createdRuleID_);
    createdRuleID_.reset();
    publish(step_, OnboardingStep::sources);
    suggestSources();
}

} // namespace hopsel
