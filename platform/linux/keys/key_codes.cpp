#include "platform/linux/keys/key_codes.h"

#include <algorithm>
#include <array>
#include <linux/input-event-codes.h>

namespace hopsel::key_codes {

namespace {

struct Row {
    std::uint16_t linuxCode;
    std::uint16_t virtualCode;
};

// clang-format off
constexpr std::array table{
    // Top row
    Row{KEY_ESC, 53},
    Row{KEY_F1, 122}, Row{KEY_F2, 120}, Row{KEY_F3, 99},  Row{KEY_F4, 118},
    Row{KEY_F5, 96},  Row{KEY_F6, 97},  Row{KEY_F7, 98},  Row{KEY_F8, 100},
    Row{KEY_F9, 101}, Row{KEY_F10, 109}, Row{KEY_F11, 103}, Row{KEY_F12, 111},
    Row{KEY_F13, 105}, Row{KEY_F14, 107}, Row{KEY_F15, 113}, Row{KEY_F16, 106},
    Row{KEY_F17, 64}, Row{KEY_F18, 79}, Row{KEY_F19, 80}, Row{KEY_F20, 90},
    // Where a PC keyboard has these three, an extended Apple keyboard has F13 to F15
    Row{KEY_SYSRQ, 105}, Row{KEY_SCROLLLOCK, 107}, Row{KEY_PAUSE, 113},

    // Digits
    Row{KEY_GRAVE, 50},
    Row{KEY_1, 18}, Row{KEY_2, 19}, Row{KEY_3, 20}, Row{KEY_4, 21}, Row{KEY_5, 23},
    Row{KEY_6, 22}, Row{KEY_7, 26}, Row{KEY_8, 28}, Row{KEY_9, 25}, Row{KEY_0, 29},
    Row{KEY_MINUS, 27}, Row{KEY_EQUAL, 24}, Row{KEY_YEN, 93}, Row{KEY_BACKSPACE, 51},

    // Letters
    Row{KEY_TAB, 48},
    Row{KEY_Q, 12}, Row{KEY_W, 13}, Row{KEY_E, 14}, Row{KEY_R, 15}, Row{KEY_T, 17},
    Row{KEY_Y, 16}, Row{KEY_U, 32}, Row{KEY_I, 34}, Row{KEY_O, 31}, Row{KEY_P, 35},
    Row{KEY_LEFTBRACE, 33}, Row{KEY_RIGHTBRACE, 30}, Row{KEY_BACKSLASH, 42},
    Row{KEY_CAPSLOCK, 57},
    Row{KEY_A, 0}, Row{KEY_S, 1}, Row{KEY_D, 2}, Row{KEY_F, 3}, Row{KEY_G, 5},
    Row{KEY_H, 4}, Row{KEY_J, 38}, Row{KEY_K, 40}, Row{KEY_L, 37},
    Row{KEY_SEMICOLON, 41}, Row{KEY_APOSTROPHE, 39}, Row{KEY_ENTER, 36},
    Row{KEY_LEFTSHIFT, 56}, Row{KEY_102ND, 10},
    Row{KEY_Z, 6}, Row{KEY_X, 7}, Row{KEY_C, 8}, Row{KEY_V, 9}, Row{KEY_B, 11},
    Row{KEY_N, 45}, Row{KEY_M, 46}, Row{KEY_COMMA, 43}, Row{KEY_DOT, 47}, Row{KEY_SLASH, 44},
    Row{KEY_RO, 94}, Row{KEY_RIGHTSHIFT, 60},

    // Bottom row: Super is Command, Alt is Option
    Row{KEY_LEFTCTRL, 59}, Row{KEY_LEFTMETA, 55}, Row{KEY_LEFTALT, 58}, Row{KEY_SPACE, 49},
    Row{KEY_RIGHTALT, 61}, Row{KEY_RIGHTMETA, 54}, Row{KEY_COMPOSE, 110}, Row{KEY_RIGHTCTRL, 62},
    // Korean: the keys beside the space bar stand where right Option and right Control are
    Row{KEY_HANGEUL, 61}, Row{KEY_HANJA, 62},
    // Japanese: left and right of the space bar
    Row{KEY_MUHENKAN, 102}, Row{KEY_HENKAN, 104},

    // Navigation
    Row{KEY_INSERT, 114}, Row{KEY_HOME, 115}, Row{KEY_PAGEUP, 116},
    Row{KEY_DELETE, 117}, Row{KEY_END, 119}, Row{KEY_PAGEDOWN, 121},
    Row{KEY_LEFT, 123}, Row{KEY_RIGHT, 124}, Row{KEY_DOWN, 125}, Row{KEY_UP, 126},

    // Keypad
    Row{KEY_NUMLOCK, 71}, Row{KEY_KPSLASH, 75}, Row{KEY_KPASTERISK, 67}, Row{KEY_KPMINUS, 78},
    Row{KEY_KP7, 89}, Row{KEY_KP8, 91}, Row{KEY_KP9, 92}, Row{KEY_KPPLUS, 69},
    Row{KEY_KP4, 86}, Row{KEY_KP5, 87}, Row{KEY_KP6, 88},
    Row{KEY_KP1, 83}, Row{KEY_KP2, 84}, Row{KEY_KP3, 85}, Row{KEY_KPENTER, 76},
    Row{KEY_KP0, 82}, Row{KEY_KPDOT, 65}, Row{KEY_KPEQUAL, 81},
    Row{KEY_KPCOMMA, 95}, Row{KEY_KPJPCOMMA, 95},

    // Sound and the Fn key
    Row{KEY_MUTE, 74}, Row{KEY_VOLUMEDOWN, 73}, Row{KEY_VOLUMEUP, 72}, Row{KEY_FN, 63}, Row{KEY_HELP, 114},
};
// clang-format on

} // namespace

std::uint16_t virtualKeyCode(std::uint16_t linuxCode) {
    const auto* row =
        std::find_if(table.begin(), table.end(), [&](const Row& r) { return r.linuxCode == linuxCode; });
    return row != table.end() ? row->virtualCode : static_cast<std::uint16_t>(privateKeyCodeBase + linuxCode);
}

std::vector<std::uint16_t> linuxKeyCodes(std::uint16_t virtualKeyCode) {
    std::vector<std::uint16_t> codes;
    if (virtualKeyCode >= privateKeyCodeBase) {
        const auto code = static_cast<std::uint16_t>(virtualKeyCode - privateKeyCodeBase);
        if (code <= KEY_MAX && key_codes::virtualKeyCode(code) == virtualKeyCode) codes.push_back(code);
        return codes;
    }
    for (const Row& row : table)
        if (row.virtualCode == virtualKeyCode) codes.push_back(row.linuxCode);
    return codes;
}

} // namespace hopsel::key_codes
