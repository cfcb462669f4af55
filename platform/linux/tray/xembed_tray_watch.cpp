#include "platform/linux/tray/xembed_tray_watch.h"

namespace hopsel {

namespace {

void watchStructure(X11Connection& connection, xcb_window_t window) {
    const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection.get(), window, XCB_CW_EVENT_MASK, &mask);
}

} // namespace

XEmbedTrayWatch::XEmbedTrayWatch(std::function<void()> onChange)
    : readable_(connection_.fileDescriptor(), QSocketNotifier::Read),
      onChange_(std::move(onChange)),
      selection_(connection_.intern("_NET_SYSTEM_TRAY_S0")),
      manager_(connection_.intern("MANAGER")) {
    QObject::connect(&readable_, &QSocketNotifier::activated, &readable_, [this] { takeEvents(); });
    watchStructure(connection_, connection_.root());
    findOwner();
    // Its answers may have brought events along, which the socket does not tell of any more.
    QMetaObject::invokeMethod(&readable_, [this] { takeEvents(); }, Qt::QueuedConnection);
}

void XEmbedTrayWatch::findOwner() {
    const auto ask = [this]() -> xcb_window_t {
        const auto cookie = xcb_get_selection_owner(connection_.get(), selection_);
        const XcbPtr<xcb_get_selection_owner_reply_t> reply(
            xcb_get_selection_owner_reply(connection_.get(), cookie, nullptr));
        return reply ? reply->owner : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
    };
    // The owner may go before it is watched, and then no event tells of it: ask again until both agree.
    owner_ = ask();
    for (xcb_window_t watched = XCB_WINDOW_NONE; owner_ != watched; owner_ = ask()) {
        watched = owner_;
        watchStructure(connection_, watched);
    }
}

void XEmbedTrayWatch::takeEvents() {
    const bool before = hasHost();
    while (const auto event = connection_.nextEvent()) {
        if (isNews(*event)) findOwner();
    }
    if (connection_.isLost()) {
        readable_.setEnabled(false);
        owner_ = XCB_WINDOW_NONE;
    }
    if (hasHost() != before) onChange_();
}

bool XEmbedTrayWatch::isNews(const xcb_generic_event_t& event) const {
    if (eventType(event) == XCB_DESTROY_NOTIFY)
        return reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window == owner_;
    if (eventType(event) != XCB_CLIENT_MESSAGE) return false;
    const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
    return message.type == manager_ && message.format == 32 && message.data.data32[1] == selection_;
}

} // namespace hopsel
