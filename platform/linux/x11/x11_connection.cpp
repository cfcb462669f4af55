#include "platform/linux/x11/x11_connection.h"

#include <cstring>
#include <stdexcept>

namespace hopsel {

namespace {

xcb_screen_t* screenOf(xcb_connection_t* connection, int number) {
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (; screens.rem > 1 && number > 0; --number) xcb_screen_next(&screens);
    return screens.data;
}

} // namespace

X11Connection::X11Connection() {
    int screen = 0;
    connection_ = xcb_connect(nullptr, &screen);
    if (isLost()) {
        xcb_disconnect(connection_);
        const char* display = std::getenv("DISPLAY");
        if (display == nullptr || *display == '\0')
            throw std::runtime_error("no display: DISPLAY is not set");
        throw std::runtime_error("cannot connect to the X server at DISPLAY=" + std::string(display));
    }
    root_ = screenOf(connection_, screen)->root;
}

X11Connection::~X11Connection() { xcb_disconnect(connection_); }

std::uint32_t X11Connection::handle() {
    if (handle_ == XCB_NONE) {
        handle_ = xcb_generate_id(connection_);
        xcb_create_gc(connection_, handle_, root_, 0, nullptr);
        flush();
    }
    return handle_;
}

void X11Connection::roundTrip() {
    XcbPtr<xcb_get_input_focus_reply_t>(
        xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

xcb_atom_t X11Connection::intern(const char* name) {
    const auto cookie = xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    const XcbPtr<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection_, cookie, nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

} // namespace hopsel
