// The devices in /dev/input, as they come. That they go they say themselves.
//
// Owned by the helper; the loop outlives it.
#pragma once

#include "platform/linux/keys_helper/live/descriptor.h"
#include "platform/linux/keys_helper/live/event_loop.h"

#include <functional>
#include <string>
#include <vector>

namespace hopsel {

class DeviceFolder {
  public:
    /// `onChange`: something was plugged in, or may be read from now on.
    DeviceFolder(EventLoop& loop, std::function<void()> onChange);

    /// Paths of all devices there are.
    static std::vector<std::string> devices();

  private:
    Descriptor notices_;
    EventLoop::Watch watch_;
};

} // namespace hopsel
