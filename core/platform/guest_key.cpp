#include "core/platform/guest_key.h"

#include <algorithm>

namespace hopsel::guest_key_sequence {

std::vector<SyntheticKeyEvent> events(const ShortcutKey& key) {
    std::vector<ModifierKey> modifiers = sortedByName(key.modifiers);

    // Each event carries the flags as they are once it happened, so a modifier's press has its own bits and
    // its release has not; a family's bit goes with the last of its sides.
    std::vector<SyntheticKeyEvent> sequence;
    ModifierSet held;
    for (ModifierKey modifier : modifiers) {
        held.insert(modifier);
        sequence.push_back({keyCode(modifier), true, flagsOf(held), true});
    }
    sequence.push_back({key.keyCode, true, flagsOf(held), false});
    sequence.push_back({key.keyCode, false, flagsOf(held), false});
    std::reverse(modifiers.begin(), modifiers.end());
    for (ModifierKey modifier : modifiers) {
        held.remove(modifier);
        sequence.push_back({keyCode(modifier), false, flagsOf(held), true});
    }
    return sequence;
}

} // namespace hopsel::guest_key_sequence
