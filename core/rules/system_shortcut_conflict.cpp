#include "core/rules/system_shortcut_conflict.h"

#include <cmath>
#include <nlohmann/json.hpp>
#include <optional>

namespace hopsel::system_shortcut_conflict {
namespace {

using Json = nlohmann::json;

constexpr ModifierFamily allFamilies[] = {ModifierFamily::command, ModifierFamily::option,
                                          ModifierFamily::shift, ModifierFamily::control};

// What the system does while the user has never touched the setting.
constexpr struct {
    const char* number;
    ShortcutKey key;
} stockDefaults[] = {
    {"60", {49, {ModifierKey::leftControl}}},
    {"61", {49, {ModifierKey::leftControl, ModifierKey::leftOption}}},
};

std::uint64_t familyFlags(ModifierSet keys) {
    std::uint64_t flags = 0;
    for (ModifierKey key : keys) flags |= flagMask(family(key));
    return flags;
}

std::uint64_t familyFlags(std::uint64_t flags) {
    std::uint64_t known = 0;
    for (ModifierFamily family : allFamilies) known |= flagMask(family);
    return flags & known;
}

/// Property lists know one kind of number; a whole one may arrive as a float.
std::optional<std::uint64_t> wholeNumber(const Json& value) {
    if (value.is_number_integer()) return value.get<std::uint64_t>();
    if (!value.is_number_float()) return std::nullopt;
    const double number = value.get<double>();
    if (!(number >= 0 && number < 0x1p63) || number != std::trunc(number)) return std::nullopt;
    return static_cast<std::uint64_t>(number);
}

bool isOn(const Json& enabled) {
    if (enabled.is_boolean()) return enabled.get<bool>();
    return enabled.is_number() && enabled != 0;
}

bool entryConflicts(const ShortcutKey& key, const Json& entry) {
    if (!entry.is_object() || !isOn(entry.value("enabled", Json()))) return false;
    const Json value = entry.value("value", Json());
    if (!value.is_object()) return false;
    const Json parameters = value.value("parameters", Json());
    if (!parameters.is_array() || parameters.size() < 3) return false;
    const auto keyCode = wholeNumber(parameters[1]);
    const auto flags = wholeNumber(parameters[2]);
    return keyCode && flags && *keyCode == key.keyCode && familyFlags(*flags) == familyFlags(key.modifiers);
}

} // namespace

bool conflicts(const ShortcutKey& key, const Json& hotKeys) {
    for (const auto& stock : stockDefaults) {
        const bool present = hotKeys.is_object() && hotKeys.contains(stock.number);
        if (present ? entryConflicts(key, hotKeys[stock.number])
                    : key.keyCode == stock.key.keyCode &&
                          familyFlags(key.modifiers) == familyFlags(stock.key.modifiers)) {
            return true;
        }
    }
    return false;
}

bool conflictsWithSystem(const ShortcutKey& key, const HotKeyReader& readHotKeys) {
    return conflicts(key, readHotKeys());
}

} // namespace hopsel::system_shortcut_conflict
