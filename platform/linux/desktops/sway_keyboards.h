// From what sway tells of its keyboards to a list of layouts, and from a layout to the command for it.
// Stateless.
//
// Each keyboard of sway has layouts of its own and one of them active. As a rule all have the same; then one
// command switches them all, also those that are plugged in twice or that an input method made. Power buttons
// and the like, which sway counts as keyboards with a single layout, say nothing about what the user types.
// Layouts have no other stable mark than their names, which come from the keymap and are not localized.
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <optional>
#include <string>
#include <vector>

namespace hopsel {

struct SwayKeyboard {
    std::string identifier;
    /// By position: "sway:English (US)"; "#2" behind the second of the same name, empty without a name.
    std::vector<std::string> ids;
    std::vector<std::string> names;
    std::size_t active = 0;
    friend bool operator==(const SwayKeyboard&, const SwayKeyboard&) = default;

    /// Absent if it is not a keyboard, or tells no layouts.
    static std::optional<SwayKeyboard> from(const QJsonObject& input);
    std::optional<std::string> activeID() const;
    std::optional<std::size_t> positionOf(const std::string& id) const;
};

namespace sway_keyboards {

/// The keyboards that matter: those with several layouts; where there is none, all that have a layout with a
/// name. Absent if it is not an answer of sway.
std::optional<std::vector<SwayKeyboard>> parse(const QByteArray& inputs);

/// Makes the layout active wherever it is. Absent if there is no way to say it.
std::optional<QByteArray> switchCommand(const std::vector<SwayKeyboard>& keyboards, const std::string& id);

} // namespace sway_keyboards

} // namespace hopsel
