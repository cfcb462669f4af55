// Deadlines, and the one place where the test support waits.
//
// Nothing here sleeps: every wait is for a descriptor to become readable, with a deadline. By default that is
// poll(). A test binary whose product code lives in the toolkit's event loop installs a waiter that runs this
// loop meanwhile (qt_waiting.h), so that a wait for the test's window also lets the code under test work.
#pragma once

#include <chrono>
#include <functional>

namespace hopsel::session {

/// Seconds of CLOCK_MONOTONIC, the clock of all time stamps in the tests.
double monotonicSeconds();

class Deadline {
  public:
    explicit Deadline(std::chrono::milliseconds timeout) : end_(std::chrono::steady_clock::now() + timeout) {}

    bool hasPassed() const { return std::chrono::steady_clock::now() >= end_; }
    /// Milliseconds left, rounded up so that waiting them out passes the deadline; 0 afterwards.
    int millisecondsLeft() const;

  private:
    std::chrono::steady_clock::time_point end_;
};

/// Waits with poll(), and lets nothing else run.
bool pollReadable(int descriptor, const Deadline& deadline);

/// Waits once, until the descriptor is readable (or hung up) or the deadline passes; true if it is readable.
/// May come back early: wait in a loop.
bool waitReadable(int descriptor, const Deadline& deadline);

using ReadableWaiter = std::function<bool(int descriptor, const Deadline& deadline)>;
/// Replaces what `waitReadable` does; an empty function brings back poll().
void setReadableWaiter(ReadableWaiter waiter);

} // namespace hopsel::session
