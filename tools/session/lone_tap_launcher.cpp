#include "session/lone_tap_launcher.h"

#include <linux/input-event-codes.h>
#include <stdexcept>
#include <xcb/xinput.h>

namespace hopsel::session {

namespace {

constexpr unsigned x11Offset = 8;
constexpr std::uint16_t side = 50; // of its square window, in pixels

bool isSuper(std::uint32_t code) {
    return code == KEY_LEFTMETA + x11Offset || code == KEY_RIGHTMETA + x11Offset;
}

} // namespace

LoneTapLauncher::LoneTapLauncher() {
    auto* c = display_.get();
    const auto* extension = xcb_get_extension_data(c, &xcb_input_id);
    if (extension == nullptr || extension->present == 0) throw std::runtime_error("no XInput 2");
    opcode_ = extension->major_opcode;
    const XOwned<xcb_input_xi_query_version_reply_t> version(
        xcb_input_xi_query_version_reply(c, xcb_input_xi_query_version(c, 2, 2), nullptr));

    window_ = xcb_generate_id(c);
    const std::uint32_t overrides = 1;
    xcb_create_window(c, XCB_COPY_FROM_PARENT, window_, display_.root(), 0, 0, side, side, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT,
                      &overrides);
    const struct {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } events{.head = {XCB_INPUT_DEVICE_ALL_MASTER, 1},
             .mask = XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE};
    xcb_input_xi_select_events(c, display_.root(), 1, &events.head);
    display_.roundTrip();
}

int LoneTapLauncher::timesOpened() {
    display_.roundTrip();
    while (const XOwned<xcb_generic_event_t> event{xcb_poll_for_event(display_.get())}) handle(*event);
    display_.roundTrip();
    return opened_;
}

void LoneTapLauncher::handle(const xcb_generic_event_t& event) {
    const auto& key = reinterpret_cast<const xcb_input_raw_key_press_event_t&>(event);
    if (typeOf(event) != XCB_GE_GENERIC || key.extension != opcode_) return;
    if (key.event_type == XCB_INPUT_RAW_KEY_PRESS) {
        isAlone_ = isSuper(key.detail);
    } else if (isSuper(key.detail) && isAlone_) {
        isAlone_ = false;
        open();
    }
}

void LoneTapLauncher::open() {
    ++opened_;
    xcb_map_window(display_.get(), window_);
    xcb_set_input_focus(display_.get(), XCB_INPUT_FOCUS_POINTER_ROOT, window_, XCB_CURRENT_TIME);
}

} // namespace hopsel::session
