#include "platform/linux/x11/x11_key_hold.h"

namespace hopsel {

namespace {

constexpr std::uint32_t keyEvents = XCB_INPUT_XI_EVENT_MASK_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_KEY_RELEASE;
constexpr std::uint32_t rawKeyEvents =
    XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE;

/// The focus window of the keyboard, or nothing where the focus is nowhere or follows the pointer.
xcb_window_t focusWindow(X11Connection& connection, XDeviceId keyboard) {
    const auto cookie = xcb_input_xi_get_focus(connection.get(), keyboard);
    const XcbPtr<xcb_input_xi_get_focus_reply_t> reply(
        xcb_input_xi_get_focus_reply(connection.get(), cookie, nullptr));
    const bool isWindow = reply && reply->focus > XCB_INPUT_FOCUS_FOLLOW_KEYBOARD;
    return isWindow ? reply->focus : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
}

} // namespace

void X11KeyHold::begin(MasterKeyboard master, XKeyCode key) {
    master_ = master;
    holder_ = &primary_;
    keys_.set(key);
    // The passive grab that brought the event sits on the root window, and to the focused application the
    // focus seems to have left. Moving the grab to its own window makes it active again at once.
    window_ = focusWindow(primary_, master.keyboard);
    grabKeyboard(primary_);
    next();
}

void X11KeyHold::add(XKeyCode key) {
    keys_.set(key);
    next();
}

void X11KeyHold::remove(XKeyCode key) {
    keys_.reset(key);
    if (keys_.none())
        release();
    else
        next();
}

void X11KeyHold::forget(XKeyCode key) {
    keys_.reset(key);
    if (keys_.any()) return;
    // Another key's event may be standing here, of which the key-up that got away knew nothing.
    allow(*holder_, XCB_INPUT_EVENT_MODE_REPLAY_DEVICE);
    release();
}

void X11KeyHold::next() { allow(*holder_, XCB_INPUT_EVENT_MODE_SYNC_DEVICE); }

void X11KeyHold::handOn() {
    X11Connection& taker = other();
    const bool frozen = freezeThroughPointer(taker);
    allow(*holder_, XCB_INPUT_EVENT_MODE_REPLAY_DEVICE);
    holder_->roundTrip();
    // Where the pointer is grabbed already (a menu, a drag) the keyboard could not be frozen a second time.
    // Then an event that waited behind this one may slip through, and taking the keyboard back is all we can
    // do.
    grabKeyboard(taker);
    if (frozen) xcb_input_xi_ungrab_device(taker.get(), XCB_CURRENT_TIME, master_.pointer);
    holder_ = &taker;
    next();
}

void X11KeyHold::abandon() {
    keys_.reset();
    release();
}

void X11KeyHold::grabKeyboard(X11Connection& connection) {
    if (window_ != XCB_WINDOW_NONE && grabKeyboard(connection, window_)) return;
    // No window has the focus, or it was closed this very moment.
    window_ = connection.root();
    grabKeyboard(connection, window_);
}

bool X11KeyHold::grabKeyboard(X11Connection& connection, xcb_window_t window) {
    // On the root window the primary connection must ask for raw events, which it listens to; see
    // x11_key_grabs.cpp.
    const bool needsRaw = &connection == &primary_ && window == connection.root();
    const std::uint32_t mask = needsRaw ? keyEvents | rawKeyEvents : keyEvents;
    const auto cookie = xcb_input_xi_grab_device(
        connection.get(), window, XCB_CURRENT_TIME, XCB_CURSOR_NONE, master_.keyboard,
        XCB_INPUT_GRAB_MODE_22_SYNC, XCB_INPUT_GRAB_MODE_22_ASYNC, XCB_INPUT_GRAB_OWNER_NO_OWNER, 1, &mask);
    const XcbPtr<xcb_input_xi_grab_device_reply_t> reply(
        xcb_input_xi_grab_device_reply(connection.get(), cookie, nullptr));
    return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
}

bool X11KeyHold::freezeThroughPointer(X11Connection& connection) {
    const std::uint32_t nothing = 0;
    const auto cookie = xcb_input_xi_grab_device(
        connection.get(), connection.root(), XCB_CURRENT_TIME, XCB_CURSOR_NONE, master_.pointer,
        XCB_INPUT_GRAB_MODE_22_ASYNC, XCB_INPUT_GRAB_MODE_22_SYNC, XCB_INPUT_GRAB_OWNER_OWNER, 1, &nothing);
    const XcbPtr<xcb_input_xi_grab_device_reply_t> reply(
        xcb_input_xi_grab_device_reply(connection.get(), cookie, nullptr));
    return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
}

void X11KeyHold::allow(X11Connection& connection, std::uint8_t mode) {
    xcb_input_xi_allow_events(connection.get(), XCB_CURRENT_TIME, master_.keyboard, mode, 0, 0);
    connection.flush();
}

void X11KeyHold::release() {
    xcb_input_xi_ungrab_device(holder_->get(), XCB_CURRENT_TIME, master_.keyboard);
    holder_->flush();
    holder_ = &primary_;
}

} // namespace hopsel
