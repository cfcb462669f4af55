// Key combinations as desktops write them in their settings: "<Super>space" (GTK's spelling, which IBus and
// GNOME use) and "Control+Shift+space" (Fcitx5's). Stateless; the first key that is looked up costs some
// milliseconds, because it compiles a keymap.
#pragma once

#include "core/keys/shortcut_key.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hopsel {

/// With the left one of each modifier key. Super is Command; Alt and Meta are Option. The key is the one that
/// has the symbol on an American keyboard. Nothing if that key is a modifier, if there is none, or if the
/// text is no accelerator.
std::optional<ShortcutKey> shortcutFromAccelerator(std::string_view accelerator);

/// Those that are shortcuts, in order.
std::vector<ShortcutKey> shortcutsFromAccelerators(const std::vector<std::string>& accelerators);

} // namespace hopsel
