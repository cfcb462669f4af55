// The least that a program can do between the release of right Super and the other layout group: it waits for
// raw events and locks. No toolkit, no rules, no check that it was a tap, no filter. What hopsel needs beyond
// this is what hopsel costs.
#include "session/x_keyboard.h"
#include "session/x_xkb.h"

#include <cstdio>
#include <stdexcept>
#include <xcb/xinput.h>

namespace {

using namespace hopsel::session;

constexpr std::uint32_t trigger = key::rightSuper + 8;

void listen(XDisplay& display) {
    const auto version = xcb_input_xi_query_version(display.get(), 2, 2);
    const XOwned<xcb_input_xi_query_version_reply_t> reply(
        xcb_input_xi_query_version_reply(display.get(), version, nullptr));
    if (!reply) throw std::runtime_error("the X server has no XInput 2");
    const struct {
        xcb_input_event_mask_t header;
        std::uint32_t mask;
    } selection{{.deviceid = XCB_INPUT_DEVICE_ALL_MASTER, .mask_len = 1},
                XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE};
    xcb_input_xi_select_events(display.get(), display.root(), 1, &selection.header);
    display.flush();
}

unsigned lockedGroup(XDisplay& display) {
    const auto cookie = xcb_xkb_get_state(display.get(), XCB_XKB_ID_USE_CORE_KBD);
    const XOwned<xcb_xkb_get_state_reply_t> reply(xcb_xkb_get_state_reply(display.get(), cookie, nullptr));
    return reply ? reply->lockedGroup : 0;
}

bool isTriggerRelease(const xcb_generic_event_t& event) {
    const auto& raw = reinterpret_cast<const xcb_input_raw_key_release_event_t&>(event);
    return typeOf(event) == XCB_GE_GENERIC && raw.event_type == XCB_INPUT_RAW_KEY_RELEASE &&
           raw.detail == trigger;
}

void switchForEver(XDisplay& display) {
    unsigned group = lockedGroup(display);
    while (const XOwned<xcb_generic_event_t> event{xcb_wait_for_event(display.get())}) {
        if (!isTriggerRelease(*event)) continue;
        group = group == 0 ? 1 : 0;
        xcb_xkb_latch_lock_state(display.get(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1,
                                 static_cast<std::uint8_t>(group), 0, 0, 0);
        display.flush();
    }
}

} // namespace

int main() {
    try {
        XDisplay display;
        useXkb(display);
        listen(display);
        switchForEver(display);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "hopsel_bare_switcher: %s\n", error.what());
        return 1;
    }
    return 0;
}
