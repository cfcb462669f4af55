#include "platform/linux/keys_helper/protocol/told_keys.h"

#include <algorithm>
#include <linux/input-event-codes.h>

namespace hopsel::told_keys {

namespace {

struct Row {
    std::uint16_t linuxCode;
    std::optional<ModifierKey> plainMeaning;
    bool isHeldWhileTyping;
};

constexpr std::array<Row, count> rows{{
    {KEY_LEFTMETA, ModifierKey::leftCommand, false},
    {KEY_RIGHTMETA, ModifierKey::rightCommand, false},
    {KEY_LEFTALT, ModifierKey::leftOption, false},
    {KEY_RIGHTALT, ModifierKey::rightOption, true},
    {KEY_LEFTSHIFT, ModifierKey::leftShift, true},
    {KEY_RIGHTSHIFT, ModifierKey::rightShift, true},
    {KEY_LEFTCTRL, ModifierKey::leftControl, false},
    {KEY_RIGHTCTRL, ModifierKey::rightControl, false},
    {KEY_CAPSLOCK, std::nullopt, false},
    {KEY_HANGEUL, ModifierKey::rightOption, true},
    {KEY_HANJA, ModifierKey::rightControl, false},
    {KEY_COMPOSE, std::nullopt, false},
}};

} // namespace

std::uint16_t linuxCode(std::size_t index) { return rows.at(index).linuxCode; }

std::optional<std::size_t> indexOf(std::uint16_t linuxCode) {
    const auto* row =
        std::find_if(rows.begin(), rows.end(), [&](const Row& r) { return r.linuxCode == linuxCode; });
    if (row == rows.end()) return std::nullopt;
    return static_cast<std::size_t>(row - rows.begin());
}

Meanings plainMeanings() {
    Meanings meanings;
    for (std::size_t index = 0; index < count; ++index) meanings.at(index) = rows.at(index).plainMeaning;
    return meanings;
}

bool mayCountAs(std::size_t index, ModifierKey modifier) {
    const bool makesCombinations =
        family(modifier) == ModifierFamily::control || family(modifier) == ModifierFamily::command;
    return !(makesCombinations && rows.at(index).isHeldWhileTyping);
}

} // namespace hopsel::told_keys
