#include "platform/linux/system_events/x_screen_saver_watch.h"

#include <cstring>
#include <stdexcept>
#include <vector>

namespace hopsel {

void XScreenSaverWatch::connect() {
    if (!isLost()) return;
    notifier_.reset();
    try {
        connection_ = std::make_unique<X11Connection>();
    } catch (const std::runtime_error&) {
        return;
    }
    status_ = connection_->intern("_SCREENSAVER_STATUS");
    version_ = connection_->intern("_SCREENSAVER_VERSION");
    lock_ = connection_->intern("LOCK");
    password_ = connection_->intern("AUTH"); // since version 6.10 while it asks for the password
    saver_ = XCB_WINDOW_NONE;
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(connection_->get(), connection_->root(), XCB_CW_EVENT_MASK, &mask);
    notifier_ = std::make_unique<QSocketNotifier>(connection_->fileDescriptor(), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] { takeEvents(); });
    set(readLocked());
    takeEvents();
}

// Until nothing is left: an answer may bring events along, for which the descriptor does not become readable.
void XScreenSaverWatch::takeEvents() {
    bool hasNews = false;
    do {
        hasNews = false;
        while (const auto event = connection_->nextEvent()) hasNews |= isNews(*event);
        if (hasNews) set(readLocked());
    } while (hasNews);
    if (!connection_->isLost()) return;
    notifier_->setEnabled(false); // a dead descriptor is readable for ever
    set(false);
}

bool XScreenSaverWatch::isNews(const xcb_generic_event_t& event) const {
    if (eventType(event) == XCB_DESTROY_NOTIFY)
        return reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window == saver_;
    return eventType(event) == XCB_PROPERTY_NOTIFY &&
           reinterpret_cast<const xcb_property_notify_event_t&>(event).atom == status_;
}

bool XScreenSaverWatch::readLocked() {
    saver_ = saysLocked() ? findSaver() : xcb_window_t{XCB_WINDOW_NONE};
    return saver_ != XCB_WINDOW_NONE;
}

// The state comes first, as an atom; behind it since when, and what is drawn.
bool XScreenSaverWatch::saysLocked() const {
    const auto cookie =
        xcb_get_property(connection_->get(), 0, connection_->root(), status_, XCB_ATOM_INTEGER, 0, 1);
    const XcbPtr<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_->get(), cookie, nullptr));
    xcb_atom_t state = XCB_ATOM_NONE;
    if (!reply || reply->format != 32 || xcb_get_property_value_length(reply.get()) != sizeof state)
        return false;
    std::memcpy(&state, xcb_get_property_value(reply.get()), sizeof state);
    return state != XCB_ATOM_NONE && (state == lock_ || state == password_);
}

// It is never shown, and known by its version.
xcb_window_t XScreenSaverWatch::findSaver() const {
    xcb_connection_t* const server = connection_->get();
    const XcbPtr<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(server, xcb_query_tree(server, connection_->root()), nullptr));
    if (!tree) return XCB_WINDOW_NONE;
    const xcb_window_t* const windows = xcb_query_tree_children(tree.get());
    const int count = xcb_query_tree_children_length(tree.get());
    std::vector<xcb_get_property_cookie_t> asked;
    for (int i = 0; i < count; ++i) {
        // Told of its end from before it is looked at.
        const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
        xcb_change_window_attributes(server, windows[i], XCB_CW_EVENT_MASK, &mask);
        asked.push_back(xcb_get_property(server, 0, windows[i], version_, XCB_ATOM_STRING, 0, 0));
    }
    xcb_window_t found = XCB_WINDOW_NONE;
    for (int i = 0; i < count; ++i) {
        const XcbPtr<xcb_get_property_reply_t> reply(
            xcb_get_property_reply(server, asked[static_cast<std::size_t>(i)], nullptr));
        const bool isSaver = reply && reply->type == XCB_ATOM_STRING;
        if (isSaver && found == XCB_WINDOW_NONE) {
            found = windows[i];
            continue;
        }
        const std::uint32_t none = 0;
        xcb_change_window_attributes(server, windows[i], XCB_CW_EVENT_MASK, &none);
    }
    connection_->flush();
    return found;
}

void XScreenSaverWatch::set(bool isLocked) {
    if (isLocked == isLocked_) return;
    isLocked_ = isLocked;
    onLocked_(isLocked);
}

} // namespace hopsel
