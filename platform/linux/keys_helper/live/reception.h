// The service's listening socket: lets in the first who is in front at the computer, and tells all others
// why not.
//
// Owned by main, in the service only; the loop outlives it. The service manager keeps the socket, so that
// those who come after the end find the next helper.
#pragma once

#include "platform/linux/keys_helper/live/descriptor.h"
#include "platform/linux/keys_helper/live/event_loop.h"

#include <functional>

namespace hopsel {

class Reception {
  public:
    /// `admit` is called once at most. Without anybody to admit the loop is ended after a while.
    Reception(EventLoop& loop, Descriptor listening, std::function<void(Descriptor session)> admit);

  private:
    void answer();

    EventLoop& loop_;
    Descriptor listening_;
    std::function<void(Descriptor)> admit_; ///< none once somebody is in
    EventLoop::Watch watch_;
    EventLoop::Watch idle_;
};

} // namespace hopsel
