#include "app/linux/session/accelerator.h"

#include "core/platform/identifier_prefix.h"
#include "core/platform/linux/keys/key_codes.h"

#include <algorithm>
#include <map>
#include <memory>
#include <vector>
#include <xkbcommon/xkbcommon.h>

namespace hopsel {

namespace {

struct Words {
    std::vector<std::string> modifiers;
    std::string key;
};

std::string lowered(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), asciiLowered);
    return text;
}

Words splitGtk(const std::string& text) {
    Words words;
    std::size_t at = 0;
    while (at < text.size() && text[at] == '<') {
        const std::size_t end = text.find('>', at);
        if (end == std::string::npos) return {};
        words.modifiers.push_back(text.substr(at + 1, end - at - 1));
        at = end + 1;
    }
    words.key = text.substr(at);
    return words;
}

Words splitFcitx(const std::string& text) {
    Words words;
    std::size_t at = 0;
    for (std::size_t plus = text.find('+'); plus != std::string::npos; plus = text.find('+', at)) {
        words.modifiers.push_back(text.substr(at, plus - at));
        at = plus + 1;
    }
    words.key = text.substr(at);
    return words;
}

std::optional<ModifierKey> modifierNamed(const std::string& name) {
    const std::string word = lowered(name);
    if (word == "shift") return ModifierKey::leftShift;
    if (word == "control" || word == "ctrl" || word == "primary") return ModifierKey::leftControl;
    if (word == "alt" || word == "mod1" || word == "meta") return ModifierKey::leftOption;
    if (word == "super" || word == "mod4" || word == "win") return ModifierKey::leftCommand;
    return std::nullopt;
}

/// What each key of a US keyboard writes without modifiers, to its Linux code.
const std::map<xkb_keysym_t, std::uint16_t>& usKeys() {
    static const std::map<xkb_keysym_t, std::uint16_t> keys = [] {
        std::map<xkb_keysym_t, std::uint16_t> found;
        const std::unique_ptr<xkb_context, decltype(&xkb_context_unref)> context(
            xkb_context_new(XKB_CONTEXT_NO_ENVIRONMENT_NAMES), xkb_context_unref);
        if (!context) return found;
        const xkb_rule_names names{"evdev", "pc105", "us", "", ""};
        const std::unique_ptr<xkb_keymap, decltype(&xkb_keymap_unref)> keymap(
            xkb_keymap_new_from_names(context.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS), xkb_keymap_unref);
        if (!keymap) return found;
        const xkb_keycode_t last = std::min<xkb_keycode_t>(xkb_keymap_max_keycode(keymap.get()), 255);
        for (xkb_keycode_t code = xkb_keymap_min_keycode(keymap.get()); code <= last; ++code) {
            const xkb_keysym_t* symbols = nullptr;
            if (xkb_keymap_key_get_syms_by_level(keymap.get(), code, 0, 0, &symbols) == 1)
                found.emplace(symbols[0], static_cast<std::uint16_t>(code - key_codes::x11Offset));
        }
        return found;
    }();
    return keys;
}

} // namespace

std::optional<ShortcutKey> shortcutFromAccelerator(const std::string& text) {
    const Words words = !text.empty() && text.front() == '<' ? splitGtk(text) : splitFcitx(text);
    ShortcutKey shortcut;
    for (const std::string& name : words.modifiers) {
        const auto modifier = modifierNamed(name);
        if (!modifier) return std::nullopt;
        shortcut.modifiers.insert(*modifier);
    }
    xkb_keysym_t symbol = xkb_keysym_from_name(words.key.c_str(), XKB_KEYSYM_NO_FLAGS);
    if (symbol == XKB_KEY_NoSymbol)
        symbol = xkb_keysym_from_name(words.key.c_str(), XKB_KEYSYM_CASE_INSENSITIVE);
    const auto key = usKeys().find(xkb_keysym_to_lower(symbol));
    if (symbol == XKB_KEY_NoSymbol || key == usKeys().end()) return std::nullopt;
    shortcut.keyCode = key_codes::virtualKeyCode(key->second);
    if (modifierKeyFromKeyCode(shortcut.keyCode) || shortcut.keyCode == capsLockKeyCode) return std::nullopt;
    return shortcut;
}

} // namespace hopsel
