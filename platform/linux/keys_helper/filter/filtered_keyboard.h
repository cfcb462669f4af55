// What is known of one keyboard while its keys go through the filter: which are down, which of them the
// mirror has been told of, which were swallowed.
//
// Owned by the filter, for as long as the device is there.
#pragma once

#include "platform/linux/keys_helper/filter/input_frame.h"
#include "platform/linux/keys_helper/protocol/told_keys.h"

#include <bitset>
#include <map>

namespace hopsel {

struct FilteredKeyboard {
    KeysDown down;       ///< as far as its frames have been worked off
    KeysDown mirrorDown; ///< keys that the mirror was told of, and must be told of again when they come up
    /// Keys whose press was swallowed, with the key code of their combination: their repeats and their
    /// release are swallowed too.
    std::map<std::uint16_t, std::uint16_t> swallowed;
    bool isMirrored = false; ///< what it types reaches the desktop through its mirror only

    /// Without those that were swallowed: of them the session was told as combinations.
    told_keys::Mask toldKeysDown() const;
    /// Presses and releases that bring the mirror to having nothing down.
    std::vector<DeviceEvent> mirrorReleases() const;
};

} // namespace hopsel
