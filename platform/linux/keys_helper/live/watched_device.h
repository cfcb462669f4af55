// A device that is listened to and, if it is a keyboard, taken from the desktop and given back at the right
// moments.
//
// Owned by the helper; the filter and the loop outlive it. The desktop hears each key either from the device
// or from its mirror: a keyboard changes hands only while none of its keys is down, and what it said before
// the change, and was read after, is told from the rest by its time.
#pragma once

#include "platform/linux/keys_helper/filter/key_filter.h"
#include "platform/linux/keys_helper/live/event_loop.h"
#include "platform/linux/keys_helper/live/input_device.h"
#include "platform/linux/keys_helper/live/mirror_keyboard.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

namespace hopsel {

class WatchedDevice {
  public:
    using Clock = std::chrono::steady_clock; // the kernel's CLOCK_MONOTONIC, as in the frames

    WatchedDevice(KeyboardId id, std::unique_ptr<InputDevice> device, KeyFilter& filter);
    /// Gives it back, with nothing down in its mirror.
    ~WatchedDevice();
    WatchedDevice(const WatchedDevice&) = delete;
    WatchedDevice& operator=(const WatchedDevice&) = delete;

    bool isKeyboard() const { return device_->kind() == InputDevice::Kind::keyboard; }
    bool isGrabbed() const { return isGrabbed_; }
    std::string name() const { return device_->name(); }
    int descriptor() const { return device_->descriptor(); }

    /// Takes what it says to the filter; false if it is gone.
    bool read();

    enum class Filtering : std::uint8_t { off, waiting, on, heldElsewhere, noMirror };
    /// Does what can be done now about being filtered or not. To be called after whatever may change that.
    /// `settling`: how long the desktop takes to listen to a new mirror.
    Filtering bring(bool isWanted, Clock::duration settling);
    /// When there is a reason to call it again although nothing happened.
    Clock::time_point nextTry(Clock::duration settling) const { return mirrorMade_ + settling; }
    /// What another program held, or the system denied, is tried again.
    void forgetFailure() { failure_ = Filtering::off; }
    /// At once, whatever is down; without a mirror.
    void giveBack();

    MirrorKeyboard* mirror() const { return mirror_.get(); }
    /// Of the loop, on the descriptors of the device and of its mirror.
    EventLoop::Watch deviceWatch;
    EventLoop::Watch mirrorWatch;
    void readMirror() const;

  private:
    void take(InputFrame frame);
    Filtering grab();
    bool isAtRest() const { return filter_.isAtRest(id_) && device_->isAtRest(); }
    static std::uint64_t now();

    KeyboardId id_;
    std::unique_ptr<InputDevice> device_;
    std::unique_ptr<MirrorKeyboard> mirror_;
    Clock::time_point mirrorMade_;
    KeyFilter& filter_;
    Filtering failure_ = Filtering::off;
    bool isGrabbed_ = false;
    bool isMirrored_ = false;     ///< as the filter has been told
    std::uint64_t grabbedAt_ = 0; ///< what was said before has reached the desktop
};

} // namespace hopsel
