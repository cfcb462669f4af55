#include "platform/linux/keys/printed_keys.h"

#include "platform/linux/keys/key_codes.h"

#include <linux/input-event-codes.h>
#include <xkbcommon/xkbcommon-keysyms.h>

namespace hopsel {

namespace {

bool names(xkb_keymap* keymap, std::uint16_t linuxCode, xkb_keysym_t wanted) {
    const xkb_keycode_t key = linuxCode + xkb_keycode_t{key_codes::x11Offset};
    for (xkb_layout_index_t layout = 0; layout < xkb_keymap_num_layouts_for_key(keymap, key); ++layout) {
        const xkb_keysym_t* symbols = nullptr;
        if (xkb_keymap_key_get_syms_by_level(keymap, key, layout, 0, &symbols) > 0 && symbols[0] == wanted)
            return true;
    }
    return false;
}

} // namespace

PrintedKeys readPrintedKeys(xkb_keymap* keymap) {
    PrintedKeys printed;
    if (names(keymap, KEY_RIGHTALT, XKB_KEY_Hangul))
        printed.rightAlt = PrintedKeys::RightAlt::hangul;
    else if (names(keymap, KEY_RIGHTALT, XKB_KEY_ISO_Level3_Shift))
        printed.rightAlt = PrintedKeys::RightAlt::altGr;
    if (names(keymap, KEY_RIGHTCTRL, XKB_KEY_Hangul_Hanja)) printed.rightCtrl = PrintedKeys::RightCtrl::hanja;
    return printed;
}

} // namespace hopsel
