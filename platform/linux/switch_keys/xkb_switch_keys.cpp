#include "platform/linux/switch_keys/xkb_switch_keys.h"

#include "platform/linux/switch_keys/key_accelerator.h"

#include <algorithm>
#include <stdexcept>

namespace hopsel {

namespace {

constexpr std::uint32_t maxPropertyWords = 4096;
constexpr int optionsField = 4;

// Those of the group "grp" in which a key that is no modifier takes part, alone or with others.
constexpr struct {
    std::string_view option;
    std::string_view accelerator;
} options[] = {
    {"grp:win_space_toggle", "<Super>space"},
    {"grp:alt_space_toggle", "<Alt>space"},
    {"grp:ctrl_space_toggle", "<Control>space"},
    {"grp:shift_space_toggle", "<Shift>space"},
    {"grp:menu_toggle", "Menu"},
    {"grp:menu_switch", "Menu"},
    {"grp:win_menu_switch", "Menu"},
    {"grp:lctrl_lwin_rctrl_menu", "<Control>Menu"},
    {"grp:sclk_toggle", "Scroll_Lock"},
};

std::string_view take(std::string_view& rest, char end) {
    const std::string_view field = rest.substr(0, rest.find(end));
    rest.remove_prefix(std::min(rest.size(), field.size() + 1));
    return field;
}

} // namespace

std::vector<ShortcutKey> xkbSwitchKeys(std::string_view rulesNames) {
    for (int i = 0; i < optionsField; ++i) take(rulesNames, '\0');
    std::string_view rest = take(rulesNames, '\0');
    std::vector<ShortcutKey> keys;
    while (!rest.empty()) {
        const std::string_view option = take(rest, ',');
        for (const auto& row : options) {
            if (row.option != option) continue;
            if (const auto key = shortcutFromAccelerator(row.accelerator)) keys.push_back(*key);
        }
    }
    return keys;
}

bool XkbSwitchKeys::connect() {
    if (connection_ && !connection_->isLost()) return true;
    connection_.reset();
    try {
        connection_ = std::make_unique<X11Connection>();
    } catch (const std::runtime_error&) {
        return false;
    }
    rulesNames_ = connection_->intern("_XKB_RULES_NAMES");
    return true;
}

std::vector<ShortcutKey> XkbSwitchKeys::read() {
    if (!connect()) return {};
    const auto cookie = xcb_get_property(connection_->get(), 0, connection_->root(), rulesNames_,
                                         XCB_ATOM_ANY, 0, maxPropertyWords);
    const XcbPtr<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_->get(), cookie, nullptr));
    // The server tells every client of new keymaps, wanted or not; unread they would pile up.
    while (connection_->nextEvent()) {
    }
    if (!reply || reply->format != 8) return {};
    return xkbSwitchKeys({static_cast<const char*>(xcb_get_property_value(reply.get())),
                          static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))});
}

} // namespace hopsel
