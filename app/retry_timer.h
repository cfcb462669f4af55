// Does something every two seconds as long as there is a reason to, and lets the process sleep otherwise.
//
// Owned by the delegate; main thread. Whether there is a reason is asked each time before the event loop goes
// to sleep: whatever broke, was mended or was used has woken the loop, so that none of them needs to tell.
#pragma once

#include <QObject>
#include <QTimer>
#include <chrono>
#include <functional>

namespace hopsel {

class RetryTimer {
  public:
    /// `isNeeded` is asked very often, so cheap.
    RetryTimer(std::chrono::milliseconds interval, std::function<bool()> isNeeded,
               std::function<void()> retry);

    /// From here on. Needs the application's event loop.
    void start();
    void stop();

    /// It will wake the process.
    bool isRunning() const { return timer_.isActive(); }

  private:
    void look();

    std::function<bool()> isNeeded_;
    QTimer timer_;
    QMetaObject::Connection beforeSleep_;
};

} // namespace hopsel
