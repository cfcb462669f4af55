// From the trigger key's release to the daemon's word that another input method is current: Hopsel beside the
// daemon's own call, its own trigger key and its command-line tool.
#pragma once

#include "benchmarks/method_watch.h"

#include <functional>
#include <string>
#include <vector>

namespace hopsel::bench {

/// An input method's daemon that runs, with a text field that has the focus, and what leads to a switch
/// there.
struct Framework {
    std::string name;                      ///< "IBus"
    std::string prefix;                    ///< of its identifiers in Hopsel: "ibus:"
    QString english, korean;               ///< as the daemon calls them
    std::vector<std::string> tool;         ///< the command to which a method is added
    std::vector<std::uint16_t> triggerKey; ///< evdev codes, in the order in which they go down
    /// Whether it switches when the last of them goes down, or when the first goes up.
    bool switchesOnPress = false;
};

/// Prints the results, and what the program costs when nobody types.
void measureMethodLatency(const Framework& framework, MethodWatch& watch, const std::string& hopsel);

} // namespace hopsel::bench
