// Which key combinations may be triggers at all: nothing that types text, nothing that is a modifier.
#pragma once

#include "core/keys/shortcut_key.h"

#include <array>

namespace hopsel::shortcut_policy {

/// F1 to F20, in that order.
inline constexpr std::array<std::uint16_t, 20> functionKeyCodes{
    122, 120, 99, 118, 96, 97, 98, 100, 101, 109, 103, 111, 105, 107, 113, 106, 64, 79, 80, 90,
};

/// Return, Tab, Space, Delete, Escape, Forward Delete, Help, Home, Page Up, End, Page Down, Left, Right,
/// Down, Up.
inline constexpr std::array<std::uint16_t, 15> nonTextKeyCodes{
    36, 48, 49, 51, 53, 117, 114, 115, 116, 119, 121, 123, 124, 125, 126,
};

/// A function key alone; a function or non-text key with Shift or Option; any key with Command or Control.
bool isAllowed(const ShortcutKey& key);

} // namespace hopsel::shortcut_policy
