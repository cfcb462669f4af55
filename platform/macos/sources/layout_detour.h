// The one place that decides whether a switch takes a way round.
//
// With some input methods the system shows the new source in the menu bar while typing stays with the old one
// until another window gets the keyboard, and answers that the new one is current. Passing through a keyboard
// layout can set it right. Pure.
#pragma once

#include "core/platform/input_source.h"

#include <optional>
#include <string>
#include <vector>

namespace hopsel {

/// The layout to pass through on the way to `target`: rather not the current one. None if the target is a
/// layout itself, or not among the sources, or there is no other.
std::optional<std::string> layoutDetour(const std::string& target,
                                        const std::vector<InputSourceInfo>& sources,
                                        const std::optional<std::string>& current);

} // namespace hopsel
