// What the key hook needs to know of the server: its extensions and its master keyboards.
//
// Stateless; every function asks the server and waits for the answer, so callers look at their connection's
// event queue afterwards.
#pragma once

#include "platform/linux/x11/x11_connection.h"

#include <bitset>
#include <cstdint>
#include <vector>
#include <xcb/xinput.h>

namespace hopsel {

using XDeviceId = std::uint16_t;

/// A keyboard that focus and grabs belong to (physical keyboards are attached to one), with its pointer.
struct MasterKeyboard {
    XDeviceId keyboard = 0;
    XDeviceId pointer = 0;
    friend bool operator==(const MasterKeyboard&, const MasterKeyboard&) = default;
};

namespace x11_input_devices {

/// Announces XInput 2.2 to the server; an older client loses raw events while someone else holds a grab.
/// Returns the extension's major opcode. Throws `std::runtime_error` where the server does not offer it.
std::uint8_t requireXInput2(X11Connection& connection);

bool hasXTest(X11Connection& connection);

/// Returns the first event number of XKB. Throws `std::runtime_error` where the server does not offer it.
std::uint8_t requireXkb(X11Connection& connection);

std::vector<MasterKeyboard> masterKeyboards(X11Connection& connection);

/// The keys that are down, by key code.
std::bitset<256> pressedKeys(X11Connection& connection);
std::bitset<256> pressedKeys(const xcb_query_keymap_reply_t& reply);

bool isCapsLockOn(X11Connection& connection);

} // namespace x11_input_devices
} // namespace hopsel
