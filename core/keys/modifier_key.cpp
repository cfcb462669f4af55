#include "core/keys/modifier_key.h"

#include <algorithm>

namespace hopsel {

namespace {

struct KeyFacts {
    std::string_view rawValue;
    std::uint16_t keyCode;
    ModifierFamily family;
    std::uint64_t deviceMask;
};

// In the order of ModifierKey. Codes from HIToolbox/Events.h, bits from IOKit/hidsystem/IOLLEvent.h
// (NX_DEVICE*).
constexpr std::array<KeyFacts, allModifierKeys.size()> facts{{
    {"leftCommand", 55, ModifierFamily::command, 0x8},
    {"rightCommand", 54, ModifierFamily::command, 0x10},
    {"leftOption", 58, ModifierFamily::option, 0x20},
    {"rightOption", 61, ModifierFamily::option, 0x40},
    {"leftShift", 56, ModifierFamily::shift, 0x2},
    {"rightShift", 60, ModifierFamily::shift, 0x4},
    {"leftControl", 59, ModifierFamily::control, 0x1},
    {"rightControl", 62, ModifierFamily::control, 0x2000},
}};

const KeyFacts& factsOf(ModifierKey key) { return facts[static_cast<std::size_t>(key)]; }

template <typename Value>
std::optional<ModifierKey> find(Value KeyFacts::* field, Value wanted) {
    for (ModifierKey key : allModifierKeys) {
        if (factsOf(key).*field == wanted) return key;
    }
    return std::nullopt;
}

} // namespace

std::string_view rawValue(ModifierKey key) { return factsOf(key).rawValue; }

std::uint16_t keyCode(ModifierKey key) { return factsOf(key).keyCode; }

ModifierFamily family(ModifierKey key) { return factsOf(key).family; }

std::uint64_t deviceMask(ModifierKey key) { return factsOf(key).deviceMask; }

std::uint64_t flagMask(ModifierFamily family) {
    switch (family) {
    case ModifierFamily::command: return 0x100000;
    case ModifierFamily::option: return 0x80000;
    case ModifierFamily::shift: return 0x20000;
    case ModifierFamily::control: return 0x40000;
    }
    return 0;
}

std::optional<ModifierKey> modifierKeyFromRawValue(std::string_view name) {
    return find(&KeyFacts::rawValue, name);
}

std::optional<ModifierKey> modifierKeyFromKeyCode(std::uint16_t code) {
    return find(&KeyFacts::keyCode, code);
}

ModifierSet heldModifiers(std::uint64_t flags) {
    ModifierSet held;
    for (ModifierKey key : allModifierKeys) {
        const std::uint64_t both = flagMask(family(key)) | deviceMask(key);
        if ((flags & both) == both) held.insert(key);
    }
    return held;
}

std::uint64_t flagsOf(ModifierSet keys) {
    std::uint64_t flags = 0;
    for (ModifierKey key : keys) flags |= flagMask(family(key)) | deviceMask(key);
    return flags;
}

std::vector<ModifierKey> sortedByName(ModifierSet keys) {
    std::vector<ModifierKey> sorted;
    for (ModifierKey key : keys) sorted.push_back(key);
    std::sort(sorted.begin(), sorted.end(),
              [](ModifierKey left, ModifierKey right) { return rawValue(left) < rawValue(right); });
    return sorted;
}

std::vector<std::string> sortedNames(ModifierSet keys) {
    std::vector<std::string> names;
    for (ModifierKey key : sortedByName(keys)) names.emplace_back(rawValue(key));
    return names;
}

} // namespace hopsel
