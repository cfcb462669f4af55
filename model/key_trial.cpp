#include "model/key_trial.h"

#include "core/base/overloaded.h"
#include "model/texts/l10n.h"

#include <algorithm>

namespace hopsel {

using l10n::Key;
using l10n::t;

namespace {

constexpr double longestTap = 0.5; // seconds

ModifierSet everyModifier() {
    ModifierSet all;
    for (const ModifierKey key : allModifierKeys) all.insert(key);
    return all;
}

} // namespace

KeyTrial::KeyTrial(AppModel& app, const Trigger& trigger)
    : app_(app), trigger_(trigger), machine_(everyModifier(), longestTap) {
    listener_->startRecording();
    listener_->onChange = [this] {
        if (listener_->entries().empty()) return;
        const DiagnosticEntry entry = listener_->entries().back();
        app_.diagnostics().record(entry.kind, entry.time); // which it drops unless it is being looked at
        take(entry);
    };
    app_.setKeyListener(listener_);
}

KeyTrial::~KeyTrial() {
    listener_->onChange = nullptr;
    app_.setKeyListener(nullptr);
}

void KeyTrial::noteOtherKey(const std::string& name) {
    publish(remark_, t(Key::onbTestOtherKey, {name, l10n::triggerName(trigger_)}));
}

void KeyTrial::take(const DiagnosticEntry& entry) {
    std::visit(Overloaded{
                   [&](const diagnostic_kind::Key& key) { takeKey(key, entry.time); },
                   [&](const diagnostic_kind::Engine& engine) { takeEvent(engine.event); },
               },
               entry.kind);
}

void KeyTrial::takeKey(const diagnostic_kind::Key& key, double time) {
    const Decision decision = machine_.handle({key.kind, key.held, time}, false);
    const auto* tap = std::get_if<decision::SwitchTriggered>(&decision);
    if (tap != nullptr && key.verdict == KeyVerdict::passed) noteOtherKey(l10n::keyName(tap->key));
}

void KeyTrial::takeEvent(const EngineEvent& event) {
    std::visit(
        Overloaded{
            [this](const engine_event::Switched& switched) {
                publish(remark_, switched.verified ? std::string() : t(Key::onbTestUnverified));
            },
            [this](const engine_event::SwitchFailed& failed) { publish(remark_, refusal(failed.result)); },
            [this](const engine_event::SwitchSuppressed&) { publish(remark_, t(Key::onbTestPassword)); },
            [this](const engine_event::RuleSkipped& skipped) {
                const bool isMissing = std::holds_alternative<skip_reason::BrokenSource>(skipped.reason);
                publish(remark_, t(isMissing ? Key::onbTestSourceGone : Key::onbTestRemote));
            },
            [this](const engine_event::GuestKeySent&) { publish(remark_, t(Key::onbTestRemote)); },
            [](const auto&) {},
        },
        event);
}

std::string KeyTrial::refusal(const SelectResult& result) const {
    const auto* failed = std::get_if<select_result::Failed>(&result);
    if (failed == nullptr) return t(Key::onbTestSourceGone);
    switch (app_.hindrance(failed->code)) {
    case SwitchHindrance::noTextField: return t(Key::onbTestNoTextField);
    case SwitchHindrance::notReachable: return t(Key::onbTestNotReachable);
    case SwitchHindrance::notSwitchable: return t(Key::onbTestNotSwitchable);
    case SwitchHindrance::notPossibleHere: return t(Key::onbTestNotPossible);
    case SwitchHindrance::unknown: break;
    }
    return t(Key::onbTestFailed, {std::to_string(failed->code)});
}

} // namespace hopsel
