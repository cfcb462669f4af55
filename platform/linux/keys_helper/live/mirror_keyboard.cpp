#include "platform/linux/keys_helper/live/mirror_keyboard.h"

#include "platform/linux/keys_helper/live/input_device.h"

#include <array>
#include <fcntl.h>
#include <linux/input.h>
#include <linux/uinput.h>
#include <sys/ioctl.h>

namespace hopsel {

namespace {

struct Free {
    void operator()(libevdev* device) const { libevdev_free(device); }
};

/// The names and numbers too: desktops keep settings by them.
std::unique_ptr<libevdev, Free> descriptionOf(libevdev* real) {
    std::unique_ptr<libevdev, Free> copy(libevdev_new());
    libevdev_set_name(copy.get(), libevdev_get_name(real));
    libevdev_set_id_bustype(copy.get(), libevdev_get_id_bustype(real));
    libevdev_set_id_vendor(copy.get(), libevdev_get_id_vendor(real));
    libevdev_set_id_product(copy.get(), libevdev_get_id_product(real));
    libevdev_set_id_version(copy.get(), libevdev_get_id_version(real));
    for (unsigned property = 0; property < INPUT_PROP_CNT; ++property)
        if (libevdev_has_property(real, property) != 0) libevdev_enable_property(copy.get(), property);
    for (const unsigned type : std::array<unsigned, 6>{EV_KEY, EV_REL, EV_ABS, EV_MSC, EV_LED, EV_SND}) {
        const int last = libevdev_event_type_get_max(type);
        for (unsigned code = 0; last >= 0 && code <= static_cast<unsigned>(last); ++code) {
            if (libevdev_has_event_code(real, type, code) == 0) continue;
            libevdev_enable_event_code(copy.get(), type, code,
                                       type == EV_ABS ? libevdev_get_abs_info(real, code) : nullptr);
        }
    }
    return copy;
}

} // namespace

std::unique_ptr<MirrorKeyboard> MirrorKeyboard::of(libevdev* real) {
    Descriptor file(open("/dev/uinput", O_RDWR | O_NONBLOCK | O_CLOEXEC));
    if (!file.isOpen() || ioctl(file.get(), UI_SET_PHYS, InputDevice::mirrorPlace) < 0) return nullptr;
    libevdev_uinput* device = nullptr;
    const auto description = descriptionOf(real);
    if (libevdev_uinput_create_from_device(description.get(), file.get(), &device) != 0) return nullptr;
    return std::unique_ptr<MirrorKeyboard>(new MirrorKeyboard(std::move(file), device));
}

void MirrorKeyboard::write(const std::vector<DeviceEvent>& events) const {
    std::vector<input_event> packet(events.size() + 1); // the last is the report
    for (std::size_t index = 0; index < events.size(); ++index) {
        packet[index].type = events[index].type;
        packet[index].code = events[index].code;
        packet[index].value = events[index].value;
    }
    // The kernel takes it whole and at once.
    [[maybe_unused]] const auto written =
        ::write(file_.get(), packet.data(), packet.size() * sizeof packet[0]);
}

void MirrorKeyboard::readShown(const std::function<void(const DeviceEvent&)>& onShown) const {
    std::array<input_event, 16> events{};
    for (ssize_t size = 0; (size = ::read(file_.get(), events.data(), sizeof events)) > 0;)
        for (std::size_t index = 0; index < static_cast<std::size_t>(size) / sizeof(input_event); ++index) {
            const input_event& event = events.at(index);
            if (event.type == EV_LED || event.type == EV_SND) onShown({event.type, event.code, event.value});
        }
}

} // namespace hopsel
