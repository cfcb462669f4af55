// Whose session is in front at the computer, as logind says. Another user's keys are nobody's business: who
// is not in front is told nothing.
//
// Owned by the helper; the loop outlives it.
#pragma once

#include "platform/linux/keys_helper/live/event_loop.h"

#include <functional>
#include <memory>
#include <optional>
#include <sys/types.h>
#include <systemd/sd-login.h>

namespace hopsel {

class SeatWatch {
  public:
    /// `onChange` may be called without a change.
    SeatWatch(EventLoop& loop, std::function<void()> onChange);

    /// Whether logind keeps a list for the keyboards that could be asked.
    static bool isTold();
    /// None while nobody is in front.
    static std::optional<uid_t> userInFront();

  private:
    struct Unref {
        void operator()(sd_login_monitor* monitor) const { sd_login_monitor_unref(monitor); }
    };
    std::unique_ptr<sd_login_monitor, Unref> monitor_;
    EventLoop::Watch watch_;
};

} // namespace hopsel
