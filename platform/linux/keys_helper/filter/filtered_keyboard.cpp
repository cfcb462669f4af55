#include "platform/linux/keys_helper/filter/filtered_keyboard.h"

#include <linux/input-event-codes.h>

namespace hopsel {

told_keys::Mask FilteredKeyboard::toldKeysDown() const {
    unsigned mask = 0;
    for (std::size_t index = 0; index < told_keys::count; ++index) {
        const std::uint16_t code = told_keys::linuxCode(index);
        if (down[code] && !swallowed.contains(code)) mask |= 1U << index;
    }
    return static_cast<told_keys::Mask>(mask);
}

std::vector<DeviceEvent> FilteredKeyboard::mirrorReleases() const {
    std::vector<DeviceEvent> releases;
    for (std::size_t code = 0; code < keyNumbers; ++code)
        if (mirrorDown[code]) releases.push_back({EV_KEY, static_cast<std::uint16_t>(code), 0});
    return releases;
}

} // namespace hopsel
