// The programs that are compared: each makes a tap of right Super lock the other of two layout groups.
#pragma once

#include <functional>
#include <memory>
#include <string>

namespace hopsel::bench {

struct Programs {
    std::string hopsel;
    std::string bareSwitcher;
};

/// A program that runs; it ends with the last owner.
using Running = std::shared_ptr<void>;

struct Switcher {
    std::string name;
    std::function<Running()> start; ///< does not wait until it works
};

/// Options of the keymap that xcape needs: a key that goes to the next group. The others do not mind.
extern const char* const layoutOptions;

Switcher hopselSwitcher(const Programs& programs);
/// The least that a program on X can do, and so the limit: see bare_switcher.cpp.
Switcher bareSwitcher(const Programs& programs);
Switcher xcapeSwitcher();

} // namespace hopsel::bench
