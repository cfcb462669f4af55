#include "core/keys/shortcut_key.h"

#include <limits>

namespace hopsel {

namespace {

// Decimal digits with an optional sign; "-0" is a number, anything below zero or beyond 16 bits is not.
std::optional<std::uint16_t> parseKeyCode(std::string_view text) {
    const bool isNegative = !text.empty() && text.front() == '-';
    if (isNegative || (!text.empty() && text.front() == '+')) text.remove_prefix(1);
    if (text.empty()) return std::nullopt;
    std::uint32_t value = 0;
    for (char digit : text) {
        if (digit < '0' || digit > '9') return std::nullopt;
        value = value * 10 + static_cast<std::uint32_t>(digit - '0');
        if (value > std::numeric_limits<std::uint16_t>::max()) return std::nullopt;
    }
    if (isNegative && value != 0) return std::nullopt;
    return static_cast<std::uint16_t>(value);
}

std::optional<ModifierSet> parseModifiers(std::string_view text) {
    ModifierSet modifiers;
    if (text.empty()) return modifiers;
    for (;;) {
        const std::size_t comma = text.find(',');
        const std::optional<ModifierKey> key = modifierKeyFromRawValue(text.substr(0, comma));
        if (!key) return std::nullopt;
        modifiers.insert(*key);
        if (comma == std::string_view::npos) return modifiers;
        text.remove_prefix(comma + 1);
    }
}

} // namespace

std::string ShortcutKey::storageString() const {
    std::string text = std::to_string(keyCode);
    char separator = '|';
    for (const std::string& name : sortedNames(modifiers)) {
        text += separator;
        text += name;
        separator = ',';
    }
    if (modifiers.empty()) text += separator;
    return text;
}

std::optional<ShortcutKey> ShortcutKey::fromStorageString(std::string_view text) {
    const std::size_t bar = text.find('|');
    if (bar == std::string_view::npos) return std::nullopt;
    const std::optional<std::uint16_t> code = parseKeyCode(text.substr(0, bar));
    const std::optional<ModifierSet> modifiers = parseModifiers(text.substr(bar + 1));
    if (!code || !modifiers) return std::nullopt;
    return ShortcutKey{*code, *modifiers};
}

} // namespace hopsel
