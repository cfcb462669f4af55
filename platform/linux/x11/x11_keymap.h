// Reads the X server's keymap of the core keyboard as an xkbcommon keymap. Stateless.
#pragma once

#include "platform/linux/keys/key_meanings.h"
#include "platform/linux/x11/x11_connection.h"

namespace hopsel::x11_keymap {

/// What the keys mean now; by position alone if the server's keymap cannot be read.
KeyMeanings readMeanings(X11Connection& connection);

} // namespace hopsel::x11_keymap
