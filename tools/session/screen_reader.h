// What a screen reader finds in a program's windows: names, roles and states, and where on the screen a
// person would click. Also the accessibility bus it is found on.
//
// Make an AccessibilityBus before the program starts, and one ScreenReader in a process: the accessibility
// library keeps its connection to the end.
#pragma once

#include "session/child_process.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace hopsel::session {

/// The accessibility bus of the session bus that DBUS_SESSION_BUS_ADDRESS names, switched on for everybody.
class AccessibilityBus {
  public:
    /// Throws `std::runtime_error`, also when at-spi2-core is not installed.
    AccessibilityBus();

  private:
    std::unique_ptr<ChildProcess> launcher_;
};

/// Something that is on the screen now.
struct SeenWidget {
    std::string name;
    std::string role; ///< in the library's English words, for example "push button"
    std::string description;
    std::string text; ///< what has been typed into it
    int x = 0, y = 0, width = 0, height = 0;
    bool isWindow = false; ///< what follows is in it, until the next
    bool isFocused = false;
    bool isFocusable = false;
    bool isChecked = false;
    bool isSelected = false;
    bool isEnabled = false;
};

class ScreenReader {
  public:
    /// Looks only at the application of this name.
    explicit ScreenReader(std::string application);
    ~ScreenReader();
    ScreenReader(const ScreenReader&) = delete;
    ScreenReader& operator=(const ScreenReader&) = delete;

    /// Everything that is showing, in the order of the windows' trees.
    std::vector<SeenWidget> look() const;
    /// The first of the name (and of the role, if one is given) that is showing.
    std::optional<SeenWidget> find(const std::string& name, const std::string& role = {}) const;
    /// Looks again and again until the condition holds; false at the deadline.
    bool waitUntil(const std::function<bool()>& condition,
                   std::chrono::milliseconds timeout = std::chrono::seconds(10)) const;

  private:
    std::string application_;
};

} // namespace hopsel::session
