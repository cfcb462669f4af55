// What menu, status item and windows show of the state.
#include "core/base/overloaded.h"
#include "model/app_model.h"
#include "model/menu/source_label.h"
#include "model/texts/l10n.h"

#include <algorithm>
#include <tuple>

namespace hopsel {

namespace {

const action::Toggle& toggleOf(const Rule& rule) { return std::get<action::Toggle>(rule.action); }

} // namespace

const InputSourceInfo* AppModel::listed(const std::string& id) const {
    const auto found = std::find_if(sources_.begin(), sources_.end(),
                                    [&](const InputSourceInfo& source) { return source.id == id; });
    return found != sources_.end() ? &*found : nullptr;
}

std::optional<InputSourceInfo> AppModel::currentSource() const {
    const InputSourceInfo* source = currentSourceID_ ? listed(*currentSourceID_) : nullptr;
    if (source == nullptr) return std::nullopt;
    return *source;
}

std::optional<std::string> AppModel::currentSourceName() const {
    const auto source = currentSource();
    if (!source) return std::nullopt;
    return source->name;
}

std::optional<std::string> AppModel::currentSourceLabel() const {
    const auto source = currentSource();
    if (!source) return std::nullopt;
    return source_label::label(source->languages, source->name);
}

std::string AppModel::currentName(const InputSourceRef& ref) const {
    const InputSourceInfo* source = listed(ref.sourceId);
    return source != nullptr ? source->name : ref.displayName;
}

std::string AppModel::sourceName(const std::string& id) const { return currentName({id, id}); }

std::string AppModel::label(const InputSourceRef& ref) const {
    const InputSourceInfo* source = listed(ref.sourceId);
    return source != nullptr ? source_label::label(source->languages, source->name)
                             : source_label::label({}, ref.displayName);
}

std::vector<std::string> AppModel::takenCombinations() const {
    std::vector<std::string> names;
    for (const Rule& rule : rules_) {
        const std::optional<ShortcutKey> shortcut = swallowedShortcut(rule.trigger);
        if (rule.enabled && shortcut && takenShortcuts_.count(*shortcut) > 0)
            names.push_back(l10n::shortcutName(*shortcut));
    }
    return names;
}

std::string AppModel::ruleLine(const Rule& rule) const {
    return l10n::triggerName(rule.trigger) + "  " + currentName(toggleOf(rule).sourceA) + " ⇄ " +
           currentName(toggleOf(rule).sourceB);
}

StatusLine AppModel::statusLine() const {
    if (storeProblem_) return StatusLine::configProblem;
    if (!engineEnabled_) return StatusLine::paused;
    return std::visit(Overloaded{
                          [](const engine_state::Stopped&) { return StatusLine::starting; },
                          [](const engine_state::Degraded& degraded) {
                              return degraded.reason == DegradedReason::permissionMissing
                                         ? StatusLine::permissionMissing
                                         : StatusLine::tapDisabled;
                          },
                          [this](const engine_state::Running&) {
                              return shortcutStatus_ == ShortcutStatus::unavailable ||
                                             !takenShortcuts_.empty()
                                         ? StatusLine::accessibilityMissing
                                         : statusOfRules();
                          },
                      },
                      engineState_);
}

// All combinations that are refused have a status of their own.
StatusLine AppModel::statusOfRules() const {
    const auto isOn = [](const Rule& rule) { return rule.enabled; };
    const auto canSwitch = [&](const Rule& rule) {
        return rule.enabled && std::holds_alternative<rule_health::Ok>(health(rule));
    };
    const auto isUnheard = [&](const Rule& rule) {
        return rule.enabled && warning(rule.trigger, true) == RuleWarning::tapUnheard;
    };
    if (std::none_of(rules_.begin(), rules_.end(), isOn)) return StatusLine::noRules;
    if (std::any_of(rules_.begin(), rules_.end(), isUnheard)) return StatusLine::tapsUnheard;
    return std::any_of(rules_.begin(), rules_.end(), canSwitch) ? StatusLine::ok
                                                                : StatusLine::nothingToSwitch;
}

MenuState AppModel::menuState() const {
    MenuState state;
    state.engineEnabled = engineEnabled_;
    state.status = statusLine();
    state.currentInputName = currentSourceName();
    for (const Rule& rule : rules_) state.ruleLines.push_back(ruleLine(rule));
    state.takenCombinations = takenCombinations();
    state.launchAtLogin = launchStatus_ == LoginItemStatus::enabled;
    return state;
}

std::vector<MenuSource> AppModel::sourceChoices() const {
    std::vector<MenuSource> choices;
    if (std::holds_alternative<engine_state::Stopped>(engineState_)) return choices;
    for (const InputSourceInfo& source : selectableSources())
        choices.push_back({source.id, source.name, source.id == currentSourceID_});
    if (choices.size() < 2) choices.clear();
    return choices;
}

StatusBadge AppModel::badge(const action::Toggle& toggle, bool firstIsCurrent) const {
    std::string first = label(toggle.sourceA);
    std::string second = label(toggle.sourceB);
    if (first == second)
        std::tie(first, second) =
            source_label::toldApart(first, currentName(toggle.sourceA), currentName(toggle.sourceB));
    return {std::move(first), std::move(second), firstIsCurrent};
}

std::optional<StatusBadge> AppModel::currentSourcePair() const {
    if (!currentSourceID_) return std::nullopt;
    for (const Rule& rule : rules_) {
        const action::Toggle& toggle = toggleOf(rule);
        const bool isFirst = toggle.sourceA.sourceId == *currentSourceID_;
        if (rule.enabled && (isFirst || toggle.sourceB.sourceId == *currentSourceID_))
            return badge(toggle, isFirst);
    }
    return std::nullopt;
}

StatusItemAppearance AppModel::statusItemAppearance() const {
    return status_item_presenter::appearance(statusLine(), showSourceLabel_, currentSourceLabel(),
                                             currentSourcePair());
}

} // namespace hopsel
