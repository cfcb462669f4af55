// The keys with which the X server itself switches layouts, from the options of its keymap.
//
// Owned by whoever asks; each question asks the server, on a connection of its own that is opened at the
// first one and again after a loss. Nobody needs to be told of changes, so nothing is watched.
#pragma once

#include "core/keys/shortcut_key.h"
#include "platform/linux/x11/x11_connection.h"

#include <memory>
#include <string_view>
#include <vector>

namespace hopsel {

/// From the value of _XKB_RULES_NAMES: rules, model, layouts, variants, options, each ended by a NUL. Options
/// that switch by modifier keys alone give no key.
std::vector<ShortcutKey> xkbSwitchKeys(std::string_view rulesNames);

class XkbSwitchKeys {
  public:
    /// None if there is no server.
    std::vector<ShortcutKey> read();

  private:
    bool connect();

    std::unique_ptr<X11Connection> connection_;
    xcb_atom_t rulesNames_ = XCB_ATOM_NONE;
};

} // namespace hopsel
