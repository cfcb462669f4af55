// Combinations as KDE's global shortcuts have them: one number for the key, by what is printed on it, and the
// modifiers without their sides. Pure.
#pragma once

#include "core/keys/shortcut_key.h"

#include <optional>

namespace hopsel::qt_keys {

/// Nothing for what cannot be said so: keys that another layout has elsewhere, both sides of one modifier,
/// and the right Alt key, which may be AltGr.
std::optional<int> numberOf(const ShortcutKey& combination);

} // namespace hopsel::qt_keys
