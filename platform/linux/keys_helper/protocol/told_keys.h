// The keys whose presses and releases the key helper tells by name: those that can be modifiers. No other key
// has a number here, and so none can be told.
//
// Stateless. What each of them means to the user's keymap is for the session to say, within what `mayCountAs`
// allows.
#pragma once

#include "core/keys/modifier_key.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace hopsel::told_keys {

/// The eight modifiers, then those that a keymap may turn into one: Caps Lock, Hangul, Hanja, Menu.
inline constexpr std::size_t count = 12;

/// One bit each, in that order.
using Mask = std::uint16_t;
inline constexpr Mask maskOfAll = (1U << count) - 1;
constexpr bool contains(Mask mask, std::size_t index) { return (unsigned{mask} >> index & 1U) != 0; }

std::uint16_t linuxCode(std::size_t index);
/// None for any other key.
std::optional<std::size_t> indexOf(std::uint16_t linuxCode);

/// What each counts as for the engine; none for Caps Lock, say.
using Meanings = std::array<std::optional<ModifierKey>, count>;

/// By position, as on a plain keyboard.
Meanings plainMeanings();

/// Whether the key may count as the modifier. Shift and the keys that make a third letter of a key (AltGr,
/// Hangul) are held while text is typed: as Control or Command they would turn every such letter into a
/// combination that may be asked about.
bool mayCountAs(std::size_t index, ModifierKey modifier);

} // namespace hopsel::told_keys
