// Gives the keyboard back when the program stands still.
//
// A key that is to be decided on keeps the whole keyboard waiting for this process. A loop that hangs, or a
// process that was stopped, cannot let go of it; so a small process of our own listens along
// (keyboard_guard_process.h), and when a key has not been dealt with for a second it has the X server cut the
// hook's connections. With them the server drops the grabs, and the keys pass; the hook opens new connections
// when the program goes on. Nothing wakes the guard but a key, four times a second at most, and it listens
// only while keys are filtered.
//
// Made at the start, while the process has one thread, and owned by the launch; the guard ends with it, or
// with the process, however that ends. A guard that cannot be started is none: the keys work as before. Main
// thread.
#pragma once

#include "platform/linux/x11/keyboard_guard_process.h"

#include <array>
#include <cstdint>
#include <memory>
#include <sys/types.h>

namespace hopsel {

class KeyboardGuard {
  public:
    /// Starts it, for the key session to find.
    static std::shared_ptr<KeyboardGuard> start();
    /// Null if none was started, or if it has ended.
    static std::shared_ptr<KeyboardGuard> ofThisProcess();
    ~KeyboardGuard();
    KeyboardGuard(const KeyboardGuard&) = delete;
    KeyboardGuard& operator=(const KeyboardGuard&) = delete;

    /// Keys are filtered over connections that the server knows by these (`X11Connection::handle`).
    void watch(const std::array<std::uint32_t, 2>& handles);
    /// These connections are about to go, or nothing is filtered any more.
    void rest();
    /// Every raw key up to this one has been dealt with. Costs a write to memory.
    void handled(const KeyMoment& key);
    /// Whether it has cut the connections since this was asked last.
    bool hasCut();

  private:
    KeyboardGuard();
    void say(char word) const;

    KeyboardGuardBoard* board_ = nullptr;
    pid_t process_ = -1;
    int words_ = -1; ///< the other end is the guard's
    bool isWatching_ = false;
};

} // namespace hopsel
