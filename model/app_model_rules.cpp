// Editing the rules: through the store, then to the engine.
#include "model/app_model.h"
#include "model/texts/platform_notes.h"

#include <algorithm>
#include <iterator>
#include <memory>

namespace hopsel {

namespace {

constexpr const char* settingsUnavailable = "settings unavailable";

Action toggle(const InputSourceInfo& a, const InputSourceInfo& b) {
    return action::Toggle{{a.id, a.name}, {b.id, b.name}};
}

} // namespace

std::vector<InputSourceInfo> AppModel::selectableSources() const {
    std::vector<InputSourceInfo> selectable;
    std::copy_if(sources_.begin(), sources_.end(), std::back_inserter(selectable),
                 [](const InputSourceInfo& source) { return source.isSelectCapable; });
    return selectable;
}

std::vector<RuleIssue> AppModel::previewIssues(const Trigger& trigger, const InputSourceInfo& a,
                                               const InputSourceInfo& b, const std::string& ruleID) const {
    return rule_validator::issues({ruleID, true, trigger, toggle(a, b)}, parts_.store->config().rules);
}

EditResult AppModel::addRule(const Trigger& trigger, const InputSourceInfo& a, const InputSourceInfo& b) {
    const EditResult result =
        edit([rule = Rule::make(trigger, toggle(a, b))](RuleStore& store) { store.add(rule); });
    if (std::holds_alternative<edit_result::Added>(result) && swallowedShortcut(trigger) &&
        !accessibilityGranted())
        requestAccessibilityAccess();
    return result;
}

EditResult AppModel::updateSources(const std::string& ruleID, const InputSourceInfo& a,
                                   const InputSourceInfo& b) {
    return change(ruleID, [action = toggle(a, b)](Rule& rule) { rule.action = action; });
}

EditResult AppModel::updateRule(const std::string& ruleID, const Trigger& trigger, const InputSourceInfo& a,
                                const InputSourceInfo& b) {
    return change(ruleID, [trigger, action = toggle(a, b)](Rule& rule) {
        rule.trigger = trigger;
        rule.action = action;
    });
}

EditResult AppModel::change(const std::string& ruleID, const std::function<void(Rule&)>& apply) {
    return edit([ruleID, apply](RuleStore& store) {
        const std::vector<Rule>& stored = store.config().rules;
        const auto found =
            std::find_if(stored.begin(), stored.end(), [&](const Rule& rule) { return rule.id == ruleID; });
        if (found == stored.end()) throw StoreError(store_error::NotFound{ruleID});
        Rule changed = *found;
        apply(changed);
        store.update(changed);
    });
}

bool AppModel::removeRule(const std::string& id) {
    // From the document as it is by then: another program may have written it meanwhile.
    const auto removed = std::make_shared<std::optional<Removal>>();
    const EditResult result = edit([id, removed](RuleStore& store) {
        const std::vector<Rule> before = store.config().rules;
        store.remove(id);
        const auto found =
            std::find_if(before.begin(), before.end(), [&](const Rule& rule) { return rule.id == id; });
        *removed = Removal{*found, static_cast<std::size_t>(found - before.begin())};
    });
    if (!std::holds_alternative<edit_result::Added>(result)) return false;
    publish(removal_, *removed);
    return true;
}

std::optional<Rule> AppModel::removedRule() const {
    if (!removal_ || !canEditRules()) return std::nullopt;
    const bool isUsed = std::any_of(rules_.begin(), rules_.end(), [&](const Rule& rule) {
        return rule.trigger == removal_->rule.trigger || rule.id == removal_->rule.id;
    });
    if (isUsed) return std::nullopt;
    return removal_->rule;
}

EditResult AppModel::undoRemoval() {
    if (!removedRule()) return edit_result::Failed{"nothing to undo"};
    const EditResult result =
        edit([removal = *removal_](RuleStore& store) { store.insert({removal.rule}, removal.index); });
    if (std::holds_alternative<edit_result::Added>(result)) forgetRemoval();
    return result;
}

bool AppModel::setRuleEnabled(const std::string& id, bool enabled) {
    return std::holds_alternative<edit_result::Added>(
        edit([id, enabled](RuleStore& store) { store.setEnabled(id, enabled); }));
}

EditResult AppModel::edit(const Edit& change) {
    if (!canEditRules()) return edit_result::Failed{settingsUnavailable};
    const auto keptBefore = parts_.store->keptAside();
    try {
        takeOutsideChange(); // before what is to be changed is looked for
        if (!canEditRules()) return edit_result::Failed{settingsUnavailable};
        change(*parts_.store);
    } catch (const StoreError& error) {
        return refuse(error, change);
    } catch (const std::exception& error) {
        return edit_result::Failed{textualDescription(error)};
    }
    takeBackSaveFailure();
    if (const auto& kept = parts_.store->keptAside(); kept && kept != keptBefore)
        say(settings_notice::KeptAside{*kept});
    parts_.store->keepGoodCopy();
    takeRules();
    refreshEngineState();
    return edit_result::Added{};
}

EditResult AppModel::refuse(const StoreError& error, const Edit& change) {
    if (const auto* invalid = std::get_if<store_error::Invalid>(&error.reason()))
        return edit_result::Invalid{invalid->issues};
    if (std::holds_alternative<store_error::NotFound>(error.reason()))
        return edit_result::Failed{"rule not found"};
    if (const auto* failed = std::get_if<store_error::WriteFailed>(&error.reason())) {
        unsaved_ = change;
        say(settings_notice::SaveFailed{failed->description, failed->reason,
                                        parts_.store->fileURL().parent_path().string()});
    }
    return edit_result::Failed{textualDescription(error)};
}

void AppModel::takeRules() {
    publish(rules_, parts_.store->config().rules);
    parts_.engine->apply(parts_.store->config());
    refreshConflicts(); // what is shown from here on is what the next look is compared with
}

void AppModel::refreshConflicts() {
    std::vector<std::string> conflicting;
    for (const Rule& rule : rules_) {
        if (warning(rule.trigger, false)) conflicting.push_back(rule.id);
    }
    publish(conflictingRules_, std::move(conflicting));
}

std::optional<RuleWarning> AppModel::warning(const Trigger& trigger, bool enabled) const {
    const std::optional<ShortcutKey> shortcut = swallowedShortcut(trigger);
    if (!shortcut) return enabled && !tapsAreHeard_ ? std::optional(RuleWarning::tapUnheard) : std::nullopt;
    // Where it is known which combinations are taken, the others are all right.
    const bool isTaken = takenShortcuts_.empty() ? shortcutStatus_ == ShortcutStatus::unavailable
                                                 : takenShortcuts_.count(*shortcut) > 0;
    if (enabled && isTaken) return RuleWarning::needsAccessibility;
    if (parts_.systemShortcutConflict(*shortcut)) return RuleWarning::systemShortcutConflict;
    return std::nullopt;
}

RuleHealth AppModel::health(const Rule& rule) const {
    std::set<std::string> available;
    for (const InputSourceInfo& source : sources_) {
        if (source.isSelectCapable) available.insert(source.id);
    }
    return rule_health_checker::health(rule, available);
}

std::optional<std::string> AppModel::limitNote(const std::string& idA, const std::string& idB) const {
    for (const std::string* id : {&idA, &idB}) {
        const InputSourceInfo* source = listed(*id);
        const auto note = source != nullptr ? l10n::limitNote(source->limit) : std::nullopt;
        if (note) return source->name + ": " + *note;
    }
    return std::nullopt;
}

void AppModel::setKeyListener(std::shared_ptr<DiagnosticsRecorder> listener) {
    parts_.engine->setDiagnostics(listener ? std::move(listener) : parts_.diagnostics);
}

std::optional<StartOffer> AppModel::startOffer(const std::string& idA, const std::string& idB) const {
    for (const std::string* id : {&idA, &idB}) {
        const InputSourceInfo* source = listed(*id);
        if (source == nullptr) continue;
        const bool beginsInLatin = source->limit == SourceLimit::startsInLatin;
        if (beginsInLatin && parts_.directory->canSetStart(*id)) return StartOffer{*id, source->name, false};
        if (!beginsInLatin && changedStarts_.contains(*id)) return StartOffer{*id, source->name, true};
    }
    return std::nullopt;
}

void AppModel::take(const StartOffer& offer) {
    parts_.directory->setStartsInOwnScript(offer.sourceID, !offer.isDone);
    std::set<std::string> changed = changedStarts_;
    if (offer.isDone)
        changed.erase(offer.sourceID);
    else
        changed.insert(offer.sourceID);
    publish(changedStarts_, std::move(changed));
}

bool AppModel::requestSwitch(const std::string& name, const InputSourceRef& a, const InputSourceRef& b) {
    // The trigger is never looked at: the rule goes right to the queue.
    return parts_.engine->request(
        {name, true, trigger::ModifierTap{ModifierKey::rightCommand}, action::Toggle{a, b}});
}

bool AppModel::captureTrigger(EngineControlling::CaptureHandler handler) {
    if (!std::holds_alternative<engine_state::Running>(parts_.engine->state())) return false;
    parts_.engine->beginTriggerCapture(std::move(handler));
    return true;
}

} // namespace hopsel
