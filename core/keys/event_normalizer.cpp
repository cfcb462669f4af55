#include "core/keys/event_normalizer.h"

#include <algorithm>

namespace hopsel {

namespace {

bool hasFamilyBit(ModifierKey key, std::uint64_t flags) { return (flags & flagMask(family(key))) != 0; }

bool hasOwnBit(ModifierKey key, std::uint64_t flags) { return (flags & deviceMask(key)) != 0; }

// False for keyboards, virtual devices and remappers that say only "some Shift is down".
bool familyReportsDeviceBits(ModifierFamily wanted, std::uint64_t flags) {
    return std::any_of(allModifierKeys.begin(), allModifierKeys.end(),
                       [&](ModifierKey key) { return family(key) == wanted && hasOwnBit(key, flags); });
}

} // namespace

bool EventNormalizer::isPressed(ModifierKey key, std::uint64_t flags) const {
    if (!hasFamilyBit(key, flags)) return false;
    if (hasOwnBit(key, flags)) return true;
    if (familyReportsDeviceBits(family(key), flags)) return false; // it is the other side that is down
    // No side is told and some key of the family is still down: a change of this key can only be the press of
    // a key that was up, or the release of one that was down.
    return !held_.contains(key);
}

void EventNormalizer::resync(std::uint64_t flags) {
    for (ModifierKey key : held_) {
        const bool stillDown = hasFamilyBit(key, flags) &&
                               (hasOwnBit(key, flags) || !familyReportsDeviceBits(family(key), flags));
        if (!stillDown) held_.remove(key);
    }
}

std::optional<KeyEventKind> EventNormalizer::applyFlagsChange(const RawEvent& raw) {
    const std::optional<ModifierKey> key = modifierKeyFromKeyCode(raw.keyCode);
    if (!key) return std::nullopt;
    if (isPressed(*key, raw.flags)) {
        held_.insert(*key);
        return key_event_kind::ModifierDown{*key};
    }
    if (!held_.contains(*key)) return std::nullopt; // went down before the engine started
    held_.remove(*key);
    return key_event_kind::ModifierUp{*key};
}

std::optional<KeyEvent> EventNormalizer::normalize(const RawEvent& raw) {
    std::optional<KeyEventKind> kind;
    switch (raw.type) {
    // The change itself is read against the old set, so it is applied before the set is repaired.
    case RawEventType::flagsChanged: kind = applyFlagsChange(raw); break;
    case RawEventType::keyDown: kind = key_event_kind::KeyDown{}; break;
    case RawEventType::keyUp: kind = key_event_kind::KeyUp{}; break;
    case RawEventType::mouseDown: kind = key_event_kind::MouseDown{}; break;
    case RawEventType::wheelStep: kind = key_event_kind::MouseDown{true}; break;
    }
    resync(raw.flags);
    if (!kind) return std::nullopt;
    return KeyEvent{*kind, held_, raw.timestamp};
}

} // namespace hopsel
