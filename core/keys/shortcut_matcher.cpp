#include "core/keys/shortcut_matcher.h"

#include <algorithm>

namespace hopsel {

ShortcutDecision ShortcutMatcher::handle(const ShortcutInput& input) {
    if (input.kind == ShortcutInput::Kind::keyUp) return {eraseConsumed(input.keyCode), std::nullopt};
    if (input.isRepeat) {
        const bool isConsumed =
            std::find(consumed_.begin(), consumed_.end(), input.keyCode) != consumed_.end();
        return {isConsumed, std::nullopt};
    }
    eraseConsumed(input.keyCode); // its key-up was lost: the key starts afresh
    const ShortcutKey candidate{input.keyCode, heldModifiers(input.flags)};
    if (!shortcuts_.contains(candidate)) return ShortcutDecision::passThrough();
    consumed_.push_back(input.keyCode);
    return {true, candidate};
}

bool ShortcutMatcher::eraseConsumed(std::uint16_t keyCode) {
    const auto found = std::find(consumed_.begin(), consumed_.end(), keyCode);
    if (found == consumed_.end()) return false;
    consumed_.erase(found);
    return true;
}

} // namespace hopsel
