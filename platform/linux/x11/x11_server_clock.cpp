#include "platform/linux/x11/x11_server_clock.h"

namespace hopsel {

namespace {

constexpr double milliseconds = 1e-3;

/// What a program posts overtakes the keys that wait in the server. More than this is another clock.
constexpr std::int32_t mostDisorder = 1000;

} // namespace

std::optional<std::uint32_t> X11ServerClock::ask(X11Connection& connection) {
    xcb_connection_t* c = connection.get();
    // Each change of a property is told with its time, and of this window's to nobody else.
    const xcb_window_t window = xcb_generate_id(c);
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(c, XCB_COPY_FROM_PARENT, window, connection.root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &mask);
    xcb_change_property(c, XCB_PROP_MODE_APPEND, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 0, nullptr);
    xcb_destroy_window(c, window);
    connection.roundTrip();
    std::optional<std::uint32_t> time;
    while (const auto event = connection.nextQueuedEvent())
        if (eventType(*event) == XCB_PROPERTY_NOTIFY)
            time = reinterpret_cast<const xcb_property_notify_event_t&>(*event).time;
    return time;
}

double X11ServerClock::timeOf(std::uint32_t serverTime, double now) {
    const auto elapsed = static_cast<std::int32_t>(serverTime - lastServerTime_);
    if (elapsed < 0 && elapsed > -mostDisorder) return lastTime_;
    const double time = lastTime_ + elapsed * milliseconds;
    lastServerTime_ = serverTime;
    // A clock that was set, or went round unseen, tells nothing about this event.
    lastTime_ = elapsed < 0 || time > now ? now : time;
    return lastTime_;
}

} // namespace hopsel
