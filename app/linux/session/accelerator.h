// Key combinations as desktops write them down: "<Super>space" (GTK) or "Super+space" (Fcitx5). Pure.
#pragma once

#include "core/keys/shortcut_key.h"

#include <optional>
#include <string>

namespace hopsel {

/// The combination by position on a US keyboard, its modifiers on the left side. Nothing for text that means
/// none and for a combination whose key is itself a modifier.
std::optional<ShortcutKey> shortcutFromAccelerator(const std::string& text);

} // namespace hopsel
