// A program that is started and let go on by itself: nobody waits for it, not even when this process ends.
// Stateless. Needs an application object.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace hopsel::child_process {

/// Called from the event loop: what the program exited with, -1 if a signal ended it.
using OnEnd = std::function<void(int code)>;

/// `words` are the program's path and its arguments; it gets the descriptor `inherited` at its own number if
/// there is one. False if it cannot be started.
bool start(const std::vector<std::string>& words, int inherited, OnEnd onEnd);

} // namespace hopsel::child_process
