// When a key event happened, on the program's clock, from the time that the X server gave it.
//
// The server notes a key the moment it is pressed, in milliseconds of a clock of its own that wraps around;
// this process may read it much later, and several at once. How long a key was held can only be told by the
// server's clock. Owned by the hook, made anew with its connections: another server has another clock.
#pragma once

#include "platform/linux/x11/x11_connection.h"

#include <cstdint>
#include <optional>

namespace hopsel {

class X11ServerClock {
  public:
    X11ServerClock() = default;
    /// At `serverTime` it was `time`, or later by what it took to ask.
    X11ServerClock(std::uint32_t serverTime, double time) : lastServerTime_(serverTime), lastTime_(time) {}

    /// Asks the server, over a connection that is sent no events. Nothing if it is lost.
    static std::optional<std::uint32_t> ask(X11Connection& connection);

    /// When the event happened; never after `now`, when it was read, nor before the event asked about last.
    double timeOf(std::uint32_t serverTime, double now);

  private:
    std::uint32_t lastServerTime_ = 0;
    double lastTime_ = 0;
};

} // namespace hopsel
