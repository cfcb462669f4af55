// Waiting while the toolkit's event loop runs, for tests whose code under test lives in that loop.
#pragma once

#include "session/waiting.h"

#include <chrono>
#include <functional>

namespace hopsel::test {

/// From here on every wait of the test support runs the event loop. The main function of such tests calls it.
void waitInEventLoop();

/// Runs the event loop until the condition holds, which is asked first and after every turn; false at the
/// deadline.
bool runLoopUntil(const std::function<bool()>& condition,
                  std::chrono::milliseconds timeout = std::chrono::seconds(10));

/// For what must not happen: runs the event loop for the whole time, unless the condition comes true after
/// all.
bool staysFalse(const std::function<bool()>& condition,
                std::chrono::milliseconds time = std::chrono::milliseconds(100));

} // namespace hopsel::test
