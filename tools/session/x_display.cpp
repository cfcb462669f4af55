#include "session/x_display.h"

#include <stdexcept>

namespace hopsel::session {

XDisplay::XDisplay() : connection_(xcb_connect(nullptr, nullptr)) {
    if (isLost()) {
        xcb_disconnect(connection_);
        const char* display = std::getenv("DISPLAY");
        throw std::runtime_error(std::string("no X server at DISPLAY=") +
                                 (display != nullptr ? display : ""));
    }
    screen_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
}

XDisplay::~XDisplay() { xcb_disconnect(connection_); }

void XDisplay::roundTrip() {
    const XOwned<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    if (!reply) throw std::runtime_error("the X server is gone");
}

xcb_atom_t XDisplay::atom(const std::string& name) {
    const auto cookie =
        xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.c_str());
    const XOwned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection_, cookie, nullptr));
    if (!reply) throw std::runtime_error("the X server is gone");
    return reply->atom;
}

std::uint32_t XDisplay::numberProperty(xcb_window_t window, const std::string& name) {
    const auto cookie = xcb_get_property(connection_, 0, window, atom(name), XCB_ATOM_ANY, 0, 1);
    const XOwned<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_, cookie, nullptr));
    if (!reply || reply->format != 32 || xcb_get_property_value_length(reply.get()) < 4) return 0;
    return *static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
}

bool XDisplay::waitFor(const std::function<void(const xcb_generic_event_t&)>& handle,
                       const std::function<bool()>& done, std::chrono::milliseconds timeout) {
    const Deadline deadline(timeout);
    flush();
    while (!done()) {
        if (const XOwned<xcb_generic_event_t> event{xcb_poll_for_event(connection_)}) {
            handle(*event);
        } else if (isLost() ||
                   (!waitReadable(xcb_get_file_descriptor(connection_), deadline) && deadline.hasPassed())) {
            return false;
        }
    }
    return true;
}

} // namespace hopsel::session
