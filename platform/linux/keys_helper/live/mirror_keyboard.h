// A virtual keyboard that can say whatever a real one can, for the desktop to hear in its place.
//
// Owned by the `WatchedDevice` of the real one. It repeats nothing by itself: repeats are passed on like
// presses. The desktop takes up a new keyboard in its own time, so that one which was made just now is not
// heard yet.
#pragma once

#include "platform/linux/keys_helper/filter/input_frame.h"
#include "platform/linux/keys_helper/live/descriptor.h"

#include <functional>
#include <libevdev/libevdev-uinput.h>
#include <libevdev/libevdev.h>
#include <memory>
#include <vector>

namespace hopsel {

class MirrorKeyboard {
  public:
    /// None if the system lets us make none.
    static std::unique_ptr<MirrorKeyboard> of(libevdev* real);

    void write(const std::vector<DeviceEvent>& events) const;
    /// Readable when the desktop has something to show: lights, beeps.
    int descriptor() const { return file_.get(); }
    void readShown(const std::function<void(const DeviceEvent&)>& onShown) const;

  private:
    struct Destroy {
        void operator()(libevdev_uinput* device) const { libevdev_uinput_destroy(device); }
    };
    MirrorKeyboard(Descriptor file, libevdev_uinput* device) : file_(std::move(file)), device_(device) {}

    Descriptor file_;
    std::unique_ptr<libevdev_uinput, Destroy> device_;
};

} // namespace hopsel
