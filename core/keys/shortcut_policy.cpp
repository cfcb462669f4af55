#include "core/keys/shortcut_policy.h"

#include <algorithm>

namespace hopsel::shortcut_policy {

namespace {

template <std::size_t size>
bool contains(const std::array<std::uint16_t, size>& codes, std::uint16_t code) {
    return std::find(codes.begin(), codes.end(), code) != codes.end();
}

bool hasCommandOrControl(ModifierSet modifiers) {
    for (ModifierKey key : modifiers) {
        if (family(key) == ModifierFamily::command || family(key) == ModifierFamily::control) return true;
    }
    return false;
}

} // namespace

bool isAllowed(const ShortcutKey& key) {
    // Caps Lock and Fn are not among the modifier keys: Control+Caps Lock is a usable trigger.
    if (modifierKeyFromKeyCode(key.keyCode)) return false;
    const bool isFunctionKey = contains(functionKeyCodes, key.keyCode);
    if (key.modifiers.empty()) return isFunctionKey;
    // Shift and Option alone type text with a character key.
    return hasCommandOrControl(key.modifiers) || isFunctionKey || contains(nonTextKeyCodes, key.keyCode);
}

} // namespace hopsel::shortcut_policy
