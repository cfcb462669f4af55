// Which layout a desktop means when all it tells is the layout's name, such as "English (US)".
//
// Stateless. Reads the installed layout registry at each call, which takes some milliseconds: to be asked
// only when a list has changed.
#pragma once

#include "platform/linux/xkb/xkb_layout_registry.h"

#include <optional>
#include <string>
#include <vector>

namespace hopsel::layout_names {

/// One answer for each name, which may be the registry's own or the localized one, or such a name after
/// another and " - ", as KDE says "English (US) - English (Dvorak)". Absent where it is none of them.
std::vector<std::optional<XkbLayout>> layoutsOf(const std::vector<std::string>& names);

/// One answer for each name, which may be the registry's own or the localized one. Absent where it is
/// neither.
std::vector<std::optional<XkbLayoutDescription>> describe(const std::vector<std::string>& names);

} // namespace hopsel::layout_names
