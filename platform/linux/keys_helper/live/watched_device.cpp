#include "platform/linux/keys_helper/live/watched_device.h"

#include <linux/input-event-codes.h>
#include <utility>

namespace hopsel {

WatchedDevice::WatchedDevice(KeyboardId id, std::unique_ptr<InputDevice> device, KeyFilter& filter)
    : id_(id), device_(std::move(device)), filter_(filter) {
    filter_.add(id, device_->keysDown());
}

WatchedDevice::~WatchedDevice() {
    filter_.remove(id_);
    if (isGrabbed_) device_->ungrab();
}

bool WatchedDevice::read() {
    return device_->read([this](InputFrame frame) { take(std::move(frame)); });
}

void WatchedDevice::take(InputFrame frame) {
    if (isGrabbed_ && !isMirrored_ && (frame.microseconds >= grabbedAt_ || frame.isRecovered)) {
        isMirrored_ = true;
        filter_.setMirrored(id_, true);
    }
    if (isKeyboard()) return filter_.keyboardFrame(id_, std::move(frame));

    // Buttons and wheels, and the few keys that mice and remote controls have.
    InputFrame keys{frame.microseconds, {}, frame.isRecovered};
    bool isUsed = false;
    for (const DeviceEvent& event : frame.events) {
        const bool isButton = event.type == EV_KEY && event.code >= BTN_MISC && event.code < KEY_OK;
        if (event.type == EV_REL || (isButton && event.value == 1 && event.code >= BTN_MOUSE))
            isUsed = isUsed || event.code < BTN_DIGI || event.type == EV_REL;
        else if (event.type == EV_KEY && !isButton)
            keys.events.push_back(event);
    }
    if (isUsed) filter_.pointerUsed();
    if (!keys.events.empty()) filter_.keyboardFrame(id_, std::move(keys));
}

WatchedDevice::Filtering WatchedDevice::bring(bool isWanted, Clock::duration settling) {
    if (!isKeyboard()) return Filtering::off;
    if (!isWanted) {
        failure_ = Filtering::off;
        if (isGrabbed_ && isAtRest()) giveBack();
        return Filtering::off;
    }
    if (isGrabbed_) return Filtering::on;
    if (failure_ != Filtering::off) return failure_;
    if (!mirror_) {
        mirror_ = MirrorKeyboard::of(device_->device());
        if (!mirror_) return failure_ = Filtering::noMirror;
        mirrorMade_ = Clock::now();
    }
    if (Clock::now() < mirrorMade_ + settling || !isAtRest()) return Filtering::waiting;
    return grab();
}

WatchedDevice::Filtering WatchedDevice::grab() {
    switch (device_->grab()) {
    case InputDevice::Grab::heldElsewhere: return failure_ = Filtering::heldElsewhere;
    case InputDevice::Grab::failed: return Filtering::waiting; // it is being pulled out
    case InputDevice::Grab::done: break;
    }
    grabbedAt_ = now();
    // A key that went down in this moment went down for the desktop, which must hear it come up.
    if (!device_->isAtRest()) {
        device_->ungrab();
        return Filtering::waiting;
    }
    isGrabbed_ = true;
    return Filtering::on;
}

void WatchedDevice::giveBack() {
    if (!isGrabbed_) return;
    device_->ungrab();
    const std::uint64_t until = now();
    // What was typed up to here nobody else has heard.
    device_->read([&](InputFrame frame) {
        if (frame.microseconds < until) return take(std::move(frame));
        if (std::exchange(isMirrored_, false)) filter_.giveBack(id_);
        filter_.keyboardFrame(id_, std::move(frame));
    });
    if (isMirrored_) filter_.giveBack(id_);
    isGrabbed_ = false;
    isMirrored_ = false;
}

void WatchedDevice::readMirror() const {
    mirror_->readShown([this](const DeviceEvent& event) { device_->show(event); });
}

std::uint64_t WatchedDevice::now() {
    const auto now = Clock::now().time_since_epoch();
    return static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::microseconds>(now).count());
}

} // namespace hopsel
