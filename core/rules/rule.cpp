#include "core/rules/rule.h"

#include "core/base/overloaded.h"

#include <array>
#include <random>
#include <string_view>
#include <utility>

namespace hopsel {
namespace {

std::string makeIdentifier() {
    std::random_device random;
    std::array<std::uint8_t, 16> bytes{};
    for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random());
    bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0FU) | 0x40U); // version 4: random
    bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3FU) | 0x80U); // the variant that has versions

    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
        text += digits[bytes[i] >> 4U];
        text += digits[bytes[i] & 0x0FU];
    }
    return text;
}

std::size_t combine(std::size_t seed, std::size_t next) {
    return seed ^ (next + 0x9E3779B97F4A7C15U + (seed << 6U) + (seed >> 2U));
}

} // namespace

Rule Rule::make(Trigger trigger, Action action, bool enabled) {
    return {makeIdentifier(), enabled, trigger, std::move(action)};
}

std::optional<ModifierKey> tappedKey(const Trigger& trigger) {
    using Key = std::optional<ModifierKey>;
    return std::visit(Overloaded{[](const trigger::ModifierTap& tap) -> Key { return tap.key; },
                                 [](const trigger::Shortcut&) -> Key { return std::nullopt; }},
                      trigger);
}

std::optional<ShortcutKey> swallowedShortcut(const Trigger& trigger) {
    using Key = std::optional<ShortcutKey>;
    return std::visit(Overloaded{[](const trigger::ModifierTap&) -> Key { return std::nullopt; },
                                 [](const trigger::Shortcut& shortcut) -> Key { return shortcut.key; }},
                      trigger);
}

std::int64_t schemaVersion(const Trigger& trigger) {
    return std::visit(Overloaded{[](const trigger::ModifierTap&) { return Config::baseSchemaVersion; },
                                 [](const trigger::Shortcut&) { return std::int64_t{2}; }},
                      trigger);
}

} // namespace hopsel

std::size_t std::hash<hopsel::InputSourceRef>::operator()(const hopsel::InputSourceRef& ref) const noexcept {
    return hopsel::combine(std::hash<std::string>{}(ref.sourceId), std::hash<std::string>{}(ref.displayName));
}

std::size_t std::hash<hopsel::Trigger>::operator()(const hopsel::Trigger& trigger) const noexcept {
    const std::size_t content =
        std::visit(hopsel::Overloaded{[](const hopsel::trigger::ModifierTap& tap) {
                                          return static_cast<std::size_t>(tap.key);
                                      },
                                      [](const hopsel::trigger::Shortcut& shortcut) {
                                          return std::hash<hopsel::ShortcutKey>{}(shortcut.key);
                                      }},
                   trigger);
    return hopsel::combine(trigger.index(), content);
}
