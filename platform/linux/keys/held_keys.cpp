#include "platform/linux/keys/held_keys.h"

#include <utility>

namespace hopsel {

std::optional<RawEvent> HeldKeys::press(std::uint8_t key, KeyMeaning meaning) {
    down_.set(key);
    if (meaning.isCapsLock) return event(RawEventType::flagsChanged, capsLockKeyCode);
    if (!meaning.modifier) return event(RawEventType::keyDown, 0);

    const bool alreadyHeld = modifiers().contains(*meaning.modifier) && heldAs_[key] != meaning.modifier;
    heldAs_[key] = meaning.modifier;
    if (alreadyHeld) return std::nullopt;
    return event(RawEventType::flagsChanged, keyCode(*meaning.modifier));
}

std::optional<RawEvent> HeldKeys::release(std::uint8_t key, KeyMeaning meaning) {
    down_.reset(key);
    const auto heldAs = std::exchange(heldAs_[key], std::nullopt);
    if (const auto modifier = heldAs ? heldAs : meaning.modifier) {
        if (modifiers().contains(*modifier)) return std::nullopt;
        return event(RawEventType::flagsChanged, keyCode(*modifier));
    }
    if (meaning.isCapsLock) return event(RawEventType::flagsChanged, capsLockKeyCode);
    return event(RawEventType::keyUp, 0);
}

ModifierSet HeldKeys::modifiers() const {
    ModifierSet held;
    for (const auto& modifier : heldAs_)
        if (modifier) held.insert(*modifier);
    return held;
}

std::uint64_t HeldKeys::flags() const { return flagsOf(modifiers()) | (capsLock_ ? capsLockFlag : 0); }

RawEvent HeldKeys::event(RawEventType type, std::uint16_t keyCode) const {
    return {.type = type, .keyCode = keyCode, .flags = flags(), .timestamp = 0, .synthetic = false};
}

} // namespace hopsel
