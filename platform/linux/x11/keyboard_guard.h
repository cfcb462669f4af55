// Gives the keyboard back when the program stands still.
//
// A key that is to be decided on keeps the whole keyboard waiting for this process. A loop that hangs, or a
// process that was stopped, cannot let go of it; so a tiny process of our own listens along, and when a key
// has not been handled for a second it has the X server cut the hook's connections. With them the server
// drops the grabs, the keys pass, and the hook opens new connections when the program goes on. Nothing wakes
// the guard but a key.
//
// Owned by the key session, ends with it or with the process. A guard that cannot be started is none: the
// keys work as before. Main thread.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <sys/types.h>

namespace hopsel {

class KeyboardGuard {
  public:
    KeyboardGuard();
    ~KeyboardGuard();
    KeyboardGuard(const KeyboardGuard&) = delete;
    KeyboardGuard& operator=(const KeyboardGuard&) = delete;

    /// The clients of the X server to be cut, by any identifier out of their range.
    void watch(std::array<std::uint32_t, 2> clients);
    void rest();
    /// Everything up to this time of the server has been handled. Costs a write to memory.
    void handled(std::uint32_t serverTime);
    /// Whether it has cut the connections since it was asked last.
    bool hasCut();

  private:
    struct Shared;
    void say(char word) const;
    [[noreturn]] static void run(Shared& shared, int commands);

    Shared* shared_ = nullptr;
    pid_t process_ = -1;
    int commands_ = -1; ///< its end is the guard's
    bool isWatching_ = false;
};

} // namespace hopsel
