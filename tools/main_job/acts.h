// The presses that are played, each with what it must do.
#pragma once

#include "session/x_keyboard.h"

#include <functional>
#include <string>
#include <vector>

namespace hopsel::main_job {

struct Act {
    std::string name;
    bool switches;
    /// Returns when the last event was posted.
    std::function<double(session::XKeyboard&)> play;
};

std::vector<Act> acts();

} // namespace hopsel::main_job
