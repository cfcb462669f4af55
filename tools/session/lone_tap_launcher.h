// A desktop's launcher, played: it opens when Super comes up and no other key was pressed meanwhile.
//
// Like the panels that do so it hears every key, whoever has the focus, and takes the focus when it opens. It
// looks at what has happened only when it is asked to, so that a test knows when.
#pragma once

#include "session/x_display.h"

namespace hopsel::session {

class LoneTapLauncher {
  public:
    LoneTapLauncher();

    /// Looks at all keys up to now; returns how often it has opened since it was made.
    int timesOpened();

  private:
    void handle(const xcb_generic_event_t& event);
    void open();

    XDisplay display_;
    xcb_window_t window_ = XCB_WINDOW_NONE;
    std::uint8_t opcode_ = 0;
    bool isAlone_ = false; ///< Super is down, and nothing else has been pressed since
    int opened_ = 0;
};

} // namespace hopsel::session
