#include "platform/linux/x11/x11_input_devices.h"

#include "platform/linux/x11/xkb_extension.h"

#include <stdexcept>
#include <xcb/xtest.h>

namespace hopsel::x11_input_devices {

namespace {

constexpr std::uint16_t xinputMajor = 2;
constexpr std::uint16_t xinputMinor = 2;
constexpr std::uint8_t lockModifier = 0x02;

const xcb_query_extension_reply_t* extension(X11Connection& connection, xcb_extension_t& id) {
    const auto* reply = xcb_get_extension_data(connection.get(), &id);
    return reply != nullptr && reply->present != 0 ? reply : nullptr;
}

} // namespace

std::uint8_t requireXInput2(X11Connection& connection) {
    const auto* found = extension(connection, xcb_input_id);
    if (found != nullptr) {
        const auto cookie = xcb_input_xi_query_version(connection.get(), xinputMajor, xinputMinor);
        const XcbPtr<xcb_input_xi_query_version_reply_t> version(
            xcb_input_xi_query_version_reply(connection.get(), cookie, nullptr));
        if (version && (version->major_version > xinputMajor ||
                        (version->major_version == xinputMajor && version->minor_version >= xinputMinor)))
            return found->major_opcode;
    }
    throw std::runtime_error("the X server does not offer XInput 2.2, which reading the keyboard needs");
}

bool hasXTest(X11Connection& connection) {
    if (extension(connection, xcb_test_id) == nullptr) return false;
    const auto cookie = xcb_test_get_version(connection.get(), 2, 2);
    const XcbPtr<xcb_test_get_version_reply_t> version(
        xcb_test_get_version_reply(connection.get(), cookie, nullptr));
    return version != nullptr;
}

std::uint8_t requireXkb(X11Connection& connection) {
    const auto* found = extension(connection, xcb_xkb_id);
    if (found != nullptr) {
        const auto cookie =
            xcb_xkb_use_extension(connection.get(), XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION);
        const XcbPtr<xcb_xkb_use_extension_reply_t> use(
            xcb_xkb_use_extension_reply(connection.get(), cookie, nullptr));
        if (use && use->supported != 0) return found->first_event;
    }
    throw std::runtime_error("the X server does not offer XKB 1.0, which layouts need");
}

std::vector<MasterKeyboard> masterKeyboards(X11Connection& connection) {
    const auto cookie = xcb_input_xi_query_device(connection.get(), XCB_INPUT_DEVICE_ALL_MASTER);
    const XcbPtr<xcb_input_xi_query_device_reply_t> reply(
        xcb_input_xi_query_device_reply(connection.get(), cookie, nullptr));
    std::vector<MasterKeyboard> masters;
    if (!reply) return masters;
    auto device = xcb_input_xi_query_device_infos_iterator(reply.get());
    for (; device.rem > 0; xcb_input_xi_device_info_next(&device))
        if (device.data->type == XCB_INPUT_DEVICE_TYPE_MASTER_KEYBOARD)
            masters.push_back({.keyboard = device.data->deviceid, .pointer = device.data->attachment});
    return masters;
}

std::bitset<256> pressedKeys(X11Connection& connection) {
    const XcbPtr<xcb_query_keymap_reply_t> reply(
        xcb_query_keymap_reply(connection.get(), xcb_query_keymap(connection.get()), nullptr));
    return reply ? pressedKeys(*reply) : std::bitset<256>();
}

std::bitset<256> pressedKeys(const xcb_query_keymap_reply_t& reply) {
    std::bitset<256> keys;
    for (std::size_t key = 0; key < keys.size(); ++key)
        keys[key] = ((unsigned{reply.keys[key / 8]} >> (key % 8)) & 1U) != 0;
    return keys;
}

bool isCapsLockOn(X11Connection& connection) {
    const auto cookie = xcb_xkb_get_state(connection.get(), XCB_XKB_ID_USE_CORE_KBD);
    const XcbPtr<xcb_xkb_get_state_reply_t> state(xcb_xkb_get_state_reply(connection.get(), cookie, nullptr));
    return state && (state->lockedMods & lockModifier) != 0;
}

} // namespace hopsel::x11_input_devices
