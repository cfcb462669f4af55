#include "model/app_model.h"

#include "core/base/overloaded.h"
#include "core/diagnostics/diagnostics_recorder.h"
#include "model/source_names.h"

#include <QPointer>

namespace hopsel {

AppModel::AppModel(Parts parts)
    : parts_(std::move(parts)),
      engineEnabled_(parts_.preferences->engineEnabled()),
      showSourceLabel_(parts_.preferences->showCurrentSourceLabel()),
      indicatesSwitches_(parts_.preferences->indicatesSwitches()),
      guardsTaps_(parts_.preferences->guardsTaps()),
      onboardingCompleted_(parts_.preferences->onboardingCompleted()) {
    parts_.engine->setDiagnostics(parts_.diagnostics);
    parts_.engine->setGuestKey(guestKey);
    parts_.engine->setGuardsTaps(guardsTaps_);
    parts_.diagnostics->onChange = parts_.secureInput->onStateChange = [feed = QPointer(&diagnosticsFeed_)] {
        if (feed) feed->bump();
    };
}

void AppModel::start() {
    loadStore();
    parts_.engine->setOnEvent([model = QPointer(this)](const EngineEvent& event) {
        if (model) model->handle(event);
    });
    parts_.engine->setOnUnavailableShortcuts([model = QPointer(this)] {
        if (model) model->refreshEngineState();
    });
    refreshSourceList();
    takeRules();
    if (engineEnabled_) parts_.engine->start();
    refreshEngineState();
    publish(launchStatus_, parts_.loginItem->status());
    // Who has rules already needs no introduction.
    if (!rules_.empty()) markOnboardingCompleted();
}

void AppModel::handle(const EngineEvent& event) {
    std::visit(Overloaded{
                   [this](const engine_event::StateChanged& changed) {
                       publish(engineState_, changed.state);
                       publish(tapsAreHeard_, parts_.engine->hearsTaps());
                   },
                   [this](const engine_event::Switched& switched) {
                       if (switched.verified) publish(switchCount_, switchCount_ + 1);
                       currentSourceChanged();
                   },
                   [this](const engine_event::ShortcutStatusChanged& changed) {
                       publish(shortcutStatus_, changed.status);
                       publish(takenShortcuts_, parts_.engine->unavailableShortcuts());
                   },
                   [](const auto&) {}, // the recorder has it
               },
               event);
    noteFiring(event);
    if (const auto hear = onEngineEvent) hear(event);
}

void AppModel::noteFiring(const EngineEvent& event) {
    const auto note = [this](const std::string& ruleID, bool worked) {
        publish(lastFiring_, Firing{ruleID, worked, lastFiring_.number + 1});
    };
    std::visit(Overloaded{
                   [&](const engine_event::Switched& it) { note(it.ruleId, true); },
                   [&](const engine_event::GuestKeySent& it) { note(it.ruleId, true); },
                   [&](const engine_event::SwitchFailed& it) { note(it.ruleId, false); },
                   [&](const engine_event::SwitchSuppressed& it) { note(it.ruleId, false); },
                   [&](const engine_event::RuleSkipped& it) { note(it.ruleId, false); },
                   [](const auto&) {},
               },
               event);
}

void AppModel::refreshEngineState() {
    publish(engineState_, parts_.engine->state());
    publish(tapsAreHeard_, parts_.engine->hearsTaps());
    publish(shortcutStatus_, parts_.engine->shortcutStatus());
    publish(takenShortcuts_, parts_.engine->unavailableShortcuts());
}

void AppModel::refreshSourceList() {
    publish(sources_, source_names::toldApart(parts_.directory->enabledSources()));
    publish(isAskingForSources_, parts_.directory->isAsking());
    currentSourceChanged();
}

void AppModel::systemEvent(SystemEvent event) { parts_.engine->handle(event); }

void AppModel::sourcesChanged() {
    refreshSourceList();
    parts_.engine->refreshSources();
}

void AppModel::currentSourceChanged() { publish(currentSourceID_, parts_.directory->currentID()); }

void AppModel::frontmostAppChanged(const std::optional<std::string>& bundleID) {
    parts_.engine->setFrontmostRemoteKind(
        remote_apps::kind(bundleID ? std::optional<std::string_view>(*bundleID) : std::nullopt));
}

bool AppModel::needsRetry() const {
    return engineEnabled_ && (std::holds_alternative<engine_state::Degraded>(parts_.engine->state()) ||
                              parts_.engine->shortcutStatus() == ShortcutStatus::unavailable);
}

void AppModel::retryPermissionIfNeeded() {
    if (!engineEnabled_) return;
    if (std::holds_alternative<engine_state::Degraded>(parts_.engine->state())) parts_.engine->start();
    parts_.engine->retryShortcutIfNeeded();
    refreshEngineState();
}

void AppModel::setEngineEnabled(bool on) {
    publish(engineEnabled_, on);
    parts_.preferences->setEngineEnabled(on);
    if (on)
        parts_.engine->start();
    else
        parts_.engine->stop();
    refreshEngineState();
}

void AppModel::setShowSourceLabel(bool on) {
    publish(showSourceLabel_, on);
    parts_.preferences->setShowCurrentSourceLabel(on);
}

void AppModel::setIndicatesSwitches(bool on) {
    if (!indicatesSwitches_) return;
    publish(indicatesSwitches_, std::optional(on));
    parts_.preferences->setIndicatesSwitches(on);
}

void AppModel::setGuardsTaps(bool on) {
    publish(guardsTaps_, on);
    parts_.preferences->setGuardsTaps(on);
    parts_.engine->setGuardsTaps(on);
}

void AppModel::setLaunchAtLogin(bool on) {
    try {
        parts_.loginItem->setEnabled(on);
    } catch (const std::exception&) { // NOLINT(bugprone-empty-catch)
        // Whether it worked is read below; the switch shows it.
    }
    publish(launchStatus_, parts_.loginItem->status());
}

void AppModel::requestAccessibilityAccess() {
    parts_.settings->requestAccessibility();
    parts_.settings->openAccessibility();
}

void AppModel::requestInputMonitoringAccess() {
    parts_.settings->requestInputMonitoring();
    parts_.settings->openInputMonitoring();
}

void AppModel::perform(MenuAction action) {
    switch (action) {
    case MenuAction::toggleEngine: setEngineEnabled(!engineEnabled_); break;
    case MenuAction::toggleLaunchAtLogin: setLaunchAtLogin(launchStatus_ != LoginItemStatus::enabled); break;
    case MenuAction::openPrivacySettings: parts_.settings->openInputMonitoring(); break;
    case MenuAction::openAccessibilitySettings: parts_.settings->openAccessibility(); break;
    case MenuAction::openSettings:
    case MenuAction::openBugReport:
    case MenuAction::quit: break;
    }
}

void AppModel::setOnboardingCompleted(bool completed) {
    publish(onboardingCompleted_, completed);
    parts_.preferences->setOnboardingCompleted(completed);
}

bool AppModel::takeTellingThatItRunsOn() {
    if (parts_.preferences->toldThatItRunsOn()) return false;
    parts_.preferences->setToldThatItRunsOn(true);
    return true;
}

void AppModel::runOnboardingAgain() {
    resetOnboarding();
    if (onRequestOnboarding) onRequestOnboarding();
}

} // namespace hopsel
