// A finger on the trigger key (right Super) and an eye on the locked group.
//
// Both are on one connection, so that the time of the key and the time of its effect are taken in the same
// place and the X server tells no one else on the way. Needs $DISPLAY; independent of the program that
// switches.
#pragma once

#include "session/x_display.h"

#include <chrono>
#include <optional>

namespace hopsel::bench {

class TriggerKey {
  public:
    TriggerKey();

    /// Presses, holds, releases. The seconds from posting the release until the server reported another
    /// locked group; nothing if it did not within the timeout. The key is up afterwards.
    std::optional<double> tap(std::chrono::milliseconds hold, std::chrono::milliseconds timeout);
    /// Taps that leave a moment before and after, as far as a person's do. Throws `std::runtime_error` if
    /// nothing switches.
    double unhurriedTap();

    /// Taps until something switches; the time of the switch, in `monotonicSeconds()`. Throws when the
    /// patience is at an end.
    double tapUntilSwitched();

    /// Types a letter so many times and then taps, all in one write. Returns when the tap has switched, so
    /// whoever did it has been through all of it. Throws like the above.
    void typeThenTap(int letters);

  private:
    void post(std::uint8_t code, bool isDown);
    bool waitForSwitch(std::chrono::milliseconds timeout);

    session::XDisplay display_;
    std::uint8_t firstXkbEvent_ = 0;
    int group_ = 0;
    double switchedAt_ = 0;
};

} // namespace hopsel::bench
