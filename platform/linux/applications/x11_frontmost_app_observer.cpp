#include "platform/linux/applications/x11_frontmost_app_observer.h"

#include "platform/linux/applications/app_identifier.h"
#include "platform/linux/base/session_kind.h"

#include <cstring>
#include <stdexcept>

namespace hopsel {

namespace {

/// A name that does not fit into 1 KiB is none.
constexpr std::uint32_t maxTextWords = 256;

void selectEvents(xcb_connection_t* connection, xcb_window_t window, std::uint32_t mask) {
    xcb_change_window_attributes(connection, window, XCB_CW_EVENT_MASK, &mask);
}

} // namespace

X11FrontmostAppObserver::X11FrontmostAppObserver()
    : readAhead_(std::chrono::milliseconds(0), std::chrono::milliseconds(0), [this] { takeEvents(); }) {}

void X11FrontmostAppObserver::start() {
    if (isConnected()) return;
    try {
        connect();
    } catch (const std::runtime_error&) {
        report(std::nullopt); // no server yet
        return;
    }
    report(readIdentifier());
}

bool X11FrontmostAppObserver::isLost() const { return !isConnected() && session_kind::hasDisplay(); }

void X11FrontmostAppObserver::connect() {
    auto connection = std::make_unique<X11Connection>();
    if (notifier_) {
        // The callback that it is just delivering may be what called us.
        notifier_->setEnabled(false);
        notifier_.release()->deleteLater();
    }
    connection_ = std::move(connection);
    watched_ = XCB_WINDOW_NONE;
    activeWindow_ = connection_->intern("_NET_ACTIVE_WINDOW");
    gtkApplicationID_ = connection_->intern("_GTK_APPLICATION_ID");
    kdeDesktopFile_ = connection_->intern("_KDE_NET_WM_DESKTOP_FILE");
    utf8String_ = connection_->intern("UTF8_STRING");
    selectEvents(connection_->get(), connection_->root(), XCB_EVENT_MASK_PROPERTY_CHANGE);
    notifier_ = std::make_unique<QSocketNotifier>(connection_->fileDescriptor(), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] { takeEvents(); });
}

void X11FrontmostAppObserver::takeEvents() {
    bool hasNews = false;
    while (const auto event = connection_->nextEvent()) hasNews |= isNews(*event);
    if (connection_->isLost()) {
        notifier_->setEnabled(false); // a dead descriptor is readable for ever
        report(std::nullopt);
    } else if (hasNews) {
        report(readIdentifier());
        if (onWindowChange) onWindowChange();
    }
}

bool X11FrontmostAppObserver::isNews(const xcb_generic_event_t& event) const {
    if (eventType(event) != XCB_PROPERTY_NOTIFY) return false;
    const auto& notify = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    if (notify.window == connection_->root()) return notify.atom == activeWindow_;
    return notify.window == watched_ && (notify.atom == XCB_ATOM_WM_CLASS ||
                                         notify.atom == gtkApplicationID_ || notify.atom == kdeDesktopFile_);
}

std::optional<std::string> X11FrontmostAppObserver::readIdentifier() {
    readAhead_.noteChange();
    watch(readActiveWindow());
    if (watched_ == XCB_WINDOW_NONE) return std::nullopt;
    const auto gtk = askForText(gtkApplicationID_);
    const auto kde = askForText(kdeDesktopFile_);
    const auto windowClass = askForText(XCB_ATOM_WM_CLASS);
    AppProperties properties;
    properties.gtkApplicationID = text(gtk);
    properties.kdeDesktopFile = text(kde);
    properties.windowClass = text(windowClass);
    return appIdentifier(properties);
}

xcb_window_t X11FrontmostAppObserver::readActiveWindow() {
    const auto cookie =
        xcb_get_property(connection_->get(), 0, connection_->root(), activeWindow_, XCB_ATOM_WINDOW, 0, 1);
    const XcbPtr<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_->get(), cookie, nullptr));
    xcb_window_t window = XCB_WINDOW_NONE;
    if (!reply || reply->format != 32 || xcb_get_property_value_length(reply.get()) != sizeof window)
        return window;
    std::memcpy(&window, xcb_get_property_value(reply.get()), sizeof window);
    // The root is watched for the active window's sake, and is nobody's window.
    return window == connection_->root() ? xcb_window_t{XCB_WINDOW_NONE} : window;
}

void X11FrontmostAppObserver::watch(xcb_window_t window) {
    // What is selected here is this connection's own, whatever others have selected on the window.
    if (watched_ != window && watched_ != XCB_WINDOW_NONE) selectEvents(connection_->get(), watched_, 0);
    watched_ = window;
    // Even if it is the same: the window may be a new one that was given the number of one that is gone.
    if (window != XCB_WINDOW_NONE) selectEvents(connection_->get(), window, XCB_EVENT_MASK_PROPERTY_CHANGE);
}

xcb_get_property_cookie_t X11FrontmostAppObserver::askForText(xcb_atom_t property) {
    return xcb_get_property(connection_->get(), 0, watched_, property, XCB_ATOM_ANY, 0, maxTextWords);
}

std::string X11FrontmostAppObserver::text(xcb_get_property_cookie_t cookie) {
    const XcbPtr<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_->get(), cookie, nullptr));
    const bool isText = reply && reply->format == 8 && reply->bytes_after == 0 &&
                        (reply->type == XCB_ATOM_STRING || reply->type == utf8String_);
    if (!isText) return {};
    return {static_cast<const char*>(xcb_get_property_value(reply.get())),
            static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

} // namespace hopsel
