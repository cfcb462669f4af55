#include "platform/linux/keys_helper/live/input_device.h"

#include "platform/linux/keys_helper/live/device_facts.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <linux/input.h>
#include <sys/ioctl.h>
#include <utility>

namespace hopsel {

std::unique_ptr<InputDevice> InputDevice::open(const std::string& path, Failure& failure) {
    // Lights are written to it.
    Descriptor file(::open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
    if (!file.isOpen()) {
        const bool isForbidden = errno == EACCES || errno == EPERM;
        failure = !isForbidden                     ? Failure::gone
                  : device_facts::isKeyboard(path) ? Failure::unreadable
                                                   : Failure::notForUs;
        return nullptr;
    }
    libevdev* device = nullptr;
    failure = Failure::notForUs;
    if (libevdev_new_from_fd(file.get(), &device) != 0) return nullptr;
    std::unique_ptr<InputDevice> opened(new InputDevice(std::move(file), device));
    const char* place = libevdev_get_phys(device);
    if (place != nullptr && std::strcmp(place, mirrorPlace) == 0) return nullptr;
    if (libevdev_has_event_type(device, EV_KEY) == 0) return nullptr;
    return opened;
}

InputDevice::InputDevice(Descriptor file, libevdev* device) : file_(std::move(file)), device_(device) {
    libevdev_set_clock_id(device, CLOCK_MONOTONIC);
    bool hasLetters = true;
    for (unsigned code = KEY_ESC; code <= KEY_S; ++code)
        hasLetters = hasLetters && libevdev_has_event_code(device, EV_KEY, code) != 0;
    // A volume wheel is an axis too; what has places on a surface is none of ours to mirror.
    const bool isPointer = libevdev_has_event_code(device, EV_ABS, ABS_X) != 0 ||
                           libevdev_has_event_code(device, EV_ABS, ABS_MT_POSITION_X) != 0;
    if (hasLetters && !isPointer)
        kind_ = Kind::keyboard;
    else
        listenToLittle();
}

// A mouse says where it is a thousand times a second; nobody here is to be woken for that.
void InputDevice::listenToLittle() const {
    std::array<std::uint8_t, ABS_CNT / 8 + 1> none{};
    std::array<std::uint8_t, REL_CNT / 8 + 1> wheels{};
    for (const std::size_t wheel : {std::size_t{REL_WHEEL}, std::size_t{REL_HWHEEL}})
        wheels.at(wheel / 8) = static_cast<std::uint8_t>(wheels.at(wheel / 8) | 1U << wheel % 8);
    const auto limit = [&](std::uint32_t type, const std::uint8_t* codes, std::size_t size) {
        input_mask mask{type, static_cast<std::uint32_t>(size), reinterpret_cast<std::uintptr_t>(codes)};
        ioctl(file_.get(), EVIOCSMASK, &mask); // kernels before 4.4 cannot: then we are woken
    };
    limit(EV_REL, wheels.data(), wheels.size());
    limit(EV_ABS, none.data(), none.size());
    limit(EV_MSC, none.data(), none.size());
}

KeysDown InputDevice::keysDown() const {
    KeysDown down;
    for (unsigned code = 0; code < keyNumbers; ++code)
        down.set(code, libevdev_get_event_value(device_.get(), EV_KEY, code) != 0);
    return down;
}

bool InputDevice::isAtRest() const {
    std::array<std::uint8_t, KEY_CNT / 8> down{};
    if (ioctl(file_.get(), EVIOCGKEY(sizeof down), down.data()) < 0) return false;
    return std::all_of(down.begin(), down.end(), [](std::uint8_t bits) { return bits == 0; });
}

bool InputDevice::read(const std::function<void(InputFrame)>& onFrame) {
    unsigned flag = LIBEVDEV_READ_FLAG_NORMAL;
    while (true) {
        input_event event{};
        const int result = libevdev_next_event(device_.get(), flag, &event);
        if (result == -EAGAIN && flag == LIBEVDEV_READ_FLAG_SYNC) {
            flag = LIBEVDEV_READ_FLAG_NORMAL;
            // Events were lost, even if all is as it was.
            frame_.isRecovered = true;
            onFrame(std::exchange(frame_, {}));
            continue;
        }
        if (result == -EAGAIN || result == -EINTR) return true;
        if (result < 0) return false;
        if (result == LIBEVDEV_READ_STATUS_SYNC && flag == LIBEVDEV_READ_FLAG_NORMAL) {
            flag = LIBEVDEV_READ_FLAG_SYNC; // what has come of the frame belongs to what is made up for
            continue;
        }
        if (event.type == EV_SYN) {
            if (event.code != SYN_REPORT || flag == LIBEVDEV_READ_FLAG_SYNC) continue;
            frame_.microseconds = static_cast<std::uint64_t>(event.input_event_sec) * 1'000'000U +
                                  static_cast<std::uint64_t>(event.input_event_usec);
            if (!frame_.events.empty()) onFrame(std::exchange(frame_, {}));
            continue;
        }
        frame_.events.push_back({event.type, event.code, event.value});
    }
}

InputDevice::Grab InputDevice::grab() {
    const int result = libevdev_grab(device_.get(), LIBEVDEV_GRAB);
    if (result == 0) return Grab::done;
    return result == -EBUSY ? Grab::heldElsewhere : Grab::failed;
}

void InputDevice::ungrab() { libevdev_grab(device_.get(), LIBEVDEV_UNGRAB); }

void InputDevice::show(const DeviceEvent& event) const {
    std::array<input_event, 2> events{};
    events[0].type = event.type;
    events[0].code = event.code;
    events[0].value = event.value;
    events[1].type = EV_SYN;
    // A keyboard that is just being pulled out shows nothing, and that is all.
    [[maybe_unused]] const auto written = write(file_.get(), events.data(), sizeof events);
}

} // namespace hopsel
