// One device of /dev/input that has keys or buttons: what it says, frame by frame, and whether the desktop
// still hears it.
//
// Owned by a `WatchedDevice`. Closing it gives it back to the desktop. A device that was pulled out fails to
// read; it is then to be dropped.
#pragma once

#include "platform/linux/keys_helper/filter/input_frame.h"
#include "platform/linux/keys_helper/live/descriptor.h"

#include <cstdint>
#include <functional>
#include <libevdev/libevdev.h>
#include <memory>
#include <optional>
#include <string>

namespace hopsel {

class InputDevice {
  public:
    /// Where our mirrors say that they are plugged in.
    static constexpr const char* mirrorPlace = "hopsel/mirror";

    enum class Kind : std::uint8_t {
        keyboard, ///< somebody types on it: can be filtered
        other,    ///< buttons, wheels, the odd key: listened to
    };
    enum class Failure : std::uint8_t {
        notForUs,   ///< no keys or buttons, or a mirror of ours
        unreadable, ///< a keyboard, for all that can be told without opening it
        gone,
    };
    /// `path` is a device in /dev/input.
    static std::unique_ptr<InputDevice> open(const std::string& path, Failure& failure);

    Kind kind() const { return kind_; }
    std::string name() const { return libevdev_get_name(device_.get()); }
    int descriptor() const { return file_.get(); }
    libevdev* device() const { return device_.get(); }
    /// As far as it was read.
    KeysDown keysDown() const;
    /// Whether the kernel says at this moment that no key is down.
    bool isAtRest() const;

    /// All that it has to say; false if it is gone.
    bool read(const std::function<void(InputFrame)>& onFrame);

    enum class Grab : std::uint8_t { done, heldElsewhere, failed };
    /// From then on nobody else hears it.
    Grab grab();
    void ungrab();
    /// Lights and beeps, from the desktop.
    void show(const DeviceEvent& event) const;

  private:
    struct Free {
        void operator()(libevdev* device) const { libevdev_free(device); }
    };
    InputDevice(Descriptor file, libevdev* device);
    void listenToLittle() const;

    Descriptor file_;
    std::unique_ptr<libevdev, Free> device_;
    Kind kind_ = Kind::other;
    InputFrame frame_; ///< as far as it has come
};

} // namespace hopsel
