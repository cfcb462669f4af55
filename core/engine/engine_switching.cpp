// The queue, and the switch itself: what happens on a later turn of the main loop, outside every key
// callback.
#include "core/engine/engine_coordinator.h"
#include "core/engine/while_true.h"

namespace hopsel {

void EngineCoordinator::refreshSources() { availableIDs_ = service_->availableSourceIDs(); }

bool EngineCoordinator::request(const Rule& rule) {
    if (std::holds_alternative<engine_state::Stopped>(state_)) return false;
    enqueue(rule, Origin::request);
    return true;
}

void EngineCoordinator::enqueue(const Rule& rule, Origin origin) {
    queue_.push_back({rule, origin});
    if (isDraining_) return;
    isDraining_ = true;
    schedule_([weak = weak_from_this()] {
        if (const auto self = weak.lock()) self->drain();
    });
}

// A perform may run the event loop; rules that are triggered meanwhile are taken by this same loop.
void EngineCoordinator::drain() {
    const WhileTrue draining(isDraining_);
    while (!queue_.empty()) {
        const Queued next = std::move(queue_.front());
        queue_.pop_front();
        const bool isStopped = std::holds_alternative<engine_state::Stopped>(state_);
        // What is asked for without a key needs none to be heard.
        if (next.origin == Origin::trigger ? isRunning() : !isStopped) perform(next.rule);
    }
}

EngineCoordinator::RemoteGate EngineCoordinator::remoteGate() const {
    if (!frontmostRemoteKind_ || !skipsLocalSwitchInRemoteApps_) return RemoteGate::switchesLocally;
    // A guest gets the guest key instead; a remote screen has every key for itself.
    const bool isGuest = frontmostRemoteKind_ == remote_apps::Kind::guestOS;
    return isGuest && guestKeyEnabled_ ? RemoteGate::sendsGuestKey : RemoteGate::standsAside;
}

void EngineCoordinator::perform(const Rule& rule) {
    switch (remoteGate()) {
    case RemoteGate::switchesLocally: break;
    case RemoteGate::sendsGuestKey: sendGuestKey(rule); return;
    case RemoteGate::standsAside: emit(engine_event::RuleSkipped{rule.id, skip_reason::RemoteApp{}}); return;
    }
    const auto& toggle = std::get<action::Toggle>(rule.action);
    const std::string& sourceA = toggle.sourceA.sourceId;
    const std::string& sourceB = toggle.sourceB.sourceId;
    std::vector<std::string> missing;
    for (const std::string* id : {&sourceA, &sourceB}) {
        if (!availableIDs_.contains(*id)) missing.push_back(*id);
    }
    if (!missing.empty()) {
        emit(engine_event::RuleSkipped{rule.id, skip_reason::BrokenSource{std::move(missing)}});
        return;
    }

    const std::optional<std::string> from = service_->currentID();
    // The platform has caught up with it, so that what it reports now, whoever made it so, is the newer word.
    if (pending_ && service_->hasBeenCurrent()) pending_.reset();
    const std::string target = switch_planner::target(sourceA, sourceB, from, pending_, clock_());
    const SwitchOutcome outcome = service_->switchTo(target);
    pending_.reset();
    if (!std::holds_alternative<select_result::Selected>(outcome.result)) {
        emit(engine_event::SwitchFailed{rule.id, target, outcome.result});
        return;
    }
    // Read after the switch: the time it took to give up waiting must not count against the pending switch.
    if (!outcome.verified) pending_ = PendingSwitch{target, clock_()};
    emit(engine_event::Switched{rule.id, from, target, outcome.verified, outcome.latencyMs});
}

void EngineCoordinator::sendGuestKey(const Rule& rule) {
    const ShortcutKey key = guestKey_; // events that arrive during the sending may set another
    if (guestKeySender_ && guestKeySender_->send(key)) {
        emit(engine_event::GuestKeySent{rule.id, key});
    } else {
        emit(engine_event::RuleSkipped{rule.id, skip_reason::GuestKeyUnavailable{}});
    }
}

} // namespace hopsel
