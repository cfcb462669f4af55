// From what Hyprland tells of its keyboards to a list of layouts, and from a layout to the commands for it.
// Stateless.
//
// Each keyboard has layouts of its own, known by the names in the configuration ("us", "ru", variants beside
// them), and one of them active. The keyboard that Hyprland calls the main one is what the user types on.
#pragma once

#include "platform/linux/xkb/xkb_groups.h"

#include <QByteArray>
#include <optional>
#include <string>
#include <vector>

namespace hopsel {

struct HyprlandKeyboard {
    std::string name; ///< as commands and events have it
    std::vector<XkbLayout> layouts;
    std::vector<std::string> ids; ///< by position: "hyprland:us", "hyprland:us(dvorak)"; "#2" behind a second
    std::string activeName;       ///< of the layout that is active, as the keymap calls it
    std::optional<std::size_t> active;
    bool isMain = false;
    friend bool operator==(const HyprlandKeyboard&, const HyprlandKeyboard&) = default;
};

namespace hyprland_keyboards {

/// Those that have several layouts, or all that have any; the main one first. Absent if it is not an answer
/// of Hyprland.
std::optional<std::vector<HyprlandKeyboard>> parse(const QByteArray& devices);

/// The position of the layout that the keymap calls so; absent where the name says not which.
std::optional<std::size_t> positionOf(const HyprlandKeyboard& keyboard, const std::string& activeName);

/// Makes the layout active on each keyboard that has it.
std::vector<QByteArray> switchCommands(const std::vector<HyprlandKeyboard>& keyboards, const std::string& id);

} // namespace hyprland_keyboards

} // namespace hopsel
