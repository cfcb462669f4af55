#include "platform/linux/switch_keys/key_accelerator.h"

#include "platform/linux/keys/key_codes.h"

#include <algorithm>
#include <memory>
#include <unordered_map>
#include <xkbcommon/xkbcommon.h>

namespace hopsel {

namespace {

using KeyPositions = std::unordered_map<xkb_keysym_t, std::uint16_t>;

struct XkbUnref {
    void operator()(xkb_context* context) const { xkb_context_unref(context); }
    void operator()(xkb_keymap* keymap) const { xkb_keymap_unref(keymap); }
};

constexpr std::size_t longestAccelerator = 128;

constexpr struct {
    std::string_view name; // in lower case
    ModifierKey key;
} modifierNames[] = {
    {"super", ModifierKey::leftCommand},   {"mod4", ModifierKey::leftCommand},
    {"alt", ModifierKey::leftOption},      {"mod1", ModifierKey::leftOption},
    {"meta", ModifierKey::leftOption},     {"shift", ModifierKey::leftShift},
    {"shft", ModifierKey::leftShift},      {"control", ModifierKey::leftControl},
    {"ctrl", ModifierKey::leftControl},    {"ctl", ModifierKey::leftControl},
    {"primary", ModifierKey::leftControl},
};

bool equalsLowered(std::string_view text, std::string_view lowerCase) {
    return std::equal(text.begin(), text.end(), lowerCase.begin(), lowerCase.end(), [](char a, char b) {
        return (a >= 'A' && a <= 'Z' ? static_cast<char>(a - 'A' + 'a') : a) == b;
    });
}

std::optional<ModifierKey> modifierNamed(std::string_view name) {
    for (const auto& row : modifierNames)
        if (equalsLowered(name, row.name)) return row.key;
    return std::nullopt;
}

/// Linux codes by what the keys type. A symbol that needs no Shift goes before one that does.
KeyPositions americanKeyboard() {
    KeyPositions positions;
    const std::unique_ptr<xkb_context, XkbUnref> context(xkb_context_new(XKB_CONTEXT_NO_ENVIRONMENT_NAMES));
    if (!context) return positions;
    const xkb_rule_names names{"evdev", "pc105", "us", "", ""};
    const std::unique_ptr<xkb_keymap, XkbUnref> keymap(
        xkb_keymap_new_from_names(context.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS));
    if (!keymap) return positions;

    const xkb_keycode_t first =
        std::max<xkb_keycode_t>(xkb_keymap_min_keycode(keymap.get()), key_codes::x11Offset);
    const xkb_keycode_t last = xkb_keymap_max_keycode(keymap.get());
    for (xkb_level_index_t level = 0; level < 2; ++level)
        for (xkb_keycode_t key = first; key <= last; ++key) {
            const xkb_keysym_t* symbols = nullptr;
            const int count = xkb_keymap_key_get_syms_by_level(keymap.get(), key, 0, level, &symbols);
            for (int i = 0; i < count; ++i)
                positions.emplace(symbols[i], static_cast<std::uint16_t>(key - key_codes::x11Offset));
        }
    return positions;
}

std::optional<std::uint16_t> keyCodeNamed(const std::string& name) {
    const xkb_keysym_t symbol = xkb_keysym_from_name(name.c_str(), XKB_KEYSYM_CASE_INSENSITIVE);
    // Also where no keyboard has such a key: keymaps give every modifier a place beyond the real keys.
    if (symbol >= XKB_KEY_Shift_L && symbol <= XKB_KEY_Hyper_R) return std::nullopt;
    static const KeyPositions positions = americanKeyboard();
    const auto position = positions.find(symbol);
    if (symbol == XKB_KEY_NoSymbol || position == positions.end()) return std::nullopt;
    const std::uint16_t code = key_codes::virtualKeyCode(position->second);
    if (modifierKeyFromKeyCode(code)) return std::nullopt;
    return code;
}

} // namespace

std::optional<ShortcutKey> shortcutFromAccelerator(std::string_view accelerator) {
    std::string_view rest = accelerator;
    const auto isPrintable = [](char letter) { return letter > ' ' && letter <= '~'; };
    if (rest.size() > longestAccelerator || !std::all_of(rest.begin(), rest.end(), isPrintable))
        return std::nullopt;

    ShortcutKey shortcut;
    while (true) {
        const bool isBracketed = !rest.empty() && rest.front() == '<';
        const std::size_t end = rest.find(isBracketed ? '>' : '+');
        if (end == std::string_view::npos) break;
        const auto modifier = modifierNamed(isBracketed ? rest.substr(1, end - 1) : rest.substr(0, end));
        if (!modifier) return std::nullopt;
        shortcut.modifiers.insert(*modifier);
        rest.remove_prefix(end + 1);
    }
    const auto code = keyCodeNamed(std::string(rest));
    if (!code) return std::nullopt;
    shortcut.keyCode = *code;
    return shortcut;
}

std::vector<ShortcutKey> shortcutsFromAccelerators(const std::vector<std::string>& accelerators) {
    std::vector<ShortcutKey> shortcuts;
    for (const std::string& accelerator : accelerators)
        if (const auto shortcut = shortcutFromAccelerator(accelerator)) shortcuts.push_back(*shortcut);
    return shortcuts;
}

} // namespace hopsel
