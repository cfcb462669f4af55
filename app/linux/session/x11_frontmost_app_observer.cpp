#include "app/linux/session/x11_frontmost_app_observer.h"

#include "core/platform/remote_apps.h"

#include <algorithm>
#include <stdexcept>

namespace hopsel {

namespace {

constexpr std::uint32_t longestText = 1024; // bytes; identifiers are far shorter

/// "/usr/share/applications/org.kde.krdc.desktop" is "org.kde.krdc".
std::string desktopFileId(std::string text) {
    if (const std::size_t slash = text.rfind('/'); slash != std::string::npos) text.erase(0, slash + 1);
    constexpr std::string_view suffix = ".desktop";
    if (text.size() > suffix.size() && text.compare(text.size() - suffix.size(), suffix.size(), suffix) == 0)
        text.resize(text.size() - suffix.size());
    return text;
}

/// The texts of a property in which each is ended by a NUL.
std::vector<std::string> parts(const std::string& text) {
    std::vector<std::string> found;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\0', begin), text.size());
        found.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return found;
}

} // namespace

X11FrontmostAppObserver::~X11FrontmostAppObserver() = default;

void X11FrontmostAppObserver::start() {
    if (!isLost()) return;
    try {
        connection_ = std::make_unique<X11Connection>();
    } catch (const std::runtime_error&) {
        return report(std::nullopt);
    }
    atoms_ = {connection_->intern("_NET_ACTIVE_WINDOW"), connection_->intern("_GTK_APPLICATION_ID"),
              connection_->intern("_KDE_NET_WM_DESKTOP_FILE")};
    watch(connection_->root(), XCB_EVENT_MASK_PROPERTY_CHANGE);
    notifier_ = std::make_unique<QSocketNotifier>(connection_->fileDescriptor(), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] { takeEvents(); });
    hasReported_ = false;
    readActiveWindow();
    takeEvents();
}

void X11FrontmostAppObserver::takeEvents() {
    // Reading a property reads events along, so look until there is nothing more.
    while (connection_) {
        if (connection_->isLost()) return lose();
        const auto event = connection_->nextEvent();
        if (!event) break;
        if (concernsActiveWindow(*event)) readActiveWindow();
    }
}

bool X11FrontmostAppObserver::concernsActiveWindow(const xcb_generic_event_t& event) const {
    if (eventType(event) == XCB_DESTROY_NOTIFY) {
        // Some window managers go on naming the last window when it is gone.
        return reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window == active_;
    }
    if (eventType(event) != XCB_PROPERTY_NOTIFY) return false;
    const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    return change.window == connection_->root() ? change.atom == atoms_.activeWindow
                                                : change.window == active_;
}

void X11FrontmostAppObserver::lose() {
    // Not deleted: it may be the one that called.
    notifier_->setEnabled(false);
    notifier_.release()->deleteLater();
    connection_.reset();
    active_ = XCB_WINDOW_NONE;
    report(std::nullopt);
}

void X11FrontmostAppObserver::watch(xcb_window_t window, std::uint32_t mask) {
    xcb_change_window_attributes(connection_->get(), window, XCB_CW_EVENT_MASK, &mask);
}

void X11FrontmostAppObserver::readActiveWindow() {
    const auto cookie = xcb_get_property(connection_->get(), 0, connection_->root(), atoms_.activeWindow,
                                         XCB_ATOM_WINDOW, 0, 1);
    const XcbPtr<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_->get(), cookie, nullptr));
    xcb_window_t window = XCB_WINDOW_NONE;
    if (reply && reply->format == 32 && xcb_get_property_value_length(reply.get()) >= 4)
        window = *static_cast<const xcb_window_t*>(xcb_get_property_value(reply.get()));
    if (window != active_) {
        if (active_ != XCB_WINDOW_NONE && active_ != connection_->root())
            watch(active_, XCB_EVENT_MASK_NO_EVENT);
        active_ = window;
        // Some programs name their window only after it is shown.
        if (window != XCB_WINDOW_NONE && window != connection_->root())
            watch(window, XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    }
    report(identifierOf(window));
}

// What the table of remote applications knows wins: a virtual machine may have the desktop file of its
// manager.
std::optional<std::string> X11FrontmostAppObserver::identifierOf(xcb_window_t window) {
    if (window == XCB_WINDOW_NONE) return std::nullopt;
    const std::vector<std::string> found = candidates(window);
    const auto remote = std::find_if(found.begin(), found.end(), remote_apps::isRemote);
    if (remote != found.end()) return *remote;
    if (found.empty()) return std::nullopt;
    return found.front();
}

/// Never empty texts.
std::vector<std::string> X11FrontmostAppObserver::candidates(xcb_window_t window) {
    std::vector<std::string> found{textProperty(window, atoms_.gtkApplicationId),
                                   desktopFileId(textProperty(window, atoms_.desktopFile))};
    const std::vector<std::string> names = parts(textProperty(window, XCB_ATOM_WM_CLASS));
    if (names.size() > 1) found.push_back(names[1]); // the class; the instance's name stands first
    if (!names.empty()) found.push_back(names[0]);
    found.erase(std::remove(found.begin(), found.end(), std::string()), found.end());
    return found;
}

std::string X11FrontmostAppObserver::textProperty(xcb_window_t window, xcb_atom_t property) {
    const auto cookie = xcb_get_property(connection_->get(), 0, window, property, XCB_GET_PROPERTY_TYPE_ANY,
                                         0, longestText / 4);
    const XcbPtr<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_->get(), cookie, nullptr));
    if (!reply || reply->format != 8) return {};
    return {static_cast<const char*>(xcb_get_property_value(reply.get())),
            static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

void X11FrontmostAppObserver::report(const std::optional<std::string>& identifier) {
    if (hasReported_ && identifier == reported_) return;
    hasReported_ = true;
    reported_ = identifier;
    if (const auto callback = onChange) callback(identifier);
}

} // namespace hopsel
