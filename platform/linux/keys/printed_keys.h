// What is printed on the keys that differ from keyboard to keyboard: right Alt and right Ctrl. A plain value,
// read from the keymap, which is chosen to match the keyboard.
#pragma once

#include <cstdint>
#include <xkbcommon/xkbcommon.h>

namespace hopsel {

struct PrintedKeys {
    enum class RightAlt : std::uint8_t { alt, altGr, hangul };
    enum class RightCtrl : std::uint8_t { ctrl, hanja };

    RightAlt rightAlt = RightAlt::alt;
    RightCtrl rightCtrl = RightCtrl::ctrl;
    friend bool operator==(const PrintedKeys&, const PrintedKeys&) = default;
};

/// By any of the keymap's layouts: "us,kr" stands for a Korean keyboard.
PrintedKeys readPrintedKeys(xkb_keymap* keymap);

} // namespace hopsel
