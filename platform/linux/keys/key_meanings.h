// What each key of the X server's keymap means to the engine: which of the eight modifiers it is, and which
// of the server's own modifier bits a shortcut's modifiers set.
//
// Read from the keymap whenever it changes and then immutable. Ordinary keys go by position alone. Modifiers
// go by position unless the keymap says that a key is another of the eight (Alt and Super swapped, Caps Lock
// as Control), and AltGr, Hangul and Hanja count as right Option, right Option and right Control.
#pragma once

#include "core/keys/shortcut_key.h"
#include "platform/linux/keys/held_keys.h"
#include "platform/linux/keys/printed_keys.h"

#include <array>
#include <bitset>
#include <cstdint>
#include <optional>
#include <set>
#include <vector>
#include <xkbcommon/xkbcommon.h>

namespace hopsel {

/// A key by the number that the X server gives it (8 to 255).
using XKeyCode = std::uint8_t;
/// The server's eight real modifier bits: Shift, Lock, Control, Mod1 to Mod5.
using XModifierMask = std::uint8_t;

/// What a passive grab must name: a key, and all modifier states in which it is to be caught.
struct KeyGrab {
    XKeyCode keyCode;
    std::set<XModifierMask> masks;
};

class KeyMeanings {
  public:
    /// By position alone, as long as no keymap could be read.
    KeyMeanings();
    explicit KeyMeanings(xkb_keymap* keymap);

    /// What a key is that means this symbol when it is pressed: for those who are told of keys one by one.
    static KeyMeaning of(XKeyCode key, xkb_keysym_t symbol);

    std::optional<ModifierKey> modifier(XKeyCode key) const { return modifiers_[key]; }
    bool isCapsLock(XKeyCode key) const { return capsLocks_[key]; }
    const PrintedKeys& printed() const { return printed_; }

    /// A key that means nothing in any layout, so that no program acts on a press of it.
    std::optional<XKeyCode> silentKey() const { return silentKey_; }

    /// The modifier bits that locks of this keymap can set (Caps Lock, Num Lock, ...): a shortcut works
    /// whichever of them are on.
    XModifierMask lockBits() const { return lockBits_; }

    /// The grabs that catch the shortcut with any locks on. They also catch the same keys with the other
    /// side's modifiers: X does not tell sides apart, the caller does. Empty if no key of an X keyboard has
    /// the code.
    std::vector<KeyGrab> grabs(const ShortcutKey& shortcut) const;

  private:
    void readKey(xkb_keymap* keymap, XKeyCode key);
    void readMasks(xkb_keymap* keymap, XKeyCode key, xkb_layout_index_t layout);
    std::set<XModifierMask> masks(ModifierSet modifiers) const;

    std::array<std::optional<ModifierKey>, 256> modifiers_{};
    std::optional<XKeyCode> silentKey_;
    std::bitset<256> capsLocks_;
    /// For each of the eight, the bits its keys set: more than one entry where layouts or two keys differ.
    std::array<std::set<XModifierMask>, allModifierKeys.size()> modifierMasks_;
    XModifierMask lockBits_ = 0;
    PrintedKeys printed_;
};

} // namespace hopsel
