// States, recovery and rules.
#include "core/base/overloaded.h"
#include "core/engine/engine_coordinator.h"

#include <exception>
#include <utility>

namespace hopsel {

namespace {

// The reason of a refusal is the source's own to log; the engine only has to know that it does not run.
template <typename Source>
bool starts(Source& source) {
    try {
        source.start();
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

ModifierSet everyModifier() {
    ModifierSet keys;
    for (ModifierKey key : allModifierKeys) keys.insert(key);
    return keys;
}

ResetReason resetReason(SystemEvent event) {
    switch (event) {
    case SystemEvent::willSleep: return ResetReason::sleep;
    case SystemEvent::didWake: return ResetReason::wake;
    case SystemEvent::screenLocked: return ResetReason::screenLocked;
    case SystemEvent::screenUnlocked: return ResetReason::screenUnlocked;
    case SystemEvent::sessionResigned: return ResetReason::sessionInactive;
    case SystemEvent::sessionBecameActive: return ResetReason::sessionActive;
    }
    return ResetReason::wake;
}

} // namespace

std::shared_ptr<EngineCoordinator> EngineCoordinator::create(Parts parts) {
    const std::shared_ptr<EngineCoordinator> engine(new EngineCoordinator(std::move(parts)));
    engine->connectSources();
    return engine;
}

EngineCoordinator::EngineCoordinator(Parts parts)
    : source_(std::move(parts.source)),
      shortcutSource_(std::move(parts.shortcutSource)),
      service_(std::move(parts.service)),
      secureInput_(std::move(parts.secureInput)),
      guestKeySender_(std::move(parts.guestKeySender)),
      tapMax_(parts.tapMax),
      clock_(std::move(parts.clock)),
      schedule_(std::move(parts.schedule)),
      machine_(ModifierSet{}, tapMax_),
      captureMachine_(everyModifier(), tapMax_) {}

void EngineCoordinator::connectSources() {
    const std::weak_ptr<EngineCoordinator> weak = weak_from_this();
    source_->onEvent = [weak](const RawEvent& raw) {
        if (const auto self = weak.lock()) self->process(raw);
    };
    source_->onDisabled = [weak](bool reenabled) {
        if (const auto self = weak.lock()) self->listenTapDisabled(reenabled);
    };
    if (!shortcutSource_) return;
    shortcutSource_->onInput = [weak](const ShortcutInput& input) {
        const auto self = weak.lock();
        return self && self->processShortcut(input);
    };
    shortcutSource_->onDisabled = [weak](bool reenabled) {
        if (const auto self = weak.lock()) self->shortcutTapDisabled(reenabled);
    };
    shortcutSource_->onUnavailableChanged = [weak] {
        const auto engine = weak.lock();
        if (!engine) return;
        if (const auto observer = engine->onUnavailableShortcuts_) observer();
    };
}

void EngineCoordinator::start() {
    if (isRunning()) return;
    if (starts(*source_)) {
        setState(engine_state::Running{});
    } else {
        setState(engine_state::Degraded{DegradedReason::permissionMissing});
    }
    syncShortcutSource();
}

void EngineCoordinator::stop() {
    source_->stop();
    // What the handler holds goes when this returns: its destructor may call the engine.
    const CaptureHandler dropped = std::exchange(captureHandler_, nullptr);
    tellStandingAside();
    reset(ResetReason::stopped);
    source_->stop(); // an observer of the reset may have started a degraded engine
    setState(engine_state::Stopped{});
    syncShortcutSource();
}

void EngineCoordinator::apply(const Config& config) {
    rulesByKey_.clear();
    shortcutRules_.clear();
    ModifierSet triggers;
    ShortcutSet shortcuts;
    for (const Rule& rule : config.rules) {
        if (!rule.enabled) continue;
        // Of two rules with one trigger the first wins: neither map takes the second.
        std::visit(Overloaded{[&](const trigger::ModifierTap& tap) {
                                  rulesByKey_.try_emplace(tap.key, rule);
                                  triggers.insert(tap.key);
                              },
                              [&](const trigger::Shortcut& shortcut) {
                                  shortcutRules_.try_emplace(shortcut.key, rule);
                                  shortcuts.insert(shortcut.key);
                              }},
                   rule.trigger);
    }
    shortcutMatcher_ = ShortcutMatcher(std::move(shortcuts));
    machine_ = KeyStateMachine(triggers, tapMax_);
    tellTapTriggers();
    refreshSources();
    reset(ResetReason::configChanged);
    syncShortcutSource();
}

void EngineCoordinator::handle(SystemEvent event) { reset(resetReason(event)); }

void EngineCoordinator::setFrontmostRemoteKind(std::optional<remote_apps::Kind> kind) {
    if (frontmostRemoteKind_ == kind) return;
    frontmostRemoteKind_ = kind;
    // The other application must get the key-up of a key that was swallowed in front of this one.
    shortcutMatcher_.reset();
    tellTapTriggers();
}

void EngineCoordinator::setGuestKeyEnabled(bool enabled) {
    guestKeyEnabled_ = enabled;
    tellTapTriggers();
}

void EngineCoordinator::setSkipsLocalSwitchInRemoteApps(bool skips) {
    skipsLocalSwitchInRemoteApps_ = skips;
    tellTapTriggers();
}

void EngineCoordinator::setGuardsTaps(bool on) {
    guardsTaps_ = on;
    tellTapTriggers();
}

// In front of another computer every key is that computer's, and it gets no more than the guest key from us.
void EngineCoordinator::tellTapTriggers() {
    ModifierSet triggers;
    if (guardsTaps_ && remoteGate() == RemoteGate::switchesLocally)
        for (const auto& [key, rule] : rulesByKey_) triggers.insert(key);
    source_->setTapTriggers(triggers);
    tellStandingAside();
}

void EngineCoordinator::tellStandingAside() {
    if (shortcutSource_)
        shortcutSource_->setStandsAside(captureHandler_ || remoteGate() == RemoteGate::standsAside);
}

void EngineCoordinator::setRemoteAppFrontmost(bool remote) {
    if (remote) {
        setFrontmostRemoteKind(frontmostRemoteKind_.value_or(remote_apps::Kind::remoteScreen));
    } else {
        setFrontmostRemoteKind(std::nullopt);
    }
}

void EngineCoordinator::retryShortcutIfNeeded() {
    if (shortcutStatus_ == ShortcutStatus::unavailable) syncShortcutSource();
}

void EngineCoordinator::setState(EngineState state) {
    if (state_ == state) return;
    state_ = state;
    emit(engine_event::StateChanged{state});
}

void EngineCoordinator::setShortcutStatus(ShortcutStatus status) {
    if (shortcutStatus_ == status) return;
    shortcutStatus_ = status;
    emit(engine_event::ShortcutStatusChanged{status});
}

void EngineCoordinator::emit(const EngineEvent& event) {
    // Copies, because either listener may exchange the recorder or the observer.
    if (const auto recorder = diagnostics_; recorder && recorder->isRecording()) {
        recorder->record(diagnostic_kind::Engine{event}, clock_());
    }
    if (const EventObserver observer = onEvent_) observer(event);
}

// Key-ups are lost while the machine sleeps, another session has the keyboard or a tap is off: whatever is
// known of held keys, and whatever waits because of them, is void. An open capture only starts over.
void EngineCoordinator::reset(ResetReason reason) {
    normalizer_.reset();
    machine_.reset();
    captureMachine_.reset();
    shortcutMatcher_.reset();
    queue_.clear();
    pending_.reset();
    secureAtDown_.clear();
    emit(engine_event::Reset{reason});
}

void EngineCoordinator::listenTapDisabled(bool reenabled) {
    if (!isRunning()) return;
    if (reenabled) {
        reset(ResetReason::tapDisabled);
        return;
    }
    source_->stop();
    // The state comes before the word: an observer of the reset may stop the engine, and start it again.
    const EngineState degraded = engine_state::Degraded{DegradedReason::tapDisabled};
    state_ = degraded;
    reset(ResetReason::tapDisabled);
    if (state_ != degraded) return;
    emit(engine_event::StateChanged{degraded});
    syncShortcutSource();
}

ShortcutSet EngineCoordinator::unavailableShortcuts() const {
    return shortcutSource_ && shortcutStatus_ != ShortcutStatus::notNeeded
               ? shortcutSource_->unavailableShortcuts()
               : ShortcutSet();
}

// Modifier taps go on working without the filtering source, so the engine's state stays as it is.
void EngineCoordinator::shortcutTapDisabled(bool reenabled) {
    shortcutMatcher_.reset();
    if (reenabled || shortcutStatus_ != ShortcutStatus::running) return;
    shortcutSource_->stop();
    setShortcutStatus(ShortcutStatus::unavailable);
}

void EngineCoordinator::syncShortcutSource() {
    if (!shortcutSource_) return;
    if (!isRunning() || shortcutRules_.empty()) {
        if (shortcutStatus_ == ShortcutStatus::running) shortcutSource_->stop();
        shortcutMatcher_.reset();
        setShortcutStatus(ShortcutStatus::notNeeded);
        return;
    }
    // A running source may answer through onDisabled at once. Then the next retry starts it, not this call;
    // and it gets a copy of the set, because the rules may change in reply.
    const bool wasRunning = shortcutStatus_ == ShortcutStatus::running;
    const ShortcutSet shortcuts = shortcutMatcher_.shortcuts();
    shortcutSource_->setShortcuts(shortcuts);
    if (wasRunning) return;
    setShortcutStatus(starts(*shortcutSource_) ? ShortcutStatus::running : ShortcutStatus::unavailable);
}

} // namespace hopsel
