#include "core/keys/key_state_machine.h"

namespace hopsel {

Decision KeyStateMachine::handle(const KeyEvent& event, bool suppressSwitch) {
    reconcile(event);
    if (const auto* down = std::get_if<key_event_kind::ModifierDown>(&event.kind)) {
        press(down->key, event);
    } else if (const auto* up = std::get_if<key_event_kind::ModifierUp>(&event.kind)) {
        return release(up->key, event, suppressSwitch);
    } else if (!std::holds_alternative<key_event_kind::KeyUp>(event.kind)) {
        demotePending(std::nullopt);
    }
    // A key-up spoils nothing: it ends a key that was pressed before the trigger, as fast typists do.
    return decision::PassThrough{};
}

// Drops keys that the event shows to be up although their release was never seen; such a tap does not fire.
void KeyStateMachine::reconcile(const KeyEvent& event) {
    const auto* up = std::get_if<key_event_kind::ModifierUp>(&event.kind);
    for (ModifierKey key : triggers_) {
        const bool isReleased = up != nullptr && up->key == key;
        if (!isReleased && !event.held.contains(key)) state(key).reset();
    }
}

void KeyStateMachine::demotePending(std::optional<ModifierKey> except) {
    for (ModifierKey key : triggers_) {
        if (key != except && state(key)) state(key) = Combination{};
    }
}

void KeyStateMachine::press(ModifierKey key, const KeyEvent& event) {
    demotePending(key);
    if (!triggers_.contains(key)) return;
    ModifierSet others = event.held;
    others.remove(key);
    if (others.empty()) {
        state(key) = Pending{event.timestamp};
    } else {
        state(key) = Combination{};
    }
}

Decision KeyStateMachine::release(ModifierKey key, const KeyEvent& event, bool suppressSwitch) {
    const std::optional<State> tracked = state(key);
    state(key).reset();
    const auto* pending = tracked ? std::get_if<Pending>(&*tracked) : nullptr;
    if (pending == nullptr) return decision::PassThrough{};
    const double duration = event.timestamp - pending->start;
    const bool isTap = duration >= 0 && duration <= tapMax_; // false for not-a-number
    if (!isTap) return decision::PassThrough{};
    if (suppressSwitch) return decision::SwitchSuppressed{key};
    return decision::SwitchTriggered{key};
}

} // namespace hopsel
