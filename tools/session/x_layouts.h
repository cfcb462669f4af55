// Sets the X server's keyboard layouts as a user's session does, and watches the locked group.
#pragma once

#include "session/x_display.h"

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace hopsel::session {

/// Runs setxkbmap and returns when the server has the new keymap. The lists are comma-separated, for example
/// "us,kr" with variants ",kr104"; options replace those that were set. Throws `std::runtime_error`.
void setLayouts(const std::string& layouts, const std::string& variants = {},
                const std::string& options = {});

class XLayouts {
  public:
    XLayouts();

    /// The locked group as the server has it now.
    int lockedGroup();
    /// Locks a group as another program would, and returns when the server has done it.
    void lockGroup(int group);
    /// Asks for groups in this order, in one go: a group that flickers.
    void lockGroups(const std::vector<int>& groups);
    /// Waits until the group is locked; false at the deadline.
    bool waitForGroup(int group, std::chrono::milliseconds timeout);

  private:
    XDisplay display_;
    std::uint8_t firstEvent_ = 0;
};

} // namespace hopsel::session
