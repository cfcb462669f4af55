// Turns SIGTERM and SIGINT into a call on the main loop, so that the program ends in order: sources off,
// nothing grabbed.
//
// One per process, for as long as it lives the signals are caught. A loop that stands still does not keep the
// program alive: a second after the signal it ends all the same. A reader that has gone and a file that is
// too large are errors of the call that meets them, and end nothing.
#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>

namespace hopsel {

class TerminationSignals {
  public:
    /// Throws `std::system_error` if the system has no pipe to spare.
    explicit TerminationSignals(std::function<void()> onSignal);
    ~TerminationSignals();
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;

  private:
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace hopsel
