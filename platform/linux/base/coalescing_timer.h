// Calls once for a burst of changes, when it is over.
//
// A member of whoever is called; the call stops with it. It costs no wake-up while nothing changes. Main
// thread.
#pragma once

#include <QDeadlineTimer>
#include <QTimer>
#include <chrono>
#include <functional>

namespace hopsel {

class CoalescingTimer {
  public:
    /// Calls when nothing has changed for `quiet`, or `atMost` after a burst began that does not end.
    CoalescingTimer(std::chrono::milliseconds quiet, std::chrono::milliseconds atMost,
                    std::function<void()> call);

    void noteChange();
    void cancel() { timer_.stop(); }
    bool isPending() const { return timer_.isActive(); }

  private:
    std::chrono::milliseconds quiet_;
    std::chrono::milliseconds atMost_;
    QTimer timer_;
    QDeadlineTimer latest_;
};

} // namespace hopsel
