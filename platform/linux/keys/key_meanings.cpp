#include "platform/linux/keys/key_meanings.h"

#include "platform/linux/keys/key_codes.h"

#include <memory>
#include <xkbcommon/xkbcommon-keysyms.h>

namespace hopsel {

namespace {

constexpr unsigned firstKeyCode = 8;
constexpr unsigned lastKeyCode = 255;
constexpr XKeyCode preferredSilentKey = 248; // the kernel's "unknown" key, which keymaps leave alone
constexpr unsigned lastOrdinaryKey = 135;    // the menu key
/// Sixteen grabs a key are enough; a keymap with more locks than this loses the last ones.
constexpr int mostLockBits = 4;
constexpr XModifierMask shiftBit = 0x01;
constexpr XModifierMask capsLockBit = 0x02;
constexpr XModifierMask controlBit = 0x04;

struct StateDeleter {
    void operator()(xkb_state* state) const { xkb_state_unref(state); }
};
using StatePtr = std::unique_ptr<xkb_state, StateDeleter>;

/// Where practically every keymap has them.
XModifierMask usualBit(ModifierFamily family) {
    switch (family) {
    case ModifierFamily::shift: return shiftBit;
    case ModifierFamily::control: return controlBit;
    case ModifierFamily::option: return 0x08;  // Mod1
    case ModifierFamily::command: return 0x40; // Mod4
    }
    return 0;
}

std::uint16_t positionOf(XKeyCode key) { return static_cast<std::uint16_t>(key - key_codes::x11Offset); }

std::optional<ModifierKey> modifierByPosition(XKeyCode key) {
    if (key < firstKeyCode) return std::nullopt;
    return modifierKeyFromKeyCode(key_codes::virtualKeyCode(positionOf(key)));
}

/// One of the eight keys that every keyboard has, not the Korean ones that stand for two of them.
bool isAtModifierPosition(XKeyCode key) {
    const auto modifier = modifierByPosition(key);
    return modifier && key_codes::linuxKeyCodes(keyCode(*modifier)).front() == positionOf(key);
}

bool hasSymbols(xkb_keymap* keymap, XKeyCode key) {
    const auto layouts = xkb_keymap_num_layouts_for_key(keymap, key);
    for (xkb_layout_index_t layout = 0; layout < layouts; ++layout) {
        const auto levels = xkb_keymap_num_levels_for_key(keymap, key, layout);
        for (xkb_level_index_t level = 0; level < levels; ++level) {
            const xkb_keysym_t* symbols = nullptr;
            if (xkb_keymap_key_get_syms_by_level(keymap, key, layout, level, &symbols) > 0) return true;
        }
    }
    return false;
}

/// From the end of the range, where keyboards have no keys; most of the very last ones have a meaning.
std::optional<XKeyCode> findSilentKey(xkb_keymap* keymap) {
    for (unsigned code = preferredSilentKey; code > lastOrdinaryKey; --code)
        if (!hasSymbols(keymap, static_cast<XKeyCode>(code))) return static_cast<XKeyCode>(code);
    return std::nullopt;
}

xkb_keysym_t firstKeysym(xkb_keymap* keymap, XKeyCode key) {
    const xkb_keysym_t* symbols = nullptr;
    const int count = xkb_keymap_key_get_syms_by_level(keymap, key, 0, 0, &symbols);
    return count > 0 ? symbols[0] : static_cast<xkb_keysym_t>(XKB_KEY_NoSymbol);
}

bool isLockKeysym(xkb_keysym_t symbol) {
    return symbol == XKB_KEY_Caps_Lock || symbol == XKB_KEY_Shift_Lock || symbol == XKB_KEY_Num_Lock ||
           symbol == XKB_KEY_Scroll_Lock;
}

std::optional<ModifierKey> modifierByKeysym(xkb_keysym_t symbol) {
    switch (symbol) {
    case XKB_KEY_Super_L: return ModifierKey::leftCommand;
    case XKB_KEY_Super_R: return ModifierKey::rightCommand;
    case XKB_KEY_Alt_L:
    case XKB_KEY_Meta_L: return ModifierKey::leftOption;
    case XKB_KEY_Alt_R:
    case XKB_KEY_Meta_R: return ModifierKey::rightOption;
    case XKB_KEY_Shift_L: return ModifierKey::leftShift;
    case XKB_KEY_Shift_R: return ModifierKey::rightShift;
    case XKB_KEY_Control_L: return ModifierKey::leftControl;
    case XKB_KEY_Control_R: return ModifierKey::rightControl;
    default: return std::nullopt;
    }
}

/// These name a duty rather than a side: they say what an extra key is, but do not rename one of the eight.
std::optional<ModifierKey> modifierOfExtraKey(xkb_keysym_t symbol) {
    switch (symbol) {
    case XKB_KEY_ISO_Level3_Shift:
    case XKB_KEY_Hangul: return ModifierKey::rightOption;
    case XKB_KEY_Hangul_Hanja: return ModifierKey::rightControl;
    default: return std::nullopt;
    }
}

XModifierMask pressedBits(xkb_keymap* keymap, XKeyCode key, xkb_layout_index_t layout) {
    const StatePtr state(xkb_state_new(keymap));
    xkb_state_update_mask(state.get(), 0, 0, 0, 0, 0, layout);
    xkb_state_update_key(state.get(), key, XKB_KEY_DOWN);
    return static_cast<XModifierMask>(xkb_state_serialize_mods(state.get(), XKB_STATE_MODS_DEPRESSED));
}

XModifierMask lockedBits(xkb_keymap* keymap, XKeyCode key) {
    const StatePtr state(xkb_state_new(keymap));
    xkb_state_update_key(state.get(), key, XKB_KEY_DOWN);
    xkb_state_update_key(state.get(), key, XKB_KEY_UP);
    return static_cast<XModifierMask>(xkb_state_serialize_mods(state.get(), XKB_STATE_MODS_LOCKED));
}

XModifierMask firstBits(XModifierMask mask, int count) {
    XModifierMask kept = 0;
    for (unsigned bit = 1; bit <= 0x80 && count > 0; bit <<= 1U)
        if ((mask & bit) != 0) {
            kept = static_cast<XModifierMask>(kept | bit);
            --count;
        }
    return kept;
}

} // namespace

KeyMeanings::KeyMeanings() : silentKey_(preferredSilentKey), lockBits_(capsLockBit) {
    for (unsigned code = firstKeyCode; code <= lastKeyCode; ++code) {
        const auto key = static_cast<XKeyCode>(code);
        modifiers_[key] = modifierByPosition(key);
        capsLocks_[key] = key_codes::virtualKeyCode(positionOf(key)) == capsLockKeyCode;
    }
    for (const ModifierKey key : allModifierKeys)
        modifierMasks_[static_cast<std::size_t>(key)] = {usualBit(family(key))};
}

KeyMeanings::KeyMeanings(xkb_keymap* keymap)
    : silentKey_(findSilentKey(keymap)), printed_(readPrintedKeys(keymap)) {
    const auto layouts = xkb_keymap_num_layouts(keymap);
    XModifierMask locks = 0;
    for (unsigned code = firstKeyCode; code <= lastKeyCode; ++code) {
        const auto key = static_cast<XKeyCode>(code);
        readKey(keymap, key);
        locks = static_cast<XModifierMask>(locks | lockedBits(keymap, key));
        for (xkb_layout_index_t layout = 0; modifiers_[key] && layout < layouts; ++layout)
            readMasks(keymap, key, layout);
    }
    lockBits_ = firstBits(static_cast<XModifierMask>(locks & ~(shiftBit | controlBit)), mostLockBits);
}

KeyMeaning KeyMeanings::of(XKeyCode key, xkb_keysym_t symbol) {
    if (const auto named = modifierByKeysym(symbol)) return {named, false};
    // A modifier key that was turned into a lock is no modifier any more; otherwise its place decides.
    if (isLockKeysym(symbol)) return {std::nullopt, symbol == XKB_KEY_Caps_Lock};
    const auto placed = modifierByPosition(key);
    return {placed ? placed : modifierOfExtraKey(symbol), false};
}

void KeyMeanings::readKey(xkb_keymap* keymap, XKeyCode key) {
    const KeyMeaning meaning = of(key, firstKeysym(keymap, key));
    capsLocks_[key] = meaning.isCapsLock;
    modifiers_[key] = meaning.modifier;
}

void KeyMeanings::readMasks(xkb_keymap* keymap, XKeyCode key, xkb_layout_index_t layout) {
    const XModifierMask bits = pressedBits(keymap, key, layout);
    // A key that sets no bit can only be caught by catching its shortcuts' keys without any modifier, and
    // plain typing with them. For one of the eight that must be; an extra key (Hangul, Hanja) is not worth
    // it.
    if (bits != 0 || isAtModifierPosition(key))
        modifierMasks_[static_cast<std::size_t>(*modifiers_[key])].insert(bits);
}

std::set<XModifierMask> KeyMeanings::masks(ModifierSet modifiers) const {
    std::set<XModifierMask> combined{0};
    for (const ModifierKey modifier : modifiers) {
        std::set<XModifierMask> next;
        for (const XModifierMask own : modifierMasks_[static_cast<std::size_t>(modifier)])
            for (const XModifierMask other : combined) next.insert(static_cast<XModifierMask>(own | other));
        combined = std::move(next);
    }
    // Every subset of the lock bits, by counting down through the mask.
    std::set<XModifierMask> all;
    for (const XModifierMask mask : combined)
        for (unsigned locks = lockBits_;; locks = (locks - 1) & lockBits_) {
            all.insert(static_cast<XModifierMask>(mask | locks));
            if (locks == 0) break;
        }
    return all;
}

std::vector<KeyGrab> KeyMeanings::grabs(const ShortcutKey& shortcut) const {
    const auto wanted = masks(shortcut.modifiers);
    std::vector<KeyGrab> grabs;
    for (const std::uint16_t position : key_codes::linuxKeyCodes(shortcut.keyCode)) {
        const unsigned code = position + unsigned{key_codes::x11Offset};
        if (code <= lastKeyCode && !wanted.empty()) grabs.push_back({static_cast<XKeyCode>(code), wanted});
    }
    return grabs;
}

} // namespace hopsel
