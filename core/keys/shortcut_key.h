// A key combination as a trigger (`ShortcutKey`) and one key event as the filtering source delivers it
// (`ShortcutInput`). Plain values.
#pragma once

#include "core/keys/modifier_key.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>

namespace hopsel {

struct ShortcutKey {
    std::uint16_t keyCode = 0; ///< virtual key code of the main key
    ModifierSet modifiers;     ///< exactly these must be held; left and right are different keys

    /// "49|leftCommand,leftShift": equal keys have equal texts.
    std::string storageString() const;
    /// The reverse; anything that `storageString` could not mean gives no key.
    static std::optional<ShortcutKey> fromStorageString(std::string_view text);

    friend bool operator==(const ShortcutKey&, const ShortcutKey&) = default;
};

struct ShortcutInput {
    enum class Kind : std::uint8_t { keyDown, keyUp };

    Kind kind = Kind::keyDown;
    std::uint16_t keyCode = 0; ///< virtual key code
    std::uint64_t flags = 0;   ///< flag word of the event
    bool isRepeat = false;     ///< the key-down is an auto-repeat
    bool synthetic = false;    ///< posted by this program itself
    friend bool operator==(const ShortcutInput&, const ShortcutInput&) = default;
};

} // namespace hopsel

template <>
struct std::hash<hopsel::ShortcutKey> {
    std::size_t operator()(const hopsel::ShortcutKey& key) const noexcept {
        return (static_cast<std::size_t>(key.keyCode) << 8U) | key.modifiers.bits();
    }
};

namespace hopsel {
using ShortcutSet = std::unordered_set<ShortcutKey>;
}
