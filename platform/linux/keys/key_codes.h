// Which virtual key code a key of a Linux keyboard has.
//
// The engine, the rules and the settings file speak macOS virtual key codes on every system. Keys are matched
// by position, so a rule means the same finger movement everywhere whatever layout is loaded. A key that
// Apple's keyboards lack keeps a code of its own (`privateKeyCodeBase` plus its Linux code), so every key can
// be part of a shortcut. A pure table; the codes are those of <linux/input-event-codes.h>, eight less than X
// key codes.
#pragma once

#include <cstdint>
#include <vector>

namespace hopsel::key_codes {

/// Added to the Linux code of a key that has no counterpart; no virtual key code lies this high.
inline constexpr std::uint16_t privateKeyCodeBase = 256;

/// X key codes are Linux codes plus this; it comes from the X protocol's smallest key code.
inline constexpr std::uint16_t x11Offset = 8;

std::uint16_t virtualKeyCode(std::uint16_t linuxCode);

/// Every Linux key that counts as the virtual key code: Print Screen is F13, for example, and F13 is too.
std::vector<std::uint16_t> linuxKeyCodes(std::uint16_t virtualKeyCode);

} // namespace hopsel::key_codes
