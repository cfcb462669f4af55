// The stage on which the main job is played: a private X server with a window manager, two layouts and an
// application's window, the program, and the hands on the keyboard.
#pragma once

#include "session/hopsel_program.h"
#include "session/x_keyboard.h"
#include "session/x_layouts.h"
#include "session/x_server.h"
#include "session/x_window.h"

#include <functional>
#include <string>

namespace hopsel::main_job {

/// What the X server says of one press, measured from outside the program.
struct Observation {
    std::string before;
    std::string after;
    bool verified = false;   ///< the server reported another locked layout
    double milliseconds = 0; ///< from the last key event until then
};

class Stage {
  public:
    explicit Stage(const std::string& executable);

    /// `play` presses keys and returns when the last of them was posted, on the monotonic clock. With
    /// `expectSwitch` the change is waited for, else the program is given the time to look at every key.
    Observation observe(const std::function<double(session::XKeyboard&)>& play, bool expectSwitch);

    /// Types with the shortcut in the middle, and returns what the application got.
    std::string typeAcrossTheShortcut();

    /// Starts the program a second time, which shows the Settings window of the first.
    void bringProgramForward();

    /// Asks the program for its state, and returns when it has answered: it has seen to what came before.
    void waitForItsTurn();

    /// Asks the program to end; true if it did, with status 0.
    bool endProgram();

    session::XKeyboard& keyboard() { return keyboard_; }
    const std::string& display() const { return server_.display(); }

  private:
    void waitForProgram();
    bool swallowsTheShortcut();
    void waitUntilAllIsLookedAt();
    session::XTestWindow::Records recordsUntilTheLetter(std::uint16_t shift);

    session::XServer server_;
    session::XLayouts layouts_;
    std::unique_ptr<session::XTestWindow> window_;
    session::XKeyboard keyboard_;
    std::unique_ptr<session::HopselProgram> program_;
};

} // namespace hopsel::main_job
