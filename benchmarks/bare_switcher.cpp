// The least that a program can do between the release of right Super and the other layout group: it waits for
// raw events and locks. No toolkit, no rules, no check that it was a tap, no filter. What hopsel needs beyond
// this is what hopsel costs.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

#include <cstdio>
#include <cstdlib>
#include <linux/input-event-codes.h>
#include <memory>
#include <xcb/xcb.h>
#include <xcb/xinput.h>

namespace {

struct Free {
    void operator()(void* memory) const { std::free(memory); }
};

constexpr std::uint32_t trigger = KEY_RIGHTMETA + 8;

void listen(xcb_connection_t* connection) {
    const struct {
        xcb_input_event_mask_t header;
        std::uint32_t mask;
    } selection{{.deviceid = XCB_INPUT_DEVICE_ALL_MASTER, .mask_len = 1},
                XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE};
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    xcb_input_xi_select_events(connection, root, 1, &selection.header);
    xcb_flush(connection);
}

bool isTriggerRelease(const xcb_generic_event_t& event) {
    const auto& raw = reinterpret_cast<const xcb_input_raw_key_release_event_t&>(event);
    return event.response_type == XCB_GE_GENERIC && raw.event_type == XCB_INPUT_RAW_KEY_RELEASE &&
           raw.detail == trigger;
}

} // namespace

int main() {
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    const auto version = xcb_input_xi_query_version(connection, 2, 2);
    const auto extension = xcb_xkb_use_extension(connection, 1, 0);
    const auto state = xcb_xkb_get_state(connection, XCB_XKB_ID_USE_CORE_KBD);
    const std::unique_ptr<void, Free> versionReply(
        xcb_input_xi_query_version_reply(connection, version, nullptr));
    const std::unique_ptr<void, Free> extensionReply(
        xcb_xkb_use_extension_reply(connection, extension, nullptr));
    const std::unique_ptr<xcb_xkb_get_state_reply_t, Free> stateReply(
        xcb_xkb_get_state_reply(connection, state, nullptr));
    if (!versionReply || !extensionReply || !stateReply) {
        std::fputs("the X server lacks XInput 2 or XKB\n", stderr);
        return 1;
    }
    listen(connection);
    unsigned group = stateReply->lockedGroup;
    while (const std::unique_ptr<xcb_generic_event_t, Free> event{xcb_wait_for_event(connection)}) {
        if (!isTriggerRelease(*event)) continue;
        group = group == 0 ? 1 : 0;
        xcb_xkb_latch_lock_state(connection, XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1,
                                 static_cast<std::uint8_t>(group), 0, 0, 0);
        xcb_flush(connection);
    }
    xcb_disconnect(connection);
    return 0;
}
