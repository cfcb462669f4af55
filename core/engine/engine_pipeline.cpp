// Events in, decisions out. All but beginning and cancelling a capture runs while the platform waits for the
// answer to a key: no switch, no waiting, and no allocation for an event that triggers nothing.
#include "core/engine/engine_coordinator.h"
#include "core/engine/while_true.h"

#include <utility>

namespace hopsel {

void EngineCoordinator::process(const RawEvent& raw) {
    if (!isRunning() || raw.synthetic) return;
    const std::optional<KeyEvent> event = normalizer_.normalize(raw);
    if (!event) return;
    if (captureHandler_ && captureEvent(*event)) return;
    const bool suppressSwitch = noteSecureInput(event->kind);
    act(machine_.handle(*event, suppressSwitch), *event);
}

// True when the event went to trigger capture; false when the capture had expired, and the event is an
// ordinary one.
bool EngineCoordinator::captureEvent(const KeyEvent& event) {
    if (captureDeadline_ < clock_()) {
        const CaptureHandler expired = std::exchange(captureHandler_, nullptr);
        tellStandingAside();
        machine_.reset();
        return false;
    }
    recordKey(event, KeyVerdict::captured);
    const Decision decision = captureMachine_.handle(event, false);
    if (const auto* tap = std::get_if<decision::SwitchTriggered>(&decision)) {
        // The handler may begin the next capture, so this one is over before it is called.
        const CaptureHandler handler = std::exchange(captureHandler_, nullptr);
        tellStandingAside();
        normalizer_.reset();
        machine_.reset();
        if (handler) handler(tap->key); // the recorder's listener may have cancelled
    }
    return true;
}

// Whether a tap that this event completes is suppressed: secure text entry was on when the trigger went down,
// or is on now that it comes up. A password field that is left between the two must not switch the next one.
bool EngineCoordinator::noteSecureInput(const KeyEventKind& kind) {
    if (const auto* down = std::get_if<key_event_kind::ModifierDown>(&kind)) {
        if (rulesByKey_.contains(down->key) && secureInput_->isEnabled()) {
            secureAtDown_.insert(down->key);
        } else {
            secureAtDown_.remove(down->key);
        }
        return false;
    }
    if (const auto* up = std::get_if<key_event_kind::ModifierUp>(&kind)) {
        const bool suppress = secureInput_->isEnabled() || secureAtDown_.contains(up->key);
        secureAtDown_.remove(up->key);
        return suppress;
    }
    return false;
}

void EngineCoordinator::act(const Decision& decision, const KeyEvent& event) {
    if (const auto* triggered = std::get_if<decision::SwitchTriggered>(&decision)) {
        recordKey(event, KeyVerdict::switchRequested);
        const auto rule = rulesByKey_.find(triggered->key);
        if (rule != rulesByKey_.end()) enqueue(rule->second);
    } else if (const auto* suppressed = std::get_if<decision::SwitchSuppressed>(&decision)) {
        recordKey(event, KeyVerdict::suppressed);
        const auto rule = rulesByKey_.find(suppressed->key);
        if (rule != rulesByKey_.end()) {
            emit(engine_event::SwitchSuppressed{rule->second.id, SuppressReason::secureInput});
        }
    } else {
        recordKey(event, KeyVerdict::passed);
    }
}

void EngineCoordinator::recordKey(const KeyEvent& event, KeyVerdict verdict) {
    if (isRefeeding_ || !diagnostics_ || !diagnostics_->isRecording()) return;
    const std::shared_ptr<DiagnosticsRecorder> recorder = diagnostics_; // its listener may exchange it
    recorder->record(diagnostic_kind::Key{event.kind, event.held, verdict}, clock_());
}

bool EngineCoordinator::processShortcut(const ShortcutInput& input) {
    if (!isRunning() || shortcutStatus_ != ShortcutStatus::running) return false;
    if (captureHandler_ || input.synthetic) return false;
    if (remoteGate() == RemoteGate::standsAside) return false;
    const ShortcutDecision decision = shortcutMatcher_.handle(input);
    if (decision.consume) {
        swallow(input, decision.fire ? KeyVerdict::shortcutFired : KeyVerdict::shortcutConsumed);
    }
    if (decision.fire) {
        const auto rule = shortcutRules_.find(*decision.fire);
        if (rule != shortcutRules_.end()) enqueue(rule->second);
    }
    return decision.consume;
}

void EngineCoordinator::swallow(const ShortcutInput& input, KeyVerdict verdict) {
    const ModifierSet held = heldModifiers(input.flags);
    if (input.kind == ShortcutInput::Kind::keyDown) {
        recordKey({key_event_kind::KeyDown{}, held, 0}, verdict);
        refeed(RawEventType::keyDown, input.flags);
    } else {
        recordKey({key_event_kind::KeyUp{}, held, 0}, verdict);
        refeed(RawEventType::keyUp, input.flags);
    }
}

// The listening source never sees a swallowed event. Without it the Shift of a swallowed Shift+Space would
// come up as a tap of Shift alone.
void EngineCoordinator::refeed(RawEventType type, std::uint64_t flags) {
    const WhileTrue refeeding(isRefeeding_);
    process({type, 0, flags, clock_(), false});
}

void EngineCoordinator::beginTriggerCapture(CaptureHandler handler) {
    beginTriggerCapture(captureTimeout, std::move(handler));
}

void EngineCoordinator::beginTriggerCapture(double timeout, CaptureHandler handler) {
    const CaptureHandler replaced = std::exchange(captureHandler_, std::move(handler));
    tellStandingAside();
    captureDeadline_ = clock_() + timeout;
    captureMachine_.reset();
    normalizer_.reset();
    queue_.clear();
}

void EngineCoordinator::cancelTriggerCapture() {
    // What a dropped handler holds goes last, here as above: its destructor may call back.
    const CaptureHandler cancelled = std::exchange(captureHandler_, nullptr);
    if (!cancelled) return;
    tellStandingAside();
    normalizer_.reset();
    machine_.reset();
}

} // namespace hopsel
