// From what the X server says about its layouts to a list of groups with stable identifiers. Stateless.
//
// The layouts come from a property of the root window that any program may write, so nothing about it is
// believed: whatever it holds, the result is short and plain ASCII.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace hopsel {

struct XkbLayout {
    std::string layout;  ///< for example "kr"; empty: the property names none
    std::string variant; ///< for example "kr104"; may be empty
    friend auto operator<=>(const XkbLayout&, const XkbLayout&) = default;
};

struct XkbGroup {
    int index = 0;          ///< the group's number on the server
    std::string id;         ///< "xkb:kr", "xkb:kr+kr104", and "#2" behind the second of two that are the same
    XkbLayout layout;       ///< empty if the property does not name it
    std::string serverName; ///< what the keymap calls the group; only where the layout is empty
    bool isLockable = false;
    friend bool operator==(const XkbGroup&, const XkbGroup&) = default;
};

namespace xkb_groups {

/// A server has four groups; what a user's list has beyond that is shown up to here, as not selectable.
inline constexpr std::size_t maxLayouts = 16;

/// The layouts in the value of _XKB_RULES_NAMES: rules, model, layouts, variants, options, each ended by a
/// NUL. Bytes that cannot be part of a layout's name become '?', and a name is cut after 64.
std::vector<XkbLayout> parseRulesNames(std::string_view property);

/// Which layouts to believe. The property goes its own way: when a second master keyboard comes, the server
/// writes its defaults into it and leaves the keymap of the first as it is. So names that do not cover the
/// keymap's groups do not replace names that did, as long as the keymap has the same groups.
class BelievedLayouts {
  public:
    /// `told` by the property; `groupNames` of the keymap, one for each of its groups.
    std::vector<XkbLayout> take(std::vector<XkbLayout> told, const std::vector<std::string>& groupNames);

  private:
    std::vector<XkbLayout> layouts_;
    std::vector<std::string> groupNames_;
};

/// The groups that are configured or exist, in the server's order. A group that the layouts leave unnamed has
/// an identifier made of its name in the keymap, or of its number if it has none there either: on a server
/// without the property the groups are still listed, and keep their identifiers from session to session.
std::vector<XkbGroup> list(const std::vector<XkbLayout>& layouts, int groupCount,
                           const std::vector<std::string>& groupNames);

} // namespace xkb_groups

} // namespace hopsel
