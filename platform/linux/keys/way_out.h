// What is left for the user to do about keys that are not heard, in their language. A plain value.
#pragma once

#include <string>

namespace hopsel {

/// Without words: the help page says it all.
struct WayOut {
    std::string what;
    std::string command; ///< for a terminal

    bool isSaid() const { return !what.empty(); }
};

} // namespace hopsel
