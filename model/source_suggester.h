// Which two input sources a user most likely wants to toggle between. Pure.
#pragma once

#include "core/platform/input_source.h"

#include <optional>
#include <string>
#include <vector>

namespace hopsel::source_suggester {

struct Suggestion {
    std::optional<std::string> a; ///< identifier
    std::optional<std::string> b; ///< identifier
    friend bool operator==(const Suggestion&, const Suggestion&) = default;
};

/// The first that is not English and the first that is, where there are both; else the first two. Only
/// sources that can be selected.
Suggestion suggest(const std::vector<InputSourceInfo>& sources);

} // namespace hopsel::source_suggester
